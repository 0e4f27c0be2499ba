// Targets of every kind under Linux: ordinary files are replaced whole and stay what they are
// otherwise, links lead to their targets, pipes and devices get what is written.
#include "device/user_file.h"

#include "files.h"
#include "linux_reader_folder.h"
#include "test_bytes.h"
#include "test_class.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <csignal>
#include <fcntl.h>
#include <future>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace
{

const QByteArray kOld = "old content";
const QByteArray kNew = patternBytes(50000, 3);

DriveStatus writeFile(const QByteArray &path, const QByteArray &bytes)
{
    std::unique_ptr<DriveFile> file;
    DriveStatus status = openUserFileForWrite(path.toStdString(), &file);
    std::uint32_t count = 0;
    if (status.ok())
        status = file->write(bytes.constData(), static_cast<std::uint32_t>(bytes.size()), &count);
    return status.ok() ? file->close() : status;
}

// No file of this process grows beyond `bytes` while it lives; writes beyond fail, as on a full
// disk.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit = {bytes, m_before.rlim_max};
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    rlimit m_before = {};
    void (*m_handler)(int) = SIG_DFL;
};

} // namespace

class UserFileLinuxTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void targetIsWritten_data();
    void targetIsWritten();
    void targetIsRefused_data();
    void targetIsRefused();
    void fullDiskLeavesTheOldFile_data();
    void fullDiskLeavesTheOldFile();
    void rightsAndTimesStay();
    void newFileHasTheUsersMask();
    void pipeGetsEverything();
    void pipeThatNobodyReadsAnyMoreIsTold();
    void standardOutputIsGoneOnWith();
    void killedWriterLeavesOldOrNew();
    void killedWriterIsFoundOut();

private:
    QByteArray path(const QString &name) const
    {
        return QFile::encodeName(m_folder->filePath(name));
    }
    void link(const char *target, const QString &name) const
    {
        QCOMPARE(::symlink(target, path(name).constData()), 0);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

// A folder with one target of every kind; "kept" is what must not change.
void UserFileLinuxTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QDir(m_folder->path()).mkpath("folder/closed");
    putFile(path("file"), kOld);
    putFile(path("folder/target"), kOld);
    putFile(path("folder/closed/file"), kOld);
    link("file", "link");
    link("folder/target", "far link");
    link("far link", "link to a link");
    link("folder/new", "dangling");
    link("missing/new", "dangling far");
    link("folder", "link to a folder");
    link("loop", "loop");
    link("/dev/null", "link to a device");
}

void UserFileLinuxTest::targetIsWritten_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("written"); // where the bytes are then; empty: nowhere
    QTest::addColumn<bool>("isLink");
    QTest::newRow("new") << "new"
                         << "new" << false;
    QTest::newRow("existing") << "file"
                              << "file" << false;
    QTest::newRow("link") << "link"
                          << "file" << true;
    QTest::newRow("link to elsewhere") << "far link"
                                       << "folder/target" << true;
    QTest::newRow("link to a link") << "link to a link"
                                    << "folder/target" << true;
    QTest::newRow("dangling link") << "dangling"
                                   << "folder/new" << true;
    QTest::newRow("device") << "link to a device"
                            << "" << true;
}

void UserFileLinuxTest::targetIsWritten()
{
    QFETCH(QString, name);
    QFETCH(QString, written);
    QFETCH(bool, isLink);
    const DriveStatus status = writeFile(path(name), kNew);
    QVERIFY2(status.ok(), status.message.c_str());
    QCOMPARE(QFileInfo(path(name)).isSymLink(), isLink);
    if (!written.isEmpty())
        QVERIFY(contentOf(m_folder->filePath(written)) == kNew);
    QVERIFY(entriesOf(m_folder->path()).filter(".part").isEmpty());
    QVERIFY(entriesOf(m_folder->filePath("folder")).filter(".part").isEmpty());
}

void UserFileLinuxTest::targetIsRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("code");
    const auto row = [](const char *name, const char *target, DriveErrorCode code) {
        QTest::newRow(name) << target << static_cast<int>(code);
    };
    row("folder", "folder", DriveErrorCode::Refused);
    row("link to a folder", "link to a folder", DriveErrorCode::Refused);
    row("link into nowhere", "dangling far", DriveErrorCode::NotFound);
    row("link to itself", "loop", DriveErrorCode::InputOutput);
    row("no such folder", "missing/new", DriveErrorCode::NotFound);
    row("below a file", "file/new", DriveErrorCode::NotFound);
    row("no name", "folder/", DriveErrorCode::Refused);
    row("no name, new", "missing/", DriveErrorCode::NotFound);
}

