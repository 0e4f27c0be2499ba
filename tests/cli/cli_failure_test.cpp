// The built command-line program when something is wrong: the exit code that says what, the reason
// on standard error, nothing on standard output, and no file of the user's touched.
#include "program_run.h"
#include "test_class.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace
{

constexpr std::uint32_t kRomSize = 64 * 1024;
constexpr std::uint32_t kRamSize = 32 * 1024;
// All is said, so that the job itself meets the fault and not the look before it.
const char kDumpOptions[] = "--overwrite --no-auto --system gb --mapper mbc5 --rom-size 64K";
const char kSaveOptions[] = "--no-auto --system gb --mapper mbc5 --ram-size 32K";

} // namespace

class CliFailureTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        QVERIFY(writeFile(path("cart.gb"), mbc5Image(kRomSize, kRamSize)));
        QVERIFY(writeFile(path("file"), "old"));
    }

    void wrongUsage_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<QString>("reason");
        QTest::newRow("nothing") << ""
                                 << "Missing command";
        QTest::newRow("unknown option") << "dump FILE --fast"
                                        << "dump has no option --fast.";
        QTest::newRow("unknown command") << "erase FILE"
                                         << "\"erase\" is no command";
        QTest::newRow("missing file") << "dump"
                                      << "exactly one file name";
        QTest::newRow("option of a library") << "--help-all"
                                             << "There is no option --help-all.";
        QTest::newRow("size with a sign") << "dump FILE --system gb --mapper mbc5 --rom-size +1M"
                                          << "--rom-size +1M: not a size";
        QTest::newRow("file name for info") << "info FILE"
                                            << "info takes no \"";
        QTest::newRow("missing option") << "dump FILE --no-auto --system gb --rom-size 64K"
                                        << "Missing --mapper";
        QTest::newRow("wrong value") << "dump FILE --system gb --mapper mbc9 --rom-size 64K"
                                     << "--mapper mbc9: not one of";
        QTest::newRow("too large") << "dump FILE --system gb --mapper mbc5 --rom-size 65M"
                                   << "up to 64M";
    }
    void wrongUsage()
    {
        QFETCH(QString, words);
        QFETCH(QString, reason);
        const ProgramResult result = run(words.replace("FILE", path("file")), "demo");
        checkFailure(result, ExitCode::Usage, reason);
        QVERIFY(fileBytes(path("file")) == "old");
    }

    void noReader_data()
    {
        QTest::addColumn<QString>("drives");
        QTest::newRow("empty list") << ";";
        QTest::newRow("no such folder") << "E=/nonexistent/reader";
        QTest::newRow("list that is not understood") << "reader";
    }
    void noReader()
    {
        QFETCH(QString, drives);
        const ProgramResult result = runProgram(CLI_PROGRAM, dump(path("file")), {"", drives});
        checkFailure(result, ExitCode::NoReader, "Can not found device.");
        QVERIFY2(result.err.contains("Plug it in"), qPrintable(result.err));
        QVERIFY(fileBytes(path("file")) == "old");
    }

    void otherDriveLetter()
    {
        checkFailure(run(dump(path("file")) + " --drive F", cart()), ExitCode::NoReader,
                     "Can not found device.");
        QVERIFY(fileBytes(path("file")) == "old");
    }

    void badVirtualReader_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no request") << "something"
                                    << "\"something\" is not understood";
        QTest::newRow("no cartridge") << "save=x.sav"
                                      << "either demo or cart=FILE must be given";
        QTest::newRow("two cartridges") << "demo,cart=x.gb"
                                        << "either demo or cart=FILE";
        QTest::newRow("missing file") << "cart=/nonexistent.gb"
                                      << "/nonexistent.gb";
        QTest::newRow("no name") << "cart="
                                 << "\"cart=\" is not understood";
        QTest::newRow("bad letter") << "demo,drive=7"
                                    << "\"drive=7\" is not understood";
    }
    void badVirtualReader()
    {
        QFETCH(QString, value);
        QFETCH(QString, reason);
        const ProgramResult result = run(dump(path("file")), value);
        checkFailure(result, ExitCode::Usage, reason);
        QVERIFY2(result.err.startsWith("gbdriver-cli: GBDRIVER_VIRTUAL_READER: "),
                 qPrintable(result.err));
        QVERIFY(fileBytes(path("file")) == "old");
    }

    void missingMapperFolder()
    {
        const QString program = path("gbdriver-cli");
        QVERIFY(QFile::copy(CLI_PROGRAM, program));
        const ProgramResult result = runProgram(program, dump(path("file")), {cart(), ""});
        checkFailure(result, ExitCode::FileError,
                     "There is no mapper script \"" + QFileInfo(program).canonicalPath() +
                         "/mapper/gb_mbc5.nut\"");
        QVERIFY2(result.err.contains("Install the mapper folder beside the program."),
                 qPrintable(result.err));
        QVERIFY(fileBytes(path("file")) == "old");
    }

    void brokenMapperScript()
    {
        const QString program = programWithScript("function cpu_dump(\n");
        const ProgramResult result = runProgram(program, dump(path("file")), {cart(), ""});
        checkFailure(result, ExitCode::TransferFailed, "dump core script error");
        QVERIFY(fileBytes(path("file")) == "old");
    }

    void sizeThatTheMapperCanNotHave()
    {
        checkFailure(run("dump " + path("file") +
                             " --overwrite --no-auto --system gb --mapper mbc5 --rom-size 48K",
                         cart()),
                     ExitCode::Refused, "49152 bytes");
        QVERIFY(fileBytes(path("file")) == "old");
    }

    void outputThatCanNotBeWritten_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        QTest::newRow("folder does not exist") << "none/file"
                                               << "the folder does not exist";
        QTest::newRow("is a folder") << "."
                                     << "it is a folder";
    }
    void outputThatCanNotBeWritten()
    {
        QFETCH(QString, name);
        QFETCH(QString, reason);
        const ProgramResult result = run(dump(path(name)), cart());
        checkFailure(result, ExitCode::FileError,
                     "Can not write " + path(name) + ": " + reason + ". Nothing was read.");
    }

    void inputThatIsTooShort()
    {
        const QByteArray save = noise(kRamSize, 1);
        QVERIFY(writeFile(path("kept.sav"), save));
        QVERIFY(writeFile(path("file"), noise(kRamSize - 1, 2)));
        const ProgramResult result = run(QString("write-ram %1 %2").arg(path("file"), kSaveOptions),
                                         cart() + ",save=" + path("kept.sav"));
        checkFailure(result, ExitCode::Refused,
                     path("file") + " has 32767 bytes, the save of the cartridge has 32768.");
        QVERIFY(fileBytes(path("kept.sav")) == save);
    }

    // Natives do not report payload that does not arrive, so the job itself ends well.
    void saveThatDoesNotArriveIsNoSuccess()
    {
        QVERIFY(writeFile(path("file"), noise(kRamSize, 2)));
        const ProgramResult result =
            run(QString("write-ram %1 --no-backup %2").arg(path("file"), kSaveOptions),
                cart() + ",save=" + path("none/kept.sav"));
        checkFailure(result, ExitCode::TransferFailed, path("none/kept.sav"));
    }

    void inputThatDoesNotExist()
    {
        checkFailure(run(QString("write-ram %1 %2").arg(path("none"), kSaveOptions), cart()),
                     ExitCode::FileError, "Can not read " + path("none") + ": ");
    }

    void saveFileThatDoesNotFitTheCartridge()
    {
        QVERIFY(writeFile(path("kept.sav"), noise(100, 1)));
        checkFailure(run(dump(path("file")), cart() + ",save=" + path("kept.sav")), ExitCode::Usage,
                     "kept.sav");
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QString cart() const { return "cart=" + path("cart.gb"); }
    static QString dump(const QString &file) { return "dump " + file + ' ' + kDumpOptions; }

    static ProgramResult run(const QString &words, const QString &virtualReader)
    {
        return runProgram(CLI_PROGRAM, words, {virtualReader, ""});
    }

    // A copy of the program that has `script` for MBC5 cartridges.
    QString programWithScript(const QByteArray &script) const
    {
        const QString program = path("gbdriver-cli");
        if (!QFile::copy(CLI_PROGRAM, program) || !QDir(path("")).mkdir("mapper") ||
            !writeFile(path("mapper/gb_mbc5.nut"), script))
            qFatal("cannot lay out the program in %s", qPrintable(path("")));
        return program;
    }

    static void checkFailure(const ProgramResult &result, ExitCode code, const QString &reason)
    {
        QVERIFY2(codeOf(result) == code,
                 qPrintable(QString("exit code %1: %2").arg(result.exitCode).arg(result.err)));
        QVERIFY2(result.err.contains(reason), qPrintable(result.err));
        QCOMPARE(result.out, QString());
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

GBDRIVER_TEST(CliFailureTest, core)
#include "cli_failure_test.moc"
