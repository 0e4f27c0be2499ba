// Reading a declaration of drives, LETTER=FOLDER[:LABEL] separated by ';'.
#include "device/linux_drives.h"

#include "test_class.h"

#include <QDir>
#include <QtTest>

namespace
{

QString describe(const std::vector<LinuxDrive> &drives)
{
    QStringList texts;
    for (const LinuxDrive &drive : drives)
        texts.append(
            QString("%1=%2|%3").arg(drive.letter).arg(drive.folder.c_str(), drive.label.c_str()));
    return texts.join(' ');
}

} // namespace

class DriveDeclarationTest : public QObject
{
    Q_OBJECT

private slots:
    void declaration_data();
    void declaration();
    void relativeFolderBecomesAbsolute();
    void complaintNamesTheEntry();
};

void DriveDeclarationTest::declaration_data()
{
    QTest::addColumn<QString>("declared");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("complaints");
    QTest::newRow("nothing") << ""
                             << "" << 0;
    QTest::newRow("folder's name as label") << "E=/mnt/reader"
                                            << "E=/mnt/reader|reader" << 0;
    QTest::newRow("label") << "E=/mnt/reader:LABEL"
                           << "E=/mnt/reader|LABEL" << 0;
    QTest::newRow("empty label") << "E=/mnt/reader:"
                                 << "E=/mnt/reader|" << 0;
    QTest::newRow("colon in the folder") << "E=/mnt/a:b:LABEL"
                                         << "E=/mnt/a:b|LABEL" << 0;
    QTest::newRow("colon, empty label") << "E=/mnt/a:b:"
                                        << "E=/mnt/a:b|" << 0;
    QTest::newRow("equals sign in the folder") << "E=/mnt/a=b"
                                               << "E=/mnt/a=b|a=b" << 0;
    QTest::newRow("blanks") << "E=/mnt/my reader:MY LABEL"
                            << "E=/mnt/my reader|MY LABEL" << 0;
    QTest::newRow("non-ASCII") << u8"E=/mnt/カセット" << u8"E=/mnt/カセット|カセット" << 0;
    QTest::newRow("two") << "A=/a;Z=/z:Y"
                         << "A=/a|a Z=/z|Y" << 0;
    QTest::newRow("sorted") << "F=/b;E=/a"
                            << "E=/a|a F=/b|b" << 0;
    QTest::newRow("empty entries") << ";;E=/a;;"
                                   << "E=/a|a" << 0;
    QTest::newRow("dots") << "E=/mnt/x/../reader/."
                          << "E=/mnt/reader/|reader" << 0;
    QTest::newRow("slash at the end") << "E=/mnt/reader/"
                                      << "E=/mnt/reader/|reader" << 0;
    QTest::newRow("second use of a letter") << "E=/a;E=/b"
                                            << "E=/a|a" << 1;
    QTest::newRow("small letter") << "e=/a"
                                  << "" << 1;
    QTest::newRow("before A") << "@=/a"
                              << "" << 1;
    QTest::newRow("behind Z") << "[=/a"
                              << "" << 1;
    QTest::newRow("only a letter") << "E"
                                   << "" << 1;
    QTest::newRow("no folder") << "E="
                               << "" << 1;
    QTest::newRow("label without a folder") << "E=:LABEL"
                                            << "" << 1;
    QTest::newRow("no letter") << "=/a"
                               << "" << 1;
    QTest::newRow("two letters") << "EE=/a"
                                 << "" << 1;
    QTest::newRow("no equals sign") << "/mnt/reader"
                                    << "" << 1;
    QTest::newRow("good among bad") << "x;E=/a;y;F=/b"
                                    << "E=/a|a F=/b|b" << 2;
}

void DriveDeclarationTest::declaration()
{
    QFETCH(QString, declared);
    QFETCH(QString, expected);
    QFETCH(int, complaints);
    std::vector<std::string> texts;
    const auto normalised = [](QString text) { return text.replace("/|", "|"); };
    QCOMPARE(normalised(describe(parseDeclaredDrives(declared.toStdString(), &texts))),
             normalised(expected));
    QCOMPARE(static_cast<int>(texts.size()), complaints);
}

void DriveDeclarationTest::relativeFolderBecomesAbsolute()
{
    std::vector<std::string> complaints;
    const std::vector<LinuxDrive> drives = parseDeclaredDrives("E=some/reader", &complaints);
    QCOMPARE(drives.size(), std::size_t{1});
    QCOMPARE(QString::fromStdString(drives[0].folder), QDir::current().filePath("some/reader"));
    QVERIFY(drives[0].device.empty());
}

void DriveDeclarationTest::complaintNamesTheEntry()
{
    std::vector<std::string> complaints;
    (void)parseDeclaredDrives("E=/a;nonsense;E=/again", &complaints);
    QCOMPARE(complaints.size(), std::size_t{2});
    QVERIFY(complaints[0].find("\"nonsense\"") != std::string::npos);
    QVERIFY(complaints[1].find("\"E=/again\"") != std::string::npos);
}

GBDRIVER_TEST(DriveDeclarationTest, none)
#include "drive_declaration_test.moc"
