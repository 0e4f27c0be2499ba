// The real window under a wall clock that goes back by a day at every look: no job waits for it, no
// backup takes the place of another.
#include "cartridge_files.h"
#include "driven_window.h"
#include "test_class.h"
#include "wild_clock.h"

#include <QDate>
#include <QDir>
#include <QtTest>

#include <algorithm>

namespace
{

constexpr int kDay = 24 * 60 * 60;
constexpr int kStepMs = 60000;
constexpr std::uint32_t kRomSize = 32 * 1024;
constexpr std::uint32_t kSaveSize = 32 * 1024;

QStringList wildStarter()
{
    QStringList words{"env"};
    const QMap<QString, QString> clock = wildClock(kDay);
    for (auto it = clock.begin(); it != clock.end(); ++it)
        words << it.key() + '=' + it.value();
    return words;
}

} // namespace

class WindowClockTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_image = m_files.addImage(0x1B, kRomSize, kSaveSize);
        m_chip = m_files.addNoise("chip.sav", kSaveSize, 1);
        QCOMPARE(m_reader.start(m_image, m_chip), QString());
        QCOMPARE(m_window.start(m_reader), QString());
        // The third row of the RAM sizes: 32 KiB.
        m_window.pressInSettings({"Tab", "Tab", "Tab", "Tab", "Down", "Down"});
    }

    void dumpIsTheImage()
    {
        const QString dump = m_files.path("dump.gb");
        QCOMPARE(m_window.answerDialog(WindowButton::Dump, "Read ROM to...", dump), QString());
        QVERIFY(m_window.logWith("unverified: ").contains("\n>Success!"));
        QVERIFY(contentOf(dump) == contentOf(m_image));
    }

    void everyBackupIsKept()
    {
        QList<QByteArray> old;
        for (const unsigned number : {2u, 3u}) {
            old << contentOf(m_chip);
            const QString name = QStringLiteral("%1.sav").arg(number);
            const QString save = m_files.addNoise(name, kSaveSize, number);
            QCOMPARE(m_window.answerDialog(WindowButton::WriteRam, "Get Save File.", save),
                     QString());
            QTRY_VERIFY_WITH_TIMEOUT(contentOf(m_chip) == contentOf(save), kStepMs);
        }
        QList<QByteArray> kept = m_window.backups();
        // No name tells of today, so the clock was the wild one.
        const QString today = QDate::currentDate().toString(Qt::ISODate);
        for (const QString &name : QDir(m_window.backupFolder()).entryList(QDir::Files))
            QVERIFY2(!name.contains(today), qPrintable(name));
        std::sort(old.begin(), old.end());
        std::sort(kept.begin(), kept.end());
        QVERIFY(kept == old);
    }

    void programEndsQuietlyAndLeavesTheDriveFree()
    {
        QCOMPARE(m_window.close(), QString());
        QCOMPARE(m_reader.unmount(), QString());
    }

private:
    CartridgeFiles m_files;
    MountedReader m_reader;
    DrivenWindow m_window{wildStarter()};
    QString m_image;
    QString m_chip;
};

GBDRIVER_TEST(WindowClockTest, core)
#include "window_clock_test.moc"
