// The command "drives": why each drive is or is not taken as the reader.
#include "cli/commands.h"

#include "device/device_link.h"
#include "drive_shelf.h"
#include "report_capture.h"
#include "test_class.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

constexpr char kIdentityPath[] = "K-DRIVER.DMP";

} // namespace

class DriveListTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void readerIsTaken();
    void otherTypesAreNotLookedInto_data();
    void otherTypesAreNotLookedInto();
    void unreadableLabelIsSaid();
    void driveWithoutIdentityFileIsTakenWithAQuestion();
    void shortIdentityFileIsRefused();
    void firstOfSeveralIsTaken();
    void stickInFrontOfTheReaderIsWarnedOf();
    void readersFilesAreTried_data();
    void readersFilesAreTried();
    void nothingFoundIsNoReader();
    void quietStillAnswers();
    void jsonHasOneObjectADrive();
    void jsonLeavesOutWhatIsNotKnown();

private:
    std::unique_ptr<DriveShelf> m_shelf;
};

void DriveListTest::init()
{
    qunsetenv("GBDRIVER_DRIVES");
    qunsetenv("GBDRIVER_VIRTUAL_READER");
    deviceLink = DeviceLink();
    m_shelf = std::make_unique<DriveShelf>();
    setDriveBackend(m_shelf.get());
}

void DriveListTest::cleanup()
{
    QVERIFY(!m_shelf->wasWritten());
    setDriveBackend(nullptr);
}

void DriveListTest::readerIsTaken()
{
    m_shelf->addReader('F', "LABEL", "FIRMWARE 1");
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runDrives(capture.reporter()), ExitCode::Done);
    QCOMPARE(capture.answers(),
             QString("F: removable drive, label \"LABEL\", the virtual reader of this program\n"
                     "   taken as the reader\n"
                     "   identity: \"FIRMWARE 1\"\n"
                     "   CMD.CMD: opens\n"
                     "   DUMP.ROM: opens\n"));
    QCOMPARE(capture.messages(), QString());
}

void DriveListTest::otherTypesAreNotLookedInto_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("word");
    QTest::newRow("unknown") << 0 << "drive of unknown type"
                             << "unknown";
    QTest::newRow("gone") << 1 << "no drive any more"
                          << "none";
    QTest::newRow("fixed") << 3 << "fixed disk"
                           << "fixed";
    QTest::newRow("network") << 4 << "network drive"
                             << "remote";
    QTest::newRow("disc") << 5 << "CD or DVD drive"
                          << "cdrom";
    QTest::newRow("memory") << 6 << "RAM disk"
                            << "ramdisk";
}

void DriveListTest::otherTypesAreNotLookedInto()
{
    QFETCH(int, type);
    QFETCH(QString, text);
    m_shelf->addDrive('C', static_cast<DriveType>(type));
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runDrives(capture.reporter()), ExitCode::NoReader);
    QCOMPARE(capture.answers(),
             "C: " + text + "\n   not taken: a reader is a removable drive, this is not\n");
    ReportCapture json(OutputStyle::Json);
    QCOMPARE(runDrives(json.reporter()), ExitCode::NoReader);
    const QJsonObject object = json.objects().first();
    QTEST(object["type"].toString(), "word");
    QCOMPARE(object["verdict"].toString(), QString("not-removable"));
    QVERIFY(!object.contains("dumpFile"));
}

void DriveListTest::unreadableLabelIsSaid()
{
    m_shelf->addReader('E').addFault(
        lastingFault(DriveCall::VolumeLabel, "", DriveErrorCode::InputOutput));
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runDrives(capture.reporter()), ExitCode::Done);
    QVERIFY(capture.answers().contains("   no label can be read: E:: injected fault\n"));
}

void DriveListTest::driveWithoutIdentityFileIsTakenWithAQuestion()
{
    m_shelf->addReader('E').addFault(missingFile(kIdentityPath));
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runDrives(capture.reporter()), ExitCode::Done);
    QVERIFY(
        capture.answers().contains("   taken, though it has no identity file: is it a reader?\n"));
    QVERIFY(!capture.answers().contains("identity:"));
}

void DriveListTest::shortIdentityFileIsRefused()
{
    m_shelf->addReader('E').addFault(
        lastingFault(DriveCall::Read, kIdentityPath, DriveErrorCode::None)); // reads nothing
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runDrives(capture.reporter()), ExitCode::NoReader);
    QVERIFY(
        capture.answers().contains("   not taken: its K-DRIVER.DMP ends before the identity\n"));
    QVERIFY(!capture.answers().contains("identity:"));
}

void DriveListTest::firstOfSeveralIsTaken()
{
    m_shelf->addDrive('C', DriveType::Fixed);
    m_shelf->addReader('E');
    m_shelf->addReader('G', "OTHER", "OTHER_FW2");
    m_shelf->addReader('H').addFault(missingFile(kIdentityPath));
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runDrives(capture.reporter()), ExitCode::Done);
    const QString text = capture.answers();
    QVERIFY(text.contains("label \"READER\", the virtual reader of this program\n"
                          "   taken as the reader\n   identity: \"READER_FW1\"\n"));
    QVERIFY(text.contains("   also a reader, but E: comes first\n   identity: \"OTHER_FW2\"\n"));
    QVERIFY(text.contains("   would pass as a reader, though it has no identity file, but E: "
                          "comes first\n"));
    QCOMPARE(text.count(QRegularExpression("^[A-Z]: ", QRegularExpression::MultilineOption)), 4);
    QCOMPARE(capture.messages(), QString());
}

