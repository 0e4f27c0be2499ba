// The real window on a real X server, used with keyboard and mouse, against the virtual reader on a
// real mount: what a user does on a first evening with the program.
#include "cartridge_files.h"
#include "driven_window.h"
#include "test_class.h"

#include <QtTest>

namespace
{

constexpr int kStepMs = 60000;
constexpr std::uint32_t kRomSize = 8 * 1024 * 1024;
constexpr std::uint32_t kSaveSize = 32 * 1024;

} // namespace

class WindowOnMountTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_image = m_files.addImage(0x1B, kRomSize, kSaveSize);
        m_chip = m_files.addNoise("chip.sav", kSaveSize, 5);
        m_oldSave = contentOf(m_chip);
        QCOMPARE(m_reader.start(m_image, m_chip), QString());
        QCOMPARE(m_window.start(m_reader), QString());
        // ROM size: the last row, 8 MiB; RAM size: the third row, 32 KiB.
        m_window.pressInSettings({"Tab", "Tab", "Tab", "End", "Tab", "Down", "Down"});
    }

    // No Info before: the reader was found when the program started.
    void dumpIsTheImage()
    {
        const QString dump = m_files.path("dump.gb");
        QCOMPARE(m_window.answerDialog(WindowButton::Dump, "Read ROM to...", dump), QString());
        QTRY_VERIFY_WITH_TIMEOUT(contentOf(dump) == contentOf(m_image), kStepMs);
        QVERIFY(m_window.logWith("read only once").contains("\nunverified: not a known dump"));
    }

    void infoTellsOfTheCartridge()
    {
        m_window.press(WindowButton::Info);
        QVERIFY(m_window.logWith("Cart type:").contains("ROM+MBC5+RAM+BATTERY"));
    }

    void readRamIsTheSave()
    {
        const QString save = m_files.path("save.sav");
        QCOMPARE(m_window.answerDialog(WindowButton::ReadRam, "Read save to...", save), QString());
        QTRY_VERIFY_WITH_TIMEOUT(contentOf(save) == m_oldSave, kStepMs);
    }

    void writeRamReachesTheChip()
    {
        const QString changed = m_files.addNoise("changed.sav", kSaveSize, 6);
        QCOMPARE(m_window.answerDialog(WindowButton::WriteRam, "Get Save File.", changed),
                 QString());
        QTRY_VERIFY_WITH_TIMEOUT(contentOf(m_chip) == contentOf(changed), kStepMs);
        QVERIFY(m_window.logWith("written: ").contains("nothing was read back and compared"));
        QCOMPARE(m_window.backups(), QList<QByteArray>{m_oldSave});

        const QString readBack = m_files.path("back.sav");
        QCOMPARE(m_window.answerDialog(WindowButton::ReadRam, "Read save to...", readBack),
                 QString());
        QTRY_VERIFY_WITH_TIMEOUT(contentOf(readBack) == contentOf(changed), kStepMs);
    }

    void programEndsQuietlyAndLeavesTheDriveFree()
    {
        QCOMPARE(m_window.close(), QString());
        for (const QJsonObject &operation : m_reader.operations())
            QVERIFY(!operation.contains("refused"));
        QCOMPARE(m_reader.unmount(), QString());
    }

private:
    CartridgeFiles m_files;
    MountedReader m_reader;
    DrivenWindow m_window;
    QString m_image;
    QString m_chip;
    QByteArray m_oldSave;
};

GBDRIVER_TEST(WindowOnMountTest, core)
#include "window_on_mount_test.moc"
