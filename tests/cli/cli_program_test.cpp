// The built command-line program on the virtual reader in its own process: jobs that succeed, and
// what it prints.
#include "program_run.h"
#include "test_class.h"

#include <QCryptographicHash>
#include <QDir>
#include <QOperatingSystemVersion>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace
{

constexpr std::uint32_t kRomSize = 512 * 1024;
constexpr std::uint32_t kRamSize = 32 * 1024;
const char kDumpOptions[] = "--system gb --mapper mbc5 --rom-size 512K";
const char kSaveOptions[] = "--system gb --mapper mbc5 --ram-size 32K";

// True if the lines hold the texts of `parts` in this order, each in a line of its own.
bool linesInOrder(const QStringList &lines, const QStringList &parts)
{
    int found = 0;
    for (const QString &line : lines) {
        if (found < parts.size() && line.contains(parts[found]))
            ++found;
    }
    return found == parts.size();
}

} // namespace

class CliProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_image = mbc5Image(kRomSize, kRamSize);
        QVERIFY(writeFile(path("cart.gb"), m_image));
    }

    void dumpEqualsTheImage()
    {
        const ProgramResult result =
            run(QString("dump %1 %2").arg(path("dump.gb"), kDumpOptions), "");
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QVERIFY(fileBytes(path("dump.gb")) == m_image);
    }

    void dumpReplacesALongerFileIfTold()
    {
        QVERIFY(writeFile(path("dump.gb"), QByteArray(2 * 1024 * 1024, 'x')));
        const ProgramResult result =
            run(QString("dump %1 --overwrite %2").arg(path("dump.gb"), kDumpOptions), "");
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QVERIFY(fileBytes(path("dump.gb")) == m_image);
    }

    void dumpTellsItsSteps()
    {
        const ProgramResult result =
            run(QString("dump %1 %2").arg(path("dump.gb"), kDumpOptions), "");
        QVERIFY2(linesInOrder(result.errLines(),
                              {"Using:", "  ROM        524288 bytes     user: --rom-size",
                               "Start dump rom...", "] 100%  512.0 KiB of 512.0 KiB",
                               "Dump rom finish.", "compare [", "] 100%  512.0 KiB of 512.0 KiB"}),
                 qPrintable(result.err));
        QCOMPARE(result.out,
                 "consistent: logo, header checksum and checksum over the whole ROM are "
                 "right; 2 equal reads; not a known dump\n" +
                     factsOf(path("dump.gb")));
    }

    // Standard error is a pipe here: a line for 0 %, 10 %, ... 100 % of each of the two reads, and
    // nothing drawn over. The first transfer already brings 6 %.
    void progressHasALineForEveryTenth()
    {
        const ProgramResult result =
            run(QString("dump %1 %2").arg(path("dump.gb"), kDumpOptions), "");
        const QStringList lines =
            result.errLines().filter(QRegularExpression("^(read|compare) +\\[[#.]{12}\\] "));
        QCOMPARE(lines.size(), 22);
        QVERIFY(!result.err.contains('\r'));
        QVERIFY(!result.err.contains('\033'));
    }

    void saveSurvivesReadChangeAndWrite()
    {
        const QByteArray original = noise(kRamSize, 1);
        const QByteArray other = noise(kRamSize, 2);
        QVERIFY(writeFile(path("kept.sav"), original));
        const QString save = ",save=" + path("kept.sav");

        const ProgramResult read =
            run(QString("read-ram %1 %2").arg(path("read.sav"), kSaveOptions), save);
        QVERIFY2(read.exitCode == 0, qPrintable(read.err));
        QVERIFY(fileBytes(path("read.sav")) == original);

        QVERIFY(writeFile(path("new.sav"), other));
        const ProgramResult write = run(writeWords("new.sav"), save);
        QVERIFY2(write.exitCode == 0, qPrintable(write.err));
        QVERIFY(fileBytes(path("kept.sav")) == other);
        const QStringList backups = QDir(path("backups")).entryList(QDir::Files);
        QCOMPARE(backups.size(), 1);
        QVERIFY(fileBytes(path("backups/") + backups[0]) == original);

        const ProgramResult again =
            run(QString("read-ram %1 %2").arg(path("again.sav"), kSaveOptions), save);
        QVERIFY2(again.exitCode == 0, qPrintable(again.err));
        QVERIFY(fileBytes(path("again.sav")) == other);
    }

    void saveJobsTellTheirSteps()
    {
        QVERIFY(writeFile(path("kept.sav"), noise(kRamSize, 1)));
        const QString save = ",save=" + path("kept.sav");
        const ProgramResult read =
            run(QString("read-ram %1 %2").arg(path("read.sav"), kSaveOptions), save);
        QVERIFY2(linesInOrder(read.errLines(),
                              {"Start dump save...", "] 100%  32.0 KiB of 32.0 KiB",
                               "Dump save finish.", "compare [", "] 100%  32.0 KiB of 32.0 KiB"}),
                 qPrintable(read.err));
        QCOMPARE(read.out, "consistent: 2 equal reads\n" + factsOf(path("read.sav")));
        const ProgramResult write = run(writeWords("read.sav"), save);
        QVERIFY2(linesInOrder(write.errLines(),
                              {"backup  [", "compare [", "Backup: " + path("backups/VIRTUAL "),
                               "Read file :" + path("read.sav"), "Read 32768 Bytes",
                               "Start write save...", "] 100%  32.0 KiB of 32.0 KiB",
                               "Write save finish.", "check   [", "] 100%  32.0 KiB of 32.0 KiB"}),
                 qPrintable(write.err));
        QVERIFY2(write.out.startsWith("written: 32768 bytes, read back and equal\nbackup: " +
                                      path("backups/VIRTUAL ")),
                 qPrintable(write.out));
    }

    // An answer alone, for a script that looks at nothing else.
    void quietLeavesTheAnswer()
    {
        const ProgramResult result =
            run(QString("dump %1 --quiet %2").arg(path("dump.gb"), kDumpOptions), "");
        QCOMPARE(result.exitCode, 0);
        QVERIFY2(result.out.startsWith("consistent: "), qPrintable(result.out));
        QCOMPARE(result.err, QString());
    }

    void driveLetterChoosesTheReader_data()
    {
        QTest::addColumn<QString>("reader");
        QTest::addColumn<QString>("option");
        QTest::newRow("the usual letter") << ""
                                          << "--drive E";
        QTest::newRow("small letter") << ""
                                      << "--drive e";
        QTest::newRow("another letter") << ",drive=K"
                                        << "--drive K";
        QTest::newRow("no choice") << ",drive=K"
                                   << "";
    }
    void driveLetterChoosesTheReader()
    {
        QFETCH(QString, reader);
        QFETCH(QString, option);
        const ProgramResult result =
            run(QString("dump %1 %2 %3").arg(path("dump.gb"), kDumpOptions, option), reader);
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QVERIFY(fileBytes(path("dump.gb")) == m_image);
    }

    // Reads that a disk would refuse are refused.
    void strictSectorsAreNoObstacle()
    {
        const ProgramResult result =
            run(QString("dump %1 %2").arg(path("dump.gb"), kDumpOptions), ",strict=1");
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QVERIFY(fileBytes(path("dump.gb")) == m_image);
    }

    void fileNamesCanHaveSpacesAndOtherLetters_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("Latin") << QString::fromUtf8("Jeu d'été.gb");
        // Of other alphabets on Windows tells tests/windows/code_page_test.cpp.
        if (QOperatingSystemVersion::currentType() != QOperatingSystemVersion::Windows)
            QTest::newRow("Japanese") << QString::fromUtf8("Jeu d'été 日本.gb");
    }
    void fileNamesCanHaveSpacesAndOtherLetters()
    {
        QFETCH(QString, name);
        const ProgramResult result = runProgram(
            CLI_PROGRAM, QStringList({"dump", path(name)}) + QString(kDumpOptions).split(' '),
            reader(""));
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QVERIFY(fileBytes(path(name)) == m_image);
    }

    void helpGoesToStandardOutput()
    {
        const ProgramResult result = runProgram(CLI_PROGRAM, QString("--help"));
        QCOMPARE(result.exitCode, 0);
        QVERIFY2(result.out.contains("write-ram FILE"), qPrintable(result.out));
        QCOMPARE(result.err, QString());
    }

    void versionGoesToStandardOutput()
    {
        const ProgramResult result = runProgram(CLI_PROGRAM, QString("--version"));
        QCOMPARE(result.exitCode, 0);
        const QRegularExpression line("^gbdriver-cli \\d+\\.\\d+\\.\\d+\\n$");
        QVERIFY2(line.match(result.out).hasMatch(), qPrintable(result.out));
        QCOMPARE(result.err, QString());
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    QString writeWords(const QString &file) const
    {
        return QString("write-ram %1 --backup %2 %3")
            .arg(path(file), path("backups"), kSaveOptions);
    }

    // What is said of a file beside its verdict.
    static QString factsOf(const QString &file)
    {
        const QByteArray bytes = fileBytes(file);
        return QString("%1: %2 bytes, SHA-1 %3\n")
            .arg(file)
            .arg(bytes.size())
            .arg(QString(QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex()));
    }

    // `more`: further parts of the request for a virtual reader, each with its comma.
    ReaderChoice reader(const QString &more) const
    {
        return {"cart=" + path("cart.gb") + more, ""};
    }

    ProgramResult run(const QString &words, const QString &more) const
    {
        return runProgram(CLI_PROGRAM, words, reader(more));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QByteArray m_image;
};

GBDRIVER_TEST(CliProgramTest, core)
#include "cli_program_test.moc"
