// What is found on each drive, and which drive is taken as the reader.
#include "device/drive_finding.h"

#include "device/device_link.h"
#include "drive_shelf.h"
#include "test_class.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

constexpr char kIdentityPath[] = "K-DRIVER.DMP";

} // namespace

class DriveFindingTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void unreadableLabelIsSaid();
    void failedIdentityReadShowsTheSystemsText_data();
    void failedIdentityReadShowsTheSystemsText();
    void identityIsPrintable();
    void verdictIsThatOfAScan();

private:
    static DriveFinding only()
    {
        const QVector<DriveFinding> findings = examineDrives();
        return findings.size() == 1 ? findings.first() : DriveFinding();
    }

    std::unique_ptr<DriveShelf> m_shelf;
};

void DriveFindingTest::init()
{
    deviceLink = DeviceLink();
    m_shelf = std::make_unique<DriveShelf>();
    setDriveBackend(m_shelf.get());
}

void DriveFindingTest::cleanup()
{
    QVERIFY(!m_shelf->wasWritten());
    setDriveBackend(nullptr);
}

void DriveFindingTest::unreadableLabelIsSaid()
{
    m_shelf->addReader('E').addFault(
        lastingFault(DriveCall::VolumeLabel, "", DriveErrorCode::InputOutput));
    const DriveFinding finding = only();
    QCOMPARE(finding.verdict, DriveVerdict::Taken);
    QCOMPARE(finding.label, QString());
    QCOMPARE(finding.labelError, QString("E:: injected fault"));
}

void DriveFindingTest::failedIdentityReadShowsTheSystemsText_data()
{
    QTest::addColumn<int>("call");
    QTest::addColumn<int>("code");
    QTest::newRow("refused") << int(DriveCall::OpenForRead) << int(DriveErrorCode::Refused);
    QTest::newRow("read") << int(DriveCall::Read) << int(DriveErrorCode::InputOutput);
    QTest::newRow("close") << int(DriveCall::Close) << int(DriveErrorCode::InputOutput);
}

void DriveFindingTest::failedIdentityReadShowsTheSystemsText()
{
    QFETCH(int, call);
    QFETCH(int, code);
    m_shelf->addReader('E').addFault(lastingFault(static_cast<DriveCall>(call), kIdentityPath,
                                                  static_cast<DriveErrorCode>(code)));
    const DriveFinding finding = only();
    QCOMPARE(finding.verdict, DriveVerdict::Taken);
    QCOMPARE(int(finding.identityFile.code), code);
    QVERIFY(!finding.hasIdentity());
    QCOMPARE(verdictText(finding), QString("taken, though its identity could not be read: "
                                           "E:\\K-DRIVER.DMP: injected fault: is it a reader?"));
}

void DriveFindingTest::identityIsPrintable()
{
    m_shelf->addReader('E', "READER",
                       std::string("A\x01"
                                   "B") +
                           '\0' + "C");
    QCOMPARE(only().identity, QString("A?B"));
}

void DriveFindingTest::verdictIsThatOfAScan()
{
    m_shelf->addDrive('A', DriveType::Fixed);
    m_shelf->addReader('D').addFault(
        lastingFault(DriveCall::Read, kIdentityPath, DriveErrorCode::None));
    m_shelf->addReader('K').addFault(missingFile(kIdentityPath));
    m_shelf->addReader('M');
    QCOMPARE(findDevice(0, nullptr), 1);
    QCOMPARE(deviceLink.driveLetter, static_cast<signed char>('K'));
    QString verdicts;
    for (const DriveFinding &finding : examineDrives())
        verdicts += QString("%1%2 ").arg(QChar(finding.letter)).arg(int(finding.verdict));
    QCOMPARE(verdicts, QString("A0 D1 K2 M3 "));
}

GBDRIVER_TEST(DriveFindingTest, core)
#include "drive_finding_test.moc"
