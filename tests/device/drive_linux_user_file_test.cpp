// The user's files through the Linux backend: whole or as they were, never written while another
// program has them locked.
#include "files.h"
#include "linux_reader_folder.h"
#include "test_bytes.h"
#include "test_class.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

class DriveLinuxUserFileTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void fileHoldsExactlyWhatIsWritten_data();
    void fileHoldsExactlyWhatIsWritten();
    void openingLeavesTheFile();
    void severalWritesFollowEachOther();
    void nothingStaysOpen();
    void lockedFileKeepsItsContent();
    void twoWritersAtATimeAreRefused();
    void namesMayHoldAnything_data();
    void namesMayHoldAnything();
    void relativePathsStartInTheCurrentFolder();
    void refusedPaths_data();
    void refusedPaths();
    void devicesAreWrittenLikeFiles();
    void onlyOrdinaryFilesAreRead_data();
    void onlyOrdinaryFilesAreRead();
    void userFileIsReadBack();
    void writtenFileIsReadBack();

private:
    QByteArray path(const QString &name) const
    {
        return QFile::encodeName(m_folder->filePath(name));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<DriveBackend> m_backend;
};

void DriveLinuxUserFileTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_backend = createPlatformBackend();
}

void DriveLinuxUserFileTest::fileHoldsExactlyWhatIsWritten_data()
{
    QTest::addColumn<int>("oldSize"); // -1: no file
    QTest::addColumn<int>("newSize");
    for (const int oldSize : {-1, 0, 100, 100000}) {
        for (const int newSize : {0, 1, 32768, 8 << 20})
            QTest::addRow("%d, then %d", oldSize, newSize) << oldSize << newSize;
    }
}

void DriveLinuxUserFileTest::fileHoldsExactlyWhatIsWritten()
{
    QFETCH(int, oldSize);
    QFETCH(int, newSize);
    if (oldSize >= 0)
        putFile(path("game.gb"), QByteArray(oldSize, 'o'));
    const QByteArray dump = patternBytes(newSize, 1);
    const DriveStatus status = writeThrough(m_backend.get(), path("game.gb"), dump);
    QVERIFY2(status.ok(), status.message.c_str());
    QVERIFY(QFile::exists(path("game.gb")));
    QVERIFY(contentOf(path("game.gb")) == dump);
    QCOMPARE(entriesOf(m_folder->path()), QStringList({"game.gb"}));
}

void DriveLinuxUserFileTest::openingLeavesTheFile()
{
    putFile(path("game.gb"), "old content");
    std::unique_ptr<DriveFile> file;
    QVERIFY(m_backend->openForWrite(path("game.gb").constData(), &file).ok());
    QCOMPARE(contentOf(path("game.gb")), QByteArray("old content"));
    QVERIFY(file->close().ok()); // nothing was written to it
    QCOMPARE(QFileInfo(path("game.gb")).size(), qint64{0});
}

void DriveLinuxUserFileTest::severalWritesFollowEachOther()
{
    std::unique_ptr<DriveFile> file;
    QVERIFY(m_backend->openForWrite(path("game.gb").constData(), &file).ok());
    std::uint32_t count = 0;
    QVERIFY(file->write("first ", 6, &count).ok());
    QVERIFY(file->write("second", 6, &count).ok());
    QCOMPARE(count, 6U);
    std::uint32_t size = 0;
    QVERIFY(file->size(&size).ok());
    QCOMPARE(size, 12U);
    file->seek(0);
    QVERIFY(file->write("FIRST", 5, &count).ok());
    QVERIFY(file->close().ok());
    QCOMPARE(contentOf(path("game.gb")), QByteArray("FIRST second"));
}

void DriveLinuxUserFileTest::nothingStaysOpen()
{
    QVERIFY(writeThrough(m_backend.get(), path("game.gb"), "content").ok());
    QCOMPARE(descriptorsOn(path("game.gb")).size(), 0);
    std::unique_ptr<DriveFile> file;
    QVERIFY(m_backend->openForWrite(path("game.gb").constData(), &file).ok());
    QCOMPARE(descriptorsOn(path("game.gb")).size(), 1); // for its lock
    file.reset();                                       // without a close()
    QCOMPARE(descriptorsOn(path("game.gb")).size(), 0);
    QCOMPARE(entriesOf(m_folder->path()), QStringList({"game.gb"}));
}

void DriveLinuxUserFileTest::lockedFileKeepsItsContent()
{
    putFile(path("game.gb"), "precious");
    const int holder = ::open(path("game.gb").constData(), O_RDWR);
    QVERIFY(holder >= 0);
    QCOMPARE(::flock(holder, LOCK_EX | LOCK_NB), 0);
    const DriveStatus refused = writeThrough(m_backend.get(), path("game.gb"), "new");
    const QByteArray during = contentOf(path("game.gb"));
    QCOMPARE(::close(holder), 0);
    QVERIFY(refused.code == DriveErrorCode::InUse);
    QCOMPARE(during, QByteArray("precious"));
    QVERIFY(writeThrough(m_backend.get(), path("game.gb"), "new").ok());
    QCOMPARE(contentOf(path("game.gb")), QByteArray("new"));
}