void UserFileLinuxTest::targetIsRefused()
{
    QFETCH(QString, name);
    QFETCH(int, code);
    const QStringList before = entriesOf(m_folder->path());
    const DriveStatus status = writeFile(path("") + '/' + name.toUtf8(), kNew);
    QCOMPARE(static_cast<int>(status.code), code);
    QVERIFY2(status.message.find(name.toStdString()) != std::string::npos, status.message.c_str());
    QCOMPARE(entriesOf(m_folder->path()), before);
    QCOMPARE(contentOf(path("file")), kOld);
    QVERIFY(entriesOf(m_folder->filePath("folder")).filter(".part").isEmpty());
}

void UserFileLinuxTest::fullDiskLeavesTheOldFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("kept");
    QTest::addColumn<bool>("reserves");
    for (const bool reserves : {false, true}) {
        const char *when = reserves ? "asked for" : "found out";
        QTest::addRow("existing, %s", when) << "file"
                                            << "file" << reserves;
        QTest::addRow("link, %s", when) << "far link"
                                        << "folder/target" << reserves;
        QTest::addRow("new, %s", when) << "new"
                                       << "" << reserves;
    }
}

void UserFileLinuxTest::fullDiskLeavesTheOldFile()
{
    QFETCH(QString, name);
    QFETCH(QString, kept);
    QFETCH(bool, reserves);
    const QStringList before = entriesOf(m_folder->path());
    std::unique_ptr<DriveFile> file;
    QVERIFY(openUserFileForWrite(path(name).toStdString(), &file).ok());
    DriveStatus status;
    std::uint32_t count = 0;
    {
        const FileSizeLimit limit(8192);
        const auto size = static_cast<std::uint32_t>(kNew.size());
        status = reserves ? file->reserve(size) : file->write(kNew.constData(), size, &count);
        QVERIFY(status.code == DriveErrorCode::Full);
        if (!reserves)
            QVERIFY(file->close().code == DriveErrorCode::Full);
        file.reset();
    }
    QVERIFY(kept.isEmpty() || contentOf(m_folder->filePath(kept)) == kOld);
    QCOMPARE(entriesOf(m_folder->path()), before);
    QVERIFY(entriesOf(m_folder->filePath("folder")).filter(".part").isEmpty());
}

void UserFileLinuxTest::rightsAndTimesStay()
{
    const QByteArray name = path("file");
    QCOMPARE(::chmod(name.constData(), 0640), 0);
    // A file system without attributes of the user's has none to keep.
    const bool hasAttributes = ::setxattr(name.constData(), "user.note", "mine", 4, 0) == 0;
    const timespec times[2] = {{1000000000, 0}, {1100000000, 0}};
    QCOMPARE(::utimensat(AT_FDCWD, name.constData(), times, 0), 0);
    struct stat before = {};
    QCOMPARE(::stat(name.constData(), &before), 0);
    QVERIFY(writeFile(name, kNew).ok());
    struct stat after = {};
    QCOMPARE(::stat(name.constData(), &after), 0);
    QCOMPARE(after.st_mode, before.st_mode);
    QCOMPARE(after.st_uid, before.st_uid);
    QCOMPARE(after.st_gid, before.st_gid);
    QCOMPARE(after.st_atim.tv_sec, before.st_atim.tv_sec);
    QVERIFY(after.st_mtim.tv_sec > before.st_mtim.tv_sec);
    char note[8] = {};
    QCOMPARE(::getxattr(name.constData(), "user.note", note, sizeof(note)),
             hasAttributes ? ssize_t{4} : ssize_t{-1});
}

void UserFileLinuxTest::newFileHasTheUsersMask()
{
    const mode_t before = ::umask(027);
    const bool isWritten = writeFile(path("new"), kNew).ok();
    ::umask(before);
    QVERIFY(isWritten);
    struct stat found = {};
    QCOMPARE(::stat(path("new").constData(), &found), 0);
    QCOMPARE(found.st_mode & 07777, mode_t{0640});
}