void DriveListTest::stickInFrontOfTheReaderIsWarnedOf()
{
    m_shelf->addReader('D', "STICK").addFault(missingFile(kIdentityPath));
    m_shelf->addReader('E');
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runDrives(capture.reporter()), ExitCode::Done);
    QCOMPARE(capture.messages(),
             QString("D: is taken and shows no identity, E: has one. If E: is the reader, use "
                     "--drive E\nor take D: out.\n"));
}

void DriveListTest::readersFilesAreTried_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("call");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("line");
    const QString commandFails = "CMD.CMD: fails: E:\\CMD.CMD: injected fault";
    const int write = static_cast<int>(DriveCall::MayWrite);
    const int read = static_cast<int>(DriveCall::OpenForRead);
    QTest::newRow("no command file yet") << "CMD.CMD" << write << int(DriveErrorCode::NotFound)
                                         << "CMD.CMD: missing (the first command makes it)";
    QTest::newRow("command file refused")
        << "CMD.CMD" << write << int(DriveErrorCode::Refused) << commandFails;
    QTest::newRow("command file in use")
        << "CMD.CMD" << write << int(DriveErrorCode::InUse) << commandFails;
    QTest::newRow("command file not made")
        << "CMD.CMD" << write << int(DriveErrorCode::NotTheReader) << commandFails;
    QTest::newRow("no data file") << "DUMP.ROM" << read << int(DriveErrorCode::NotFound)
                                  << "DUMP.ROM: missing";
    QTest::newRow("data file refused") << "DUMP.ROM" << read << int(DriveErrorCode::Refused)
                                       << "DUMP.ROM: fails: E:\\DUMP.ROM: injected fault";
}

void DriveListTest::readersFilesAreTried()
{
    QFETCH(QString, name);
    QFETCH(int, call);
    QFETCH(int, code);
    QFETCH(QString, line);
    m_shelf->addReader('E').addFault(lastingFault(static_cast<DriveCall>(call),
                                                  name.toLatin1().constData(),
                                                  static_cast<DriveErrorCode>(code)));
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runDrives(capture.reporter()), ExitCode::Done);
    QVERIFY2(capture.answers().contains("   " + line + "\n"), qPrintable(capture.answers()));
    QCOMPARE(capture.answers().count(": opens\n"), 1); // the other file
}

void DriveListTest::nothingFoundIsNoReader()
{
    ReportCapture capture(OutputStyle::Text);
    QCOMPARE(runDrives(capture.reporter()), ExitCode::NoReader);
    QCOMPARE(capture.answers(), QString());
    QVERIFY(capture.messages().startsWith("No drive that could be a reader is seen.\nIs the "));
}

void DriveListTest::quietStillAnswers()
{
    m_shelf->addReader('E');
    ReportCapture capture(OutputStyle::Quiet);
    QCOMPARE(runDrives(capture.reporter()), ExitCode::Done);
    QVERIFY(capture.answers().startsWith("E: removable drive"));
}

void DriveListTest::jsonHasOneObjectADrive()
{
    m_shelf->addReader('E', "LABEL", "FIRMWARE 1");
    m_shelf->addReader('F');
    ReportCapture capture(OutputStyle::Json);
    QCOMPARE(runDrives(capture.reporter()), ExitCode::Done);
    const QVector<QJsonObject> objects = capture.objects();
    QCOMPARE(objects.size(), 2);
    QCOMPARE(objects[0], QJsonObject({{"event", "detected"},
                                      {"what", "drive"},
                                      {"drive", "E"},
                                      {"type", "removable"},
                                      {"verdict", "taken"},
                                      {"reason", "taken as the reader"},
                                      {"place", "the virtual reader of this program"},
                                      {"label", "LABEL"},
                                      {"identity", "FIRMWARE 1"},
                                      {"identityFile", "opens"},
                                      {"commandFile", "opens"},
                                      {"dumpFile", "opens"}}));
    QCOMPARE(objects[1]["verdict"].toString(), QString("also-passes"));
    QCOMPARE(capture.messages(), QString());
}

void DriveListTest::jsonLeavesOutWhatIsNotKnown()
{
    FaultyDrive &drive = m_shelf->addReader('E');
    drive.addFault(missingFile(kIdentityPath));
    drive.addFault(lastingFault(DriveCall::VolumeLabel, "", DriveErrorCode::Refused));
    ReportCapture capture(OutputStyle::Json);
    QCOMPARE(runDrives(capture.reporter()), ExitCode::Done);
    const QJsonObject object = capture.objects().first();
    QVERIFY(!object.contains("label"));
    QVERIFY(!object.contains("identity"));
    QCOMPARE(object["labelError"].toString(), QString("E:: injected fault"));
    QCOMPARE(object["identityFile"].toString(), QString("missing"));
}

GBDRIVER_TEST(DriveListTest, core)
#include "drive_list_test.moc"
