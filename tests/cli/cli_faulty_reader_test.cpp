// The built command-line program on a drive that has the reader's files but answers wrongly, too
// little or not at all.
#include "reader_folder.h"

#include "cli/exit_code.h"
#include "test_class.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <memory>

namespace
{

// Reads every bank and looks at nothing.
const char kTrustingScript[] = "function cpu_dump(dev, size, max)\n"
                               "{\n"
                               "    cpu_read(dev, 0, 0x8000);\n"
                               "    for (local bank = 2; bank * 0x4000 < size; bank++)\n"
                               "        cpu_read(dev, 0x4000, 0x4000);\n"
                               "}\n";
// One byte less than a report reads.
constexpr std::uint32_t kShortOfAHeader = 8191;

void checkFailure(const ProgramResult &result, ExitCode code, const QString &reason)
{
    QVERIFY2(codeOf(result) == code,
             qPrintable(QString("exit code %1: %2").arg(result.exitCode).arg(result.err)));
    QVERIFY2(result.err.contains(reason), qPrintable(result.err));
    QCOMPARE(result.out, QString());
}

} // namespace

class CliFaultyReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        QVERIFY(writeFile(path("file"), "old"));
    }

    void readsThatComeShort_data();
    void readsThatComeShort();
    void readsThatComeWhole();
    void dataFileThatIsMissing();
    void commandFileThatCanNotBeWritten();
    void readsThatComeShortInShippedScripts();

    void failedReportEndsTheJob_data() { addFaults(); }
    void failedReportEndsTheJob();
    void infoNamesTheReaderThatFails_data() { addFaults(); }
    void infoNamesTheReaderThatFails();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    static void addFaults()
    {
        QTest::addColumn<bool>("takesCommands");
        QTest::addColumn<QString>("error");
        QTest::newRow("no mode") << false << "Initialize device error.";
        QTest::newRow("short read") << true << "Read ROM error.";
    }

    // A copy of the program that has the trusting script for MBC5 cartridges.
    QString trustingProgram() const
    {
        const QString program = path("gbdriver-cli");
        if (!QFile::copy(CLI_PROGRAM, program) || !QDir(path("")).mkdir("mapper") ||
            !writeFile(path("mapper/gb_mbc5.nut"), kTrustingScript))
            qFatal("cannot lay out the program in %s", qPrintable(path("")));
        return program;
    }

    ProgramResult dump(const QString &program, const QString &romSize,
                       const ReaderFolder &reader) const
    {
        return runProgram(program,
                          "dump " + path("file") +
                              " --overwrite --no-auto --system gb --mapper mbc5 --rom-size " +
                              romSize,
                          reader.choice());
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void CliFaultyReaderTest::readsThatComeShort_data()
{
    QTest::addColumn<QString>("romSize");
    QTest::addColumn<unsigned>("dataSize");
    QTest::addColumn<QString>("reason");
    // One read of 0x8000 at 0.
    QTest::newRow("in the only read")
        << "32K" << 0x6000U << "Only 24576 of 32768 bytes were transferred.";
    // One read of 0x8000 at 0, two of 0x4000 at 0x4000.
    QTest::newRow("in every read")
        << "64K" << 0x6000U << "Only 40960 of 65536 bytes were transferred.";
    QTest::newRow("no byte at all") << "32K" << 0U << "Only 0 of 32768 bytes were transferred.";
}

// The script does not mind.
void CliFaultyReaderTest::readsThatComeShort()
{
    QFETCH(QString, romSize);
    QFETCH(unsigned, dataSize);
    QFETCH(QString, reason);
    const ReaderFolder reader(dataSize);
    const ProgramResult result = dump(trustingProgram(), romSize, reader);
    checkFailure(result, ExitCode::TransferFailed, reason);
    QVERIFY2(result.err.contains("Check plug and contacts and try again."), qPrintable(result.err));
    QVERIFY(fileBytes(path("file")) == "old");
}

// The same with all the data, so that the rows above fail for their shortness alone. Noise is no
// game, and said to be none.
void CliFaultyReaderTest::readsThatComeWhole()
{
    const ReaderFolder reader(0x8000);
    const ProgramResult result = dump(trustingProgram(), "64K", reader);
    QCOMPARE(codeOf(result), ExitCode::DataMismatch);
    QVERIFY2(result.out.startsWith("suspicious: there is no boot logo in the header"),
             qPrintable(result.out));
    const QByteArray data = fileBytes(reader.path("DUMP.ROM"));
    QCOMPARE(data.size(), 0x8000);
    QVERIFY(fileBytes(path("file.suspicious")) == data + data.mid(0x4000) + data.mid(0x4000));
    QVERIFY(fileBytes(path("file")) == "old");
}

void CliFaultyReaderTest::dataFileThatIsMissing()
{
    const ReaderFolder reader(0x8000);
    QVERIFY(QFile::remove(reader.path("DUMP.ROM")));
    const ProgramResult result = dump(trustingProgram(), "32K", reader);
    checkFailure(result, ExitCode::TransferFailed, "Only 0 of 32768 bytes were transferred.");
    // The system's own words follow.
    QVERIFY2(result.err.contains("DUMP.ROM\": "), qPrintable(result.err));
}

void CliFaultyReaderTest::commandFileThatCanNotBeWritten()
{
    const ReaderFolder reader(0x8000);
    reader.refuseCommands();
    checkFailure(dump(CLI_PROGRAM, "64K", reader), ExitCode::NoAnswer, "Initialize device error.");
    QVERIFY(fileBytes(path("file")) == "old");
}

// Nor do the scripts that come with the program make a success of it.
void CliFaultyReaderTest::readsThatComeShortInShippedScripts()
{
    const ReaderFolder reader(0x6000);
    checkFailure(dump(CLI_PROGRAM, "64K", reader), ExitCode::TransferFailed,
                 "bytes were transferred.");
}

void CliFaultyReaderTest::failedReportEndsTheJob()
{
    QFETCH(bool, takesCommands);
    QFETCH(QString, error);
    const ReaderFolder reader(kShortOfAHeader);
    if (!takesCommands)
        reader.refuseCommands();
    for (const char *words : {"", " --auto --system gb --mapper mbc5 --rom-size 32K"}) {
        const ProgramResult result =
            runProgram(CLI_PROGRAM, "dump --overwrite " + path("file") + words, reader.choice());
        QCOMPARE(codeOf(result), ExitCode::NoAnswer);
        QVERIFY2(result.err.contains("\n\n" + error + "\nThe reader does not answer."),
                 qPrintable(result.err));
        QCOMPARE(result.out, QString());
        QCOMPARE(fileBytes(path("file")), QByteArray("old"));
    }
}

void CliFaultyReaderTest::infoNamesTheReaderThatFails()
{
    QFETCH(bool, takesCommands);
    QFETCH(QString, error);
    const ReaderFolder reader(kShortOfAHeader);
    if (!takesCommands)
        reader.refuseCommands();
    const ProgramResult result = runProgram(CLI_PROGRAM, QString("info"), reader.choice());
    QCOMPARE(codeOf(result), ExitCode::NoAnswer);
    QVERIFY2(result.out.endsWith("\n\n" + error + '\n'), qPrintable(result.out));
    const ProgramResult asJson = runProgram(CLI_PROGRAM, QString("info --json"), reader.choice());
    QCOMPARE(codeOf(asJson), ExitCode::NoAnswer);
    const QString first = asJson.out.section('\n', 0, 0);
    const QJsonObject object = QJsonDocument::fromJson(first.toUtf8()).object();
    QCOMPARE(object.keys(), (QStringList{"error", "event", "reader", "what"}));
    QCOMPARE(object["error"].toString(), error);
    QCOMPARE(object["reader"].toObject()["label"].toString(), QString("READER"));
    QCOMPARE(object["reader"].toObject()["firmware"].toString(), QString("FOLDER"));
}

GBDRIVER_TEST(CliFaultyReaderTest, core)
#include "cli_faulty_reader_test.moc"
