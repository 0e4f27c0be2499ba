// What the real window says of jobs that used to end in a bare ">Success!", read from its log, and
// what they left behind: on a real X server, through the virtual reader on a real mount.
#include "cartridge_files.h"
#include "driven_window.h"
#include "samples.h"
#include "test_class.h"

#include <QtTest>

namespace
{

constexpr std::uint32_t kKibi = 1024;
constexpr std::uint32_t kMebi = 1024 * kKibi;
constexpr std::uint8_t kMbc5 = 0x19;
constexpr std::uint8_t kMbc5Save = 0x1B;
// From the tab bar of a fresh window.
const QStringList kVerify = {"Tab", "Tab", "Tab", "Tab", "Tab", "space"};
const QStringList kRom64K = {"Tab", "Tab", "Tab", "Down"};
const QStringList kRam32K = {"Tab", "Tab", "Tab", "Tab", "Down", "Down"};

} // namespace

class WindowJudgementOnMountTest : public QObject
{
    Q_OBJECT

private slots:
    void protectedChipIsNoticed()
    {
        // Its first byte looks erased to the poll.
        QByteArray old = noise(64 * kKibi, 1);
        old[0] = '\xFF';
        start(m_files.addFile("old.gb", old), {"--flash", "8", "--chip-fault", "protected"},
              kVerify);
        const QString game = m_files.addImage(kMbc5, 64 * kKibi, 0, 2);
        expect(WindowButton::Flash, "Get ROM File.", game,
               "\nfailed: The cartridge does not hold what was written: ");
        QCOMPARE(m_window->backups(), QList<QByteArray>{old});
    }

    void emptySlotIsNotFlashed()
    {
        start(QString(), {}, {});
        expect(WindowButton::Flash, "Get ROM File.", m_files.addImage(kMbc5, 64 * kKibi, 0, 3),
               "\nrefused: Nothing was written; the cartridge is as it was.");
    }

    void gameLargerThanTheChipIsNotFlashed()
    {
        start(m_files.addImage(kMbc5, kMebi, 0, 4), {"--flash", "16", "--flash-code", "20"}, {});
        expect(WindowButton::Flash, "Get ROM File.", m_files.addImage(kMbc5, 2 * kMebi, 0, 5),
               "\nThe file has 2097152 bytes, the flash chip 1048576.");
        QVERIFY(m_window->logWith("refused: ").contains("\nrefused: Nothing was written;"));
    }

    void flakyBankIsNamed()
    {
        start(m_files.addImage(kMbc5, 64 * kKibi, 0, 6), {"--flaky", "2"}, kRom64K);
        const QString dump = m_files.path("dump.gb");
        expect(WindowButton::Dump, "Read ROM to...", dump,
               "\nunverified: not a known dump; read only once");
        m_window->press(WindowButton::ReadAgain);
        QVERIFY2(m_window->logWith("unstable: ").contains("reads differ in bank 2 of 4"),
                 qPrintable(m_window->log()));
    }

    void emptySlotIsSuspicious()
    {
        start(QString(), {}, {});
        expect(WindowButton::Dump, "Read ROM to...", m_files.path("empty.gb"),
               "\nsuspicious: all bytes are equal");
    }

    void longSaveIsSaidToBeCut()
    {
        const QString chip = m_files.addNoise("chip.sav", 32 * kKibi, 8);
        const QByteArray old = contentOf(chip);
        m_reader = std::make_unique<MountedReader>();
        QCOMPARE(m_reader->start(m_files.addImage(kMbc5Save, 64 * kKibi, 32 * kKibi), chip),
                 QString());
        openWindow(kRam32K);
        expect(WindowButton::WriteRam, "Get Save File.",
               m_files.addNoise("long.sav", 128 * kKibi, 9),
               "\nwritten: only the first 32768 of 131072 bytes of the file");
        QCOMPARE(m_window->backups(), QList<QByteArray>{old});
    }

    void cleanup()
    {
        m_window.reset();
        m_reader.reset();
    }

private:
    void start(const QString &cart, const QStringList &options, const QStringList &settings)
    {
        m_reader = std::make_unique<MountedReader>();
        QCOMPARE(m_reader->start(cart, QString(), options), QString());
        openWindow(settings);
    }

    void openWindow(const QStringList &settings)
    {
        m_window = std::make_unique<DrivenWindow>();
        QCOMPARE(m_window->start(*m_reader), QString());
        if (!settings.isEmpty())
            m_window->pressInSettings(settings);
    }

    void expect(WindowButton button, const QString &caption, const QString &file,
                const QString &text)
    {
        QCOMPARE(m_window->answerDialog(button, caption, file), QString());
        const QString log = m_window->logWith(text);
        QVERIFY2(log.contains(text), qPrintable(log));
    }

    CartridgeFiles m_files;
    std::unique_ptr<MountedReader> m_reader;
    std::unique_ptr<DrivenWindow> m_window;
};

GBDRIVER_TEST(WindowJudgementOnMountTest, core)
#include "window_judgement_on_mount_test.moc"
