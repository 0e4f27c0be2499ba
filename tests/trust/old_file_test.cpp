// A file that a dump is about to replace is in the backup folder, whole, or the dump is not begun.
#include "trust/old_file.h"

#include "drive_faults.h"
#include "files.h"
#include "test_class.h"
#include "trust_bench.h"

#include <QDir>
#include <QtTest>

using namespace virtual_reader;

class OldFileTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void fileIsCopiedUnderItsName_data();
    void fileIsCopiedUnderItsName();
    void whatHoldsNothingIsNotKept();
    void copiesOfOneSecondStandSideBySide();
    void folderThatCannotBeMadeIsTold();
    void diskThatLiesIsTold();
    void filesAreEqualByTheirBytes();

private:
    QString backups() const { return m_files->path("backups"); }
    QStringList names() const { return QDir(backups()).entryList(QDir::Files | QDir::Hidden); }

    std::unique_ptr<TrialBench> m_bench; // its drive carries the user's files as well
    std::unique_ptr<UserFolder> m_files;
};

void OldFileTest::init()
{
    m_bench.reset();
    m_bench = std::make_unique<TrialBench>(benchCartridge());
    m_files = std::make_unique<UserFolder>();
}

void OldFileTest::fileIsCopiedUnderItsName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("pattern"); // %1: date and time
    QTest::newRow("suffix") << "game.sav"
                            << "^game %1\\.sav$";
    QTest::newRow("several dots") << "a.game.gb"
                                  << "^a\\.game %1\\.gb$";
    QTest::newRow("no suffix") << "game"
                               << "^game %1$";
}

void OldFileTest::fileIsCopiedUnderItsName()
{
    QFETCH(QString, name);
    QFETCH(QString, pattern);
    const QByteArray bytes = trialNoise(70000);
    const QString path = m_files->addFile(name, bytes);
    const OldFileCopy copy = keepOldFile(path, backups());
    QVERIFY(copy.outcome.isDone());
    QCOMPARE(names().size(), 1);
    const QString date = "\\d{4}-\\d\\d-\\d\\d \\d\\d-\\d\\d-\\d\\d";
    QVERIFY2(QRegularExpression(pattern.arg(date)).match(names().first()).hasMatch(),
             qPrintable(names().first()));
    QCOMPARE(copy.path, QDir(backups()).filePath(names().first()));
    QVERIFY(contentOf(copy.path) == bytes);
    QVERIFY(contentOf(path) == bytes);
}

void OldFileTest::whatHoldsNothingIsNotKept()
{
    for (const QString &path :
         {m_files->path("nothing"), m_files->addFile("empty", {}), m_files->path()}) { // a folder
        const OldFileCopy copy = keepOldFile(path, backups());
        QVERIFY(copy.outcome.isDone());
        QCOMPARE(copy.path, QString());
    }
    QVERIFY(!QDir(backups()).exists());
}

void OldFileTest::copiesOfOneSecondStandSideBySide()
{
    for (int number = 1; number <= 3; ++number) {
        const QString path = m_files->addFile("game.sav", QByteArray(number, 'x'));
        QVERIFY(keepOldFile(path, backups()).outcome.isDone());
        QCOMPARE(names().size(), number);
    }
}

void OldFileTest::folderThatCannotBeMadeIsTold()
{
    m_files->addFile("backups", "a file");
    const OldFileCopy copy = keepOldFile(m_files->addFile("game.sav", "old"), backups());
    QCOMPARE(copy.outcome.trouble, Trouble::NoFolder);
    QCOMPARE(copy.outcome.detail, backups());
    QCOMPARE(copy.outcome.state, CartridgeState::NotRead);
    QCOMPARE(copy.path, QString());
}

void OldFileTest::diskThatLiesIsTold()
{
    const QString path = m_files->addFile("game.sav", "old bytes");
    for (const NamedFault &way : waysToFail(DriveCall::Write)) {
        DriveFault fault = way.fault;
        fault.pathEnd = ".sav";
        if (fault.driveVanishes || fault.flips != 0) // not of the user's disk; beyond these bytes
            continue;
        if (fault.bytes >= 512) // more than there are
            fault.bytes = 4;
        m_bench->drive().clearFaults();
        m_bench->drive().addFault(fault);
        const OldFileCopy copy = keepOldFile(path, backups());
        QVERIFY2(copy.outcome.trouble == Trouble::NoFile, way.name);
        QVERIFY2(copy.path.isEmpty(), way.name);
        QVERIFY2(names().isEmpty(), way.name);
    }
}

void OldFileTest::filesAreEqualByTheirBytes()
{
    const QString path = m_files->addFile("one", "same");
    QVERIFY(areEqualFiles(path, m_files->addFile("two", "same")));
    QVERIFY(!areEqualFiles(path, m_files->addFile("two", "sama")));
    QVERIFY(!areEqualFiles(path, m_files->addFile("two", "same and more")));
    QVERIFY(!areEqualFiles(path, m_files->path("nothing")));
    QVERIFY(!areEqualFiles(m_files->path("nothing"), m_files->path("nothing")));
}

GBDRIVER_TEST(OldFileTest, core)
#include "old_file_test.moc"
