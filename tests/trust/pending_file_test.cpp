// A file of the user's comes into being as a whole or not at all.
#include "trust/pending_file.h"

#include "device/device_link.h"
#include "drive_faults.h"
#include "files.h"
#include "test_class.h"

#include <QtTest>

using namespace virtual_reader;

namespace
{

const QByteArray kOld = "old";
const QByteArray kNew(2000, 'n');

} // namespace

class PendingFileTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void fileAppearsWithItsNameAtTheEnd();
    void abandonedFileLeavesNothing();
    void existingFileIsTaken();
    void existingFileIsReplacedInOneStep();
    void otherNameLeavesTheFileOfThisOne();
    void nameThatIsTakenMeanwhileIsKept();
    void impossibleNameIsTold_data();
    void impossibleNameIsTold();
    void failedWriteLeavesTheOldFile_data();
    void failedWriteLeavesTheOldFile();
    void unreadableUserFileIsTold_data();
    void unreadableUserFileIsTold();

private:
    QString path(const QString &name = "file") const { return m_folder->filePath(name); }
    QStringList names() const { return QDir(m_folder->path()).entryList(QDir::Files); }

    static QByteArray bytesOf(const QString &path)
    {
        return QFile::exists(path) ? contentOf(path) : QByteArray("no such file");
    }

    void makeFile(const QString &name, const QByteArray &bytes) const
    {
        putFile(path(name), bytes);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<DriveBackend> m_platform;
    std::unique_ptr<FaultyDrive> m_drive;
};

void PendingFileTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_platform = createPlatformBackend();
    m_drive = std::make_unique<FaultyDrive>(*m_platform);
    setDriveBackend(m_drive.get());
}

void PendingFileTest::cleanup()
{
    setDriveBackend(nullptr);
}

void PendingFileTest::fileAppearsWithItsNameAtTheEnd()
{
    PendingFile file(path(), ExistingFile::Keep);
    QCOMPARE(file.problem(), QString());
    QVERIFY(file.write(kNew));
    QCOMPARE(names().size(), 1);
    QVERIFY(names().first().endsWith(".part"));
    QVERIFY(file.commit());
    QCOMPARE(names(), QStringList("file"));
    QCOMPARE(bytesOf(path()), kNew);
}

void PendingFileTest::abandonedFileLeavesNothing()
{
    {
        PendingFile file(path(), ExistingFile::Keep);
        QVERIFY(file.write(kNew));
    }
    QCOMPARE(names(), QStringList());
}

void PendingFileTest::existingFileIsTaken()
{
    makeFile("file", kOld);
    const PendingFile file(path(), ExistingFile::Keep);
    QVERIFY(file.isTaken());
    QVERIFY(file.problem().contains("it exists already"));
    QCOMPARE(names(), QStringList("file"));
    QCOMPARE(bytesOf(path()), kOld);
}

void PendingFileTest::existingFileIsReplacedInOneStep()
{
    makeFile("file", kOld);
    PendingFile file(path(), ExistingFile::Replace);
    QVERIFY(!file.isTaken());
    QVERIFY(file.write(kNew));
    QCOMPARE(bytesOf(path()), kOld);
    QVERIFY(file.commit());
    QCOMPARE(bytesOf(path()), kNew);
    QCOMPARE(names(), QStringList("file"));
}

void PendingFileTest::otherNameLeavesTheFileOfThisOne()
{
    makeFile("file", kOld);
    PendingFile file(path(), ExistingFile::Replace);
    QVERIFY(file.write(kNew));
    QVERIFY(file.commit(path("other")));
    QCOMPARE(bytesOf(path()), kOld);
    QCOMPARE(bytesOf(path("other")), kNew);
}

void PendingFileTest::nameThatIsTakenMeanwhileIsKept()
{
    {
        PendingFile file(path(), ExistingFile::Keep);
        QVERIFY(file.write(kNew));
        makeFile("file", kOld);
        QVERIFY(!file.commit());
        QVERIFY(file.problem().contains(path()));
    }
    QCOMPARE(bytesOf(path()), kOld);
    QCOMPARE(names(), QStringList("file"));
}

void PendingFileTest::impossibleNameIsTold_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("folder") << "."
                            << "it is a folder";
    QTest::newRow("no such folder") << "missing/file"
                                    << "the folder does not exist";
    QTest::newRow("file as a folder") << "a file/file"
                                      << "the folder does not exist";
    QTest::newRow("no character") << QString(QChar(0xD800)) << "8-bit encoding";
}

void PendingFileTest::impossibleNameIsTold()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    makeFile("a file", kOld);
    for (const ExistingFile existing : {ExistingFile::Keep, ExistingFile::Replace}) {
        const PendingFile file(path(name), existing);
        QVERIFY2(file.problem().contains(reason), qPrintable(file.problem()));
        QVERIFY(!file.isTaken());
        QVERIFY(file.temporaryPath().isEmpty());
    }
    QCOMPARE(names(), QStringList("a file"));
}

void PendingFileTest::failedWriteLeavesTheOldFile_data()
{
    QTest::addColumn<int>("call");
    QTest::addColumn<int>("way");
    for (const DriveCall call : {DriveCall::OpenForWrite, DriveCall::Write, DriveCall::Close}) {
        const QVector<NamedFault> ways = waysToFail(call);
        for (int way = 0; way < ways.size(); ++way) {
            // A drive that vanishes and Ctrl-C do no harm to a file of the user's.
            const bool isHarmless = ways[way].fault.driveVanishes || ways[way].fault.happens;
            if (!isHarmless)
                QTest::newRow(qPrintable(QString("%1 %2").arg(int(call)).arg(ways[way].name)))
                    << int(call) << way;
        }
    }
}

void PendingFileTest::failedWriteLeavesTheOldFile()
{
    QFETCH(int, call);
    QFETCH(int, way);
    makeFile("file", kOld);
    m_drive->addFault(waysToFail(static_cast<DriveCall>(call))[way].fault);
    {
        PendingFile file(path(), ExistingFile::Replace);
        QVERIFY(!file.write(kNew));
        QVERIFY2(file.problem().contains(".part"), qPrintable(file.problem()));
    }
    QCOMPARE(names(), QStringList("file"));
    QCOMPARE(bytesOf(path()), kOld);
}

void PendingFileTest::unreadableUserFileIsTold_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("folder") << "."
                            << "it is a folder";
    QTest::newRow("nothing there") << "missing"
                                   << "Cannot read";
    QTest::newRow("too large") << "large"
                               << "too large for a cartridge";
}

void PendingFileTest::unreadableUserFileIsTold()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    QFile large(path("large"));
    QVERIFY(large.open(QIODevice::WriteOnly) && large.resize(256 * 1024 * 1024 + 1));
    QByteArray bytes = "untouched";
    QString problem;
    QVERIFY(!readUserFile(path(name), &bytes, &problem));
    QVERIFY2(problem.contains(reason), qPrintable(problem));
    QCOMPARE(bytes, QByteArray("untouched"));
}

GBDRIVER_TEST(PendingFileTest, core)
#include "pending_file_test.moc"
