// What the real window says of jobs that used to end in a bare ">Success!", read from its log, and
// what they left behind: on a real X server, through the virtual reader on a real mount.
#include "cartridge_files.h"
#include "driven_window.h"
#include "samples.h"
#include "test_class.h"

#include <QJsonArray>
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
const QStringList kRom128K = {"Tab", "Tab", "Tab", "Down", "Down"};
const QStringList kGbaSram32K = {"Tab", "Down", "Tab", "Tab", "Tab", "Down", "Down"};
const QStringList kGbaFlash64K = {"Tab", "Down", "Tab", "Tab", "Down"};
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
        expect(
            WindowButton::Flash, "Get ROM File.", m_files.addImage(kMbc5, 64 * kKibi, 0, 3),
            "\nrefused: The write was not begun; the cartridge was read, which also writes to its "
            "bus.");
    }

    void gameLargerThanTheChipIsNotFlashed()
    {
        start(m_files.addImage(kMbc5, kMebi, 0, 4), {"--flash", "16", "--flash-code", "20"}, {});
        expect(WindowButton::Flash, "Get ROM File.", m_files.addImage(kMbc5, 2 * kMebi, 0, 5),
               "\nThe file has 2097152 bytes, the flash chip 1048576.");
        QVERIFY(m_window->logWith("refused: ").contains("\nrefused: The write was not begun;"));
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

    // The good save is where it was, or in the one file that the log names.
    void pulledOutReaderLeavesTheOldSave()
    {
        const QString chip = m_files.addNoise("sram.sav", 32 * kKibi, 10);
        m_reader = std::make_unique<MountedReader>();
        QCOMPARE(m_reader->start(m_files.addGbaImage(kMebi), chip,
                                 {"--save-type", "sram", "--pull-out", "8"}),
                 QString());
        openWindow(kGbaSram32K);
        const QByteArray good = noise(32 * kKibi, 11);
        const QString save = m_files.addFile("good.sav", good);
        expect(WindowButton::ReadRam, "Read save to...", save, "\nincomplete: ");
        QCOMPARE(placeOfFault(), QString("behind gba-sram-read"));
        const QByteArray now = contentOf(save);
        QVERIFY(now == good || m_window->backups() == QList<QByteArray>{good});
    }

    void errorBehindTheEraseNamesTheBackup()
    {
        const QString chip = m_files.addNoise("flash.sav", 64 * kKibi, 12);
        const QByteArray old = contentOf(chip);
        m_reader = std::make_unique<MountedReader>();
        QCOMPARE(m_reader->start(m_files.addGbaImage(kMebi), chip,
                                 {"--save-type", "flash", "--fail-command", "84"}),
                 QString());
        openWindow(kGbaFlash64K);
        expect(WindowButton::WriteRam, "Get Save File.",
               m_files.addNoise("new.sav", 64 * kKibi, 13), "The cartridge may be partly written.");
        QCOMPARE(placeOfFault(), QString("behind gba-sram-read"));
        const QString log = m_window->log();
        QVERIFY2(log.contains("\nfailed: ") || log.contains("\nincomplete: "), qPrintable(log));
        QVERIFY2(log.contains("write that file with Write RAM"), qPrintable(log));
        QCOMPARE(contentOf(chip), QByteArray(64 * kKibi, '\xFF'));
        QCOMPARE(m_window->backups(), QList<QByteArray>{old});
    }

    void failedBankSwitchIsNoGoodDump()
    {
        start(m_files.addImage(kMbc5, 128 * kKibi, 0, 14), {"--fail-command", "10"}, kRom128K);
        const QString dump = m_files.path("switch.gb");
        expect(WindowButton::Dump, "Read ROM to...", dump, "\nincomplete: ");
        QCOMPARE(placeOfFault(), QString("behind gb-write"));
        QVERIFY(!m_window->log().contains("verified: "));
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

    // Behind which command the fault came.
    QString placeOfFault() const
    {
        QString before;
        for (const QJsonObject &operation : m_reader->operations()) {
            if (operation["op"] != "command")
                continue;
            if (operation.contains("refused"))
                return "behind " + before;
            before = operation["blocks"].toArray().first().toObject()["name"].toString();
        }
        return "none has failed";
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