void DriveLinuxUserFileTest::twoWritersAtATimeAreRefused()
{
    std::unique_ptr<DriveFile> first;
    std::unique_ptr<DriveFile> second;
    QVERIFY(m_backend->openForWrite(path("game.gb").constData(), &first).ok());
    QVERIFY(m_backend->openForWrite(path("game.gb").constData(), &second).code ==
            DriveErrorCode::InUse);
    QVERIFY(second == nullptr);
    QVERIFY(first->close().ok());
    QVERIFY(m_backend->openForWrite(path("game.gb").constData(), &second).ok());
}

void DriveLinuxUserFileTest::namesMayHoldAnything_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("blanks") << " my game .gb";
    QTest::newRow("non-ASCII") << QString::fromUtf8(u8"ポケット Übung.gb");
    QTest::newRow("backslash") << "back\\slash.gb";
    QTest::newRow("colon") << "a:b.gb";
    QTest::newRow("long") << QString(255, 'n');
}

void DriveLinuxUserFileTest::namesMayHoldAnything()
{
    QFETCH(QString, name);
    QVERIFY(writeThrough(m_backend.get(), path(name), "content").ok());
    QCOMPARE(entriesOf(m_folder->path()), QStringList({name}));
    QCOMPARE(contentOf(m_folder->filePath(name)), QByteArray("content"));
}

void DriveLinuxUserFileTest::relativePathsStartInTheCurrentFolder()
{
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder->path()));
    const bool written = writeThrough(m_backend.get(), "game.gb", "content").ok() &&
                         writeThrough(m_backend.get(), "./game.sav", "save").ok();
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(written);
    QCOMPARE(entriesOf(m_folder->path()), QStringList({"game.gb", "game.sav"}));
}

void DriveLinuxUserFileTest::refusedPaths_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("code");
    QTest::newRow("folder") << "folder" << static_cast<int>(DriveErrorCode::Refused);
    QTest::newRow("missing folder")
        << "missing/game.gb" << static_cast<int>(DriveErrorCode::NotFound);
    QTest::newRow("below a file") << "file/game.gb" << static_cast<int>(DriveErrorCode::NotFound);
}

void DriveLinuxUserFileTest::refusedPaths()
{
    QFETCH(QString, name);
    QFETCH(int, code);
    QVERIFY(QDir(m_folder->path()).mkdir("folder"));
    putFile(path("file"), "content");
    const DriveStatus status = writeThrough(m_backend.get(), path(name), "new");
    QCOMPARE(static_cast<int>(status.code), code);
    QVERIFY2(status.message.find(path(name).constData()) != std::string::npos,
             status.message.c_str());
    QCOMPARE(entriesOf(m_folder->path()), QStringList({"file", "folder"}));
    QCOMPARE(contentOf(path("file")), QByteArray("content"));
}

void DriveLinuxUserFileTest::devicesAreWrittenLikeFiles()
{
    QVERIFY(writeThrough(m_backend.get(), "/dev/null", "content").ok());
    QVERIFY(writeThrough(m_backend.get(), "/dev/full", "content").code == DriveErrorCode::Full);
}

void DriveLinuxUserFileTest::onlyOrdinaryFilesAreRead_data()
{
    QTest::addColumn<QString>("name");
    // As seen from the test's folder.
    QTest::newRow("pipe that nobody writes") << "pipe";
    QTest::newRow("link to it") << "link";
    QTest::newRow("folder") << ".";
    QTest::newRow("device without an end") << "zero";
}

// At once: neither waits the call, nor fails the first read only.
void DriveLinuxUserFileTest::onlyOrdinaryFilesAreRead()
{
    QFETCH(QString, name);
    QCOMPARE(::mkfifo(path("pipe").constData(), 0600), 0);
    QVERIFY(QFile::link(m_folder->filePath("pipe"), m_folder->filePath("link")));
    QVERIFY(QFile::link("/dev/zero", m_folder->filePath("zero")));
    for (const Buffering buffering : {Buffering::Buffered, Buffering::Unbuffered}) {
        std::unique_ptr<DriveFile> file;
        const DriveStatus status = m_backend->openForRead(path(name).constData(), buffering, &file);
        QVERIFY2(status.code == DriveErrorCode::Refused, status.message.c_str());
        QVERIFY(file == nullptr);
    }
}

void DriveLinuxUserFileTest::userFileIsReadBack()
{
    const QByteArray save = patternBytes(8191, 2);
    QVERIFY(writeThrough(m_backend.get(), path("game.sav"), save).ok());
    QByteArray bytes;
    QVERIFY(
        readThrough(m_backend.get(), path("game.sav"), Buffering::Buffered, 0, 10000, &bytes).ok());
    QCOMPARE(bytes, save);
}

void DriveLinuxUserFileTest::writtenFileIsReadBack()
{
    std::unique_ptr<DriveFile> file;
    QVERIFY(m_backend->openForWrite(path("game.gb").constData(), &file).ok());
    QVERIFY(file->isWhole());
    std::uint32_t count = 0;
    QVERIFY(file->write("content", 7, &count).ok());
    file->seek(0);
    char bytes[16] = {};
    QVERIFY(file->read(bytes, 16, &count).ok());
    QCOMPARE(QByteArray(bytes, static_cast<int>(count)), QByteArray("content"));
}

GBDRIVER_TEST(DriveLinuxUserFileTest, none)
#include "drive_linux_user_file_test.moc"
