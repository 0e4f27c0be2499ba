// A file of the user's comes into being as a whole or not at all.
#include "trust/pending_file.h"

#include "device/device_link.h"
#include "drive_faults.h"
#include "files.h"
#include "test_class.h"

#include <QtTest>

Q_DECLARE_METATYPE(FileFault)

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
    void fileThatCannotBeBegunIsTold();
    void roomIsLookedAtFirst();
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
    QVERIFY(file.trouble().isNone());
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
    QCOMPARE(file.trouble().fault, FileFault::Exists);
    QCOMPARE(file.trouble().path, path());
    QCOMPARE(names(), QStringList("file"));
    QCOMPARE(bytesOf(path()), kOld);
}

void PendingFileTest::existingFileIsReplacedInOneStep()
{
    makeFile("file", kOld);
    PendingFile file(path(), ExistingFile::Replace);
    QVERIFY(file.trouble().isNone());
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
        QCOMPARE(file.trouble().fault, FileFault::NotRenamed);
        QCOMPARE(file.trouble().path, path());
        QVERIFY(!file.trouble().systemText.isEmpty());
    }
    QCOMPARE(bytesOf(path()), kOld);
    QCOMPARE(names(), QStringList("file"));
}

void PendingFileTest::fileThatCannotBeBegunIsTold()
{
    makeFile("file", kOld);
    m_drive->addFault({DriveCall::OpenForWrite, "file"});
    const PendingFile file(path(), ExistingFile::Replace);
    QCOMPARE(file.trouble().fault, FileFault::NotMade);
    QVERIFY(!file.trouble().systemText.isEmpty());
    QCOMPARE(bytesOf(path()), kOld);
}

void PendingFileTest::roomIsLookedAtFirst()
{
    makeFile("file", kOld);
    DriveFault full;
    full.call = DriveCall::Reserve;
    full.code = DriveErrorCode::Full;
    m_drive->addFault(full);
    QCOMPARE(troubleOfWriting(path(), kNew.size()).fault, FileFault::NotWritten);
    QVERIFY(troubleOfWriting(path(), kNew.size()).isNone());
    QCOMPARE(names(), QStringList("file"));
    QCOMPARE(bytesOf(path()), kOld);
}

void PendingFileTest::impossibleNameIsTold_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<FileFault>("fault");
    QTest::newRow("folder") << "." << FileFault::IsFolder;
    QTest::newRow("no such folder") << "missing/file" << FileFault::NoFolder;
    QTest::newRow("file as a folder") << "a file/file" << FileFault::NoFolder;
    QTest::newRow("no character") << QString(QChar(0xD800)) << FileFault::NameNotRepresentable;
}

void PendingFileTest::impossibleNameIsTold()
{
    QFETCH(QString, name);
    QFETCH(FileFault, fault);
    makeFile("a file", kOld);
    for (const ExistingFile existing : {ExistingFile::Keep, ExistingFile::Replace}) {
        const PendingFile file(path(name), existing);
        QCOMPARE(file.trouble().fault, fault);
        QCOMPARE(file.trouble().path, path(name));
        QVERIFY(!file.isStream());
    }
    QCOMPARE(names(), QStringList("a file"));
}

void PendingFileTest::failedWriteLeavesTheOldFile_data()
{
    QTest::addColumn<int>("call");
    QTest::addColumn<int>("way");
    for (const DriveCall call : {DriveCall::Write, DriveCall::Read, DriveCall::Close}) {
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
    const DriveFault fault = waysToFail(static_cast<DriveCall>(call))[way].fault;
    const bool isLie = fault.claimsAll || fault.flips != 0 || fault.call == DriveCall::Read;
    const bool isClosing = fault.call == DriveCall::Close;
    const FileFault expected = isLie ? FileFault::NotHeld : FileFault::NotWritten;
    m_drive->addFault(fault);
    {
        PendingFile file(path(), ExistingFile::Replace);
        QCOMPARE(file.write(kNew), isClosing);
        QVERIFY(!isClosing || !file.commit());
        QCOMPARE(file.trouble().fault, isClosing ? FileFault::NotRenamed : expected);
        QCOMPARE(file.trouble().path, path());
    }
    QCOMPARE(names(), QStringList("file"));
    QCOMPARE(bytesOf(path()), kOld);
}

void PendingFileTest::unreadableUserFileIsTold_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<FileFault>("fault");
    QTest::newRow("folder") << "." << FileFault::ReadsFolder;
    QTest::newRow("nothing there") << "missing" << FileFault::NotRead;
    QTest::newRow("too large") << "large" << FileFault::TooLarge;
}

void PendingFileTest::unreadableUserFileIsTold()
{
    QFETCH(QString, name);
    QFETCH(FileFault, fault);
    QFile large(path("large"));
    QVERIFY(large.open(QIODevice::WriteOnly) && large.resize(256 * 1024 * 1024 + 1));
    QByteArray bytes = "untouched";
    const FileTrouble trouble = readUserFile(path(name), &bytes);
    QCOMPARE(trouble.fault, fault);
    QCOMPARE(trouble.path, path(name));
    QCOMPARE(trouble.systemText.isEmpty(), fault != FileFault::NotRead);
    QCOMPARE(bytes, QByteArray("untouched"));
}

GBDRIVER_TEST(PendingFileTest, core)
#include "pending_file_test.moc"
