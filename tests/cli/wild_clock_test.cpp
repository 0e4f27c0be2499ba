// A wall clock that stands still, or is set back again and again while a command runs: no backup
// takes the name of another, nothing waits for it, and no time that is told runs backwards.
#include "program_run.h"
#include "test_class.h"
#include "wild_clock.h"

#include <QDateTime>
#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace
{

constexpr std::uint32_t kRomSize = 64 * 1024;
constexpr std::uint32_t kSaveSize = 32 * 1024;

// What a line "NAME   TIME" of the report says.
QDateTime timeIn(const QString &report, const QString &name)
{
    const QRegularExpression line('^' + name + " +(\\S+)$", QRegularExpression::MultilineOption);
    return QDateTime::fromString(line.match(report).captured(1), Qt::ISODate);
}

} // namespace

class WildClockTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<UserFolder>();
        m_folder->addFile("cart.gb", mbc5Image(kRomSize, kSaveSize));
        m_folder->addFile("chip.sav", save(0));
    }

    void theClockIsWild()
    {
        const QDateTime begin = QDateTime::fromString("2030-06-01T12:00:00Z", Qt::ISODate);
        QCOMPARE(run("backup shelf --count 1", 0).exitCode, kDone);
        QCOMPARE(timeIn(report(), "Begin").toUTC(), begin);
    }

    void everyBackupIsKept_data() { addSteps(); }
    void everyBackupIsKept()
    {
        QFETCH(int, step);
        for (int i = 1; i <= 3; ++i) {
            m_folder->addFile("new.sav", save(i));
            const ProgramResult result = run("write-ram new.sav --backup backups", step);
            QVERIFY2(result.exitCode == kDone, qPrintable(result.err));
            QCOMPARE(m_folder->fileBytes("chip.sav"), save(i));
            QCOMPARE(contentsOf("backups"), saves(i));
        }
    }

    void reportEndsBehindItsBegin_data() { addSteps(); }
    void reportEndsBehindItsBegin()
    {
        QFETCH(int, step);
        const ProgramResult result = run("backup shelf --count 1", step);
        QVERIFY2(result.exitCode == kDone, qPrintable(result.err));
        const QDateTime begin = timeIn(report(), "Begin");
        const QDateTime end = timeIn(report(), "End");
        QVERIFY2(begin.isValid() && begin <= end && begin.secsTo(end) < 120, qPrintable(report()));
        QVERIFY(contentsOf("shelf").contains(save(0)));
    }

private:
    static constexpr int kDone = 0;

    static void addSteps()
    {
        QTest::addColumn<int>("step");
        QTest::newRow("stands still") << 0;
        QTest::newRow("back a day") << 24 * 60 * 60;
        QTest::newRow("back a year") << 365 * 24 * 60 * 60;
    }

    static QByteArray save(unsigned number)
    {
        return noise(static_cast<int>(kSaveSize), number + 1);
    }

    // Those that `count` writes have replaced.
    static QList<QByteArray> saves(int count)
    {
        QList<QByteArray> all;
        for (int i = 0; i < count; ++i)
            all << save(static_cast<unsigned>(i));
        std::sort(all.begin(), all.end());
        return all;
    }

    QList<QByteArray> contentsOf(const QString &folder) const
    {
        QList<QByteArray> contents;
        const QDir place(m_folder->path(folder));
        for (const QString &name : place.entryList(QDir::Files | QDir::Hidden))
            contents << contentOf(place.filePath(name));
        std::sort(contents.begin(), contents.end());
        return contents;
    }

    QString report() const
    {
        const QDir shelf(m_folder->path("shelf"));
        return QString::fromUtf8(
            contentOf(shelf.filePath(shelf.entryList({"*.txt"}, QDir::Files).value(0))));
    }

    // Runs a command on the cartridge, below the folder of the test.
    ProgramResult run(const QString &words, int step)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        const QMap<QString, QString> clock = wildClock(step);
        for (auto it = clock.begin(); it != clock.end(); ++it)
            environment.insert(it.key(), it.value());
        environment.remove("GBDRIVER_DRIVES");
        environment.insert("GBDRIVER_VIRTUAL_READER", "cart=" + m_folder->path("cart.gb") +
                                                          ",save=" + m_folder->path("chip.sav"));
        QStringList arguments = words.split(' ');
        for (QString &word : arguments) {
            if (QStringList{"new.sav", "backups", "shelf"}.contains(word))
                word = m_folder->path(word);
        }
        const ProcessRun run = runProcess(CLI_PROGRAM, arguments, environment);
        return {run.exitCode, printedText(run.output), printedText(run.errors)};
    }

    std::unique_ptr<UserFolder> m_folder;
};

GBDRIVER_TEST(WildClockTest, core)
#include "wild_clock_test.moc"