void UserFileLinuxTest::pipeGetsEverything()
{
    const QByteArray name = path("pipe");
    QCOMPARE(::mkfifo(name.constData(), 0600), 0);
    auto reader = std::async(std::launch::async, [name] { return contentOf(name); });
    std::unique_ptr<DriveFile> file;
    QVERIFY(openUserFileForWrite(name.toStdString(), &file).ok());
    QVERIFY(!file->isWhole());
    std::uint32_t count = 0;
    QVERIFY(file->write(kNew.constData(), static_cast<std::uint32_t>(kNew.size()), &count).ok());
    QVERIFY(file->close().ok());
    QVERIFY(reader.get() == kNew);
    QCOMPARE(entriesOf(m_folder->path()).filter("pipe"), QStringList({"pipe"}));
}

void UserFileLinuxTest::pipeThatNobodyReadsAnyMoreIsTold()
{
    int ends[2] = {};
    QCOMPARE(::pipe(ends), 0);
    const QByteArray name = "/dev/fd/" + QByteArray::number(ends[1]);
    std::unique_ptr<DriveFile> file;
    QVERIFY(openUserFileForWrite(name.toStdString(), &file).ok());
    ::close(ends[0]);
    std::uint32_t count = 0;
    QVERIFY(!file->write(kNew.constData(), 100, &count).ok()); // and the program goes on
    ::close(ends[1]);
}

// As a shell's "> file" and ">> file" promise: behind what is there already.
void UserFileLinuxTest::standardOutputIsGoneOnWith()
{
    const int output = ::open(path("file").constData(), O_WRONLY | O_APPEND);
    QVERIFY(output >= 0);
    const DriveStatus status = writeFile("/proc/self/fd/" + QByteArray::number(output), kNew);
    ::close(output);
    QVERIFY2(status.ok(), status.message.c_str());
    QVERIFY(contentOf(path("file")) == kOld + kNew);
}

// A child replaces the file over and over until it is killed, at another moment each time.
void UserFileLinuxTest::killedWriterLeavesOldOrNew()
{
    constexpr int kKills = 60;
    const QByteArray first(200000, 'a');
    const QByteArray second(300000, 'b');
    putFile(path("file"), first);
    for (int kill = 0; kill < kKills; ++kill) {
        const pid_t child = ::fork();
        if (child == 0) {
            for (;;) {
                (void)writeFile(path("file"), second);
                (void)writeFile(path("file"), first);
            }
        }
        QVERIFY(child > 0);
        ::usleep(static_cast<useconds_t>(500 + kill * 137));
        ::kill(child, SIGKILL);
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFSIGNALED(status));
        const QByteArray found = contentOf(path("file"));
        QVERIFY2(found == first || found == second, qPrintable(QString::number(found.size())));
    }
}

void UserFileLinuxTest::killedWriterIsFoundOut()
{
    int ready[2] = {};
    QCOMPARE(::pipe(ready), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        std::unique_ptr<DriveFile> file;
        (void)openUserFileForWrite(path("file").toStdString(), &file);
        std::uint32_t count = 0;
        (void)file->write(kNew.constData(), 1000, &count);
        (void)!::write(ready[1], "!", 1);
        for (;;)
            ::pause();
    }
    QVERIFY(child > 0);
    char byte = 0;
    const ssize_t got = ::read(ready[0], &byte, 1);
    const std::string temporary = path("file.gbdriver-1.part").toStdString();
    const TemporaryUse use = useOfTemporary(temporary);
    const bool isRemoved = removeTemporary(temporary).ok();
    ::kill(child, SIGKILL); // before anything may fail: it would wait for ever
    QCOMPARE(::waitpid(child, nullptr, 0), child);
    QCOMPARE(got, ssize_t{1});
    QCOMPARE(use, TemporaryUse::InUse);
    QVERIFY(!isRemoved);
    QCOMPARE(useOfTemporary(temporary), TemporaryUse::LeftBehind);
    QVERIFY(removeTemporary(temporary).ok());
    QCOMPARE(contentOf(path("file")), kOld);
    QVERIFY(entriesOf(m_folder->path()).filter(".part").isEmpty());
}

GBDRIVER_TEST(UserFileLinuxTest, none)
#include "user_file_linux_test.moc"
