// The command file on Linux: replaced in place, its descriptor kept between commands.
#include "files.h"
#include "linux_reader_folder.h"
#include "test_bytes.h"
#include "test_class.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <fcntl.h>
#include <unistd.h>

namespace
{

const QByteArray kCommandPath("E:\\CMD.CMD");

} // namespace

class DriveLinuxCommandTest : public QObject
{
    Q_OBJECT

private slots:
    void fileHoldsExactlyTheNewRun_data();
    void fileHoldsExactlyTheNewRun();
    void fileIsReplacedInPlace();
    void fileIsNotCutBeforeTheWrite();
    void descriptorIsKeptBetweenCommands();
    void releaseGivesTheDescriptorUp();
    void endOfTheBackendGivesTheDescriptorUp();
    void replacedFileIsOpenedAnew();
    void removedFileIsCreatedAnew();
    void severalWritesOfOneOpenFollowEachOther();
    void openingWithoutWritingEmptiesTheFile_data();
    void openingWithoutWritingEmptiesTheFile();
    void secondWriterIsRefused();
    void readersAreAllowedMeanwhile();
    void commandFileIsNotReadable();
    void nothingIsCreatedWithoutAnIdentityFile();
    void mayWriteTellsWithoutATrace_data();
    void mayWriteTellsWithoutATrace();
    void refusedPathsCreateNothing_data();
    void refusedPathsCreateNothing();
    void fullDeviceIsReportedAndGivenUp();
    void failedSyncIsReportedAndGivenUp();
};

void DriveLinuxCommandTest::fileHoldsExactlyTheNewRun_data()
{
    QTest::addColumn<int>("oldSize"); // -1: no file
    QTest::addColumn<int>("newSize");
    for (const int oldSize : {-1, 0, 100, 512, 1024, 5000, 65536}) {
        for (const int newSize : {0, 512, 1024, 4608, 71680})
            QTest::addRow("%d, then %d", oldSize, newSize) << oldSize << newSize;
    }
}

void DriveLinuxCommandTest::fileHoldsExactlyTheNewRun()
{
    QFETCH(int, oldSize);
    QFETCH(int, newSize);
    const LinuxReaderFolder reader(QDir::tempPath());
    if (oldSize >= 0)
        putFile(reader.path("CMD.CMD"), QByteArray(oldSize, 'o'));
    const auto backend = LinuxReaderFolder::scannedBackend();
    for (std::uint32_t round = 1; round <= 2; ++round) {
        const QByteArray run = patternBytes(newSize, round);
        const DriveStatus status = writeThrough(backend.get(), kCommandPath, run);
        QVERIFY2(status.ok(), status.message.c_str());
        QVERIFY(QFile::exists(reader.path("CMD.CMD")));
        QVERIFY(contentOf(reader.path("CMD.CMD")) == run);
    }
    QCOMPARE(entriesOf(reader.folder()), QStringList({"CMD.CMD", "K-DRIVER.DMP"}));
}

void DriveLinuxCommandTest::fileIsReplacedInPlace()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    putFile(reader.path("CMD.CMD"), QByteArray(2048, 'o'));
    const quint64 inode = inodeOf(reader.path("CMD.CMD"));
    QVERIFY(inode != 0);
    const auto backend = LinuxReaderFolder::scannedBackend();
    for (const int size : {512, 4096, 0, 1024}) {
        QVERIFY(writeThrough(backend.get(), kCommandPath, QByteArray(size, 'n')).ok());
        backend->releaseDrive();
        QCOMPARE(inodeOf(reader.path("CMD.CMD")), inode);
    }
}

void DriveLinuxCommandTest::fileIsNotCutBeforeTheWrite()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    putFile(reader.path("CMD.CMD"), QByteArray(512, 'o'));
    const auto backend = LinuxReaderFolder::scannedBackend();
    std::unique_ptr<DriveFile> file;
    QVERIFY(backend->openForWrite(kCommandPath.constData(), &file).ok());
    QCOMPARE(contentOf(reader.path("CMD.CMD")), QByteArray(512, 'o'));
    const int flags = openFlags(descriptorsOn(reader.path("CMD.CMD")).value(0));
    QCOMPARE(flags & (O_TRUNC | O_APPEND), 0);
    QVERIFY((flags & O_CLOEXEC) != 0);
    std::uint32_t count = 0;
    QVERIFY(file->write(QByteArray(512, 'n').constData(), 512, &count).ok());
    QCOMPARE(count, 512U);
    QCOMPARE(contentOf(reader.path("CMD.CMD")), QByteArray(512, 'n')); // before close
    QVERIFY(file->close().ok());
}

void DriveLinuxCommandTest::descriptorIsKeptBetweenCommands()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    const auto backend = LinuxReaderFolder::scannedBackend();
    // A lower number that becomes free: a file opened anew would take it.
    const int lower = ::open("/dev/null", O_RDONLY);
    QVERIFY(writeThrough(backend.get(), kCommandPath, QByteArray(512, '0')).ok());
    const QList<int> first = descriptorsOn(reader.path("CMD.CMD"));
    QCOMPARE(first.size(), 1);
    QVERIFY(lower >= 0 && lower < first[0]);
    QCOMPARE(::close(lower), 0);
    for (char command = '1'; command <= '9'; ++command) {
        QVERIFY(writeThrough(backend.get(), kCommandPath, QByteArray(512, command)).ok());
        QCOMPARE(descriptorsOn(reader.path("CMD.CMD")), first);
        QCOMPARE(contentOf(reader.path("CMD.CMD")), QByteArray(512, command));
    }
}

void DriveLinuxCommandTest::releaseGivesTheDescriptorUp()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    const auto backend = LinuxReaderFolder::scannedBackend();
    backend->releaseDrive();
    for (int round = 0; round < 3; ++round) {
        QVERIFY(writeThrough(backend.get(), kCommandPath, QByteArray(512, 'x')).ok());
        QCOMPARE(descriptorsOn(reader.path("CMD.CMD")).size(), 1);
        backend->releaseDrive();
        QCOMPARE(descriptorsOn(reader.path("CMD.CMD")).size(), 0);
        backend->releaseDrive();
    }
}

void DriveLinuxCommandTest::endOfTheBackendGivesTheDescriptorUp()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    auto backend = LinuxReaderFolder::scannedBackend();
    QVERIFY(writeThrough(backend.get(), kCommandPath, QByteArray(512, 'x')).ok());
    backend.reset();
    QCOMPARE(descriptorsOn(reader.path("CMD.CMD")).size(), 0);
}

void DriveLinuxCommandTest::replacedFileIsOpenedAnew()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    const auto backend = LinuxReaderFolder::scannedBackend();
    QVERIFY(writeThrough(backend.get(), kCommandPath, QByteArray(512, '1')).ok());
    QVERIFY(QFile::rename(reader.path("CMD.CMD"), reader.path("OLD.CMD")));
    putFile(reader.path("CMD.CMD"), "another file");
    const quint64 inode = inodeOf(reader.path("CMD.CMD"));
    QVERIFY(writeThrough(backend.get(), kCommandPath, QByteArray(512, '2')).ok());
    QCOMPARE(inodeOf(reader.path("CMD.CMD")), inode);
    QCOMPARE(contentOf(reader.path("CMD.CMD")), QByteArray(512, '2'));
    QCOMPARE(contentOf(reader.path("OLD.CMD")), QByteArray(512, '1'));
    QCOMPARE(descriptorsOn(reader.path("CMD.CMD")).size(), 1);
    QCOMPARE(descriptorsOn(reader.path("OLD.CMD")).size(), 0);
}

void DriveLinuxCommandTest::removedFileIsCreatedAnew()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    const auto backend = LinuxReaderFolder::scannedBackend();
    QVERIFY(writeThrough(backend.get(), kCommandPath, QByteArray(512, '1')).ok());
    QVERIFY(QFile::remove(reader.path("CMD.CMD")));
    QVERIFY(writeThrough(backend.get(), kCommandPath, QByteArray(1024, '2')).ok());
    QCOMPARE(contentOf(reader.path("CMD.CMD")), QByteArray(1024, '2'));
}

void DriveLinuxCommandTest::severalWritesOfOneOpenFollowEachOther()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    putFile(reader.path("CMD.CMD"), QByteArray(4096, 'o'));
    const auto backend = LinuxReaderFolder::scannedBackend();
    std::unique_ptr<DriveFile> file;
    QVERIFY(backend->openForWrite(kCommandPath.constData(), &file).ok());
    std::uint32_t count = 0;
    QVERIFY(file->write("first ", 6, &count).ok());
    QVERIFY(file->write("second", 6, &count).ok());
    std::uint32_t size = 0;
    QVERIFY(file->size(&size).ok());
    QCOMPARE(size, 12U);
    QVERIFY(file->close().ok());
    QCOMPARE(contentOf(reader.path("CMD.CMD")), QByteArray("first second"));
}

void DriveLinuxCommandTest::openingWithoutWritingEmptiesTheFile_data()
{
    QTest::addColumn<bool>("closed");
    QTest::newRow("closed") << true;
    QTest::newRow("destroyed") << false;
}

void DriveLinuxCommandTest::openingWithoutWritingEmptiesTheFile()
{
    QFETCH(bool, closed);
    const LinuxReaderFolder reader(QDir::tempPath());
    putFile(reader.path("CMD.CMD"), QByteArray(512, 'o'));
    const auto backend = LinuxReaderFolder::scannedBackend();
    std::unique_ptr<DriveFile> file;
    QVERIFY(backend->openForWrite(kCommandPath.constData(), &file).ok());
    if (closed)
        QVERIFY(file->close().ok());
    file.reset();
    QVERIFY(QFile::exists(reader.path("CMD.CMD")));
    QCOMPARE(QFileInfo(reader.path("CMD.CMD")).size(), qint64{0});
}

void DriveLinuxCommandTest::secondWriterIsRefused()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    const auto first = LinuxReaderFolder::scannedBackend();
    const auto second = LinuxReaderFolder::scannedBackend();
    QVERIFY(writeThrough(first.get(), kCommandPath, QByteArray(512, '1')).ok());
    const DriveStatus refused = writeThrough(second.get(), kCommandPath, QByteArray(512, '2'));
    QVERIFY(refused.code == DriveErrorCode::InUse);
    QCOMPARE(QByteArray(refused.message.c_str()),
             '"' + reader.path("CMD.CMD").toLocal8Bit() + "\" is open in another program");
    QVERIFY(second->mayWrite(kCommandPath.constData()).code == DriveErrorCode::InUse);
    QCOMPARE(contentOf(reader.path("CMD.CMD")), QByteArray(512, '1'));
    QCOMPARE(descriptorsOn(reader.path("CMD.CMD")).size(), 1);
    QVERIFY(writeThrough(first.get(), kCommandPath, QByteArray(512, '3')).ok());
    first->releaseDrive();
    QVERIFY(writeThrough(second.get(), kCommandPath, QByteArray(512, '4')).ok());
    QVERIFY(writeThrough(first.get(), kCommandPath, QByteArray(512, '5')).code ==
            DriveErrorCode::InUse);
    QCOMPARE(contentOf(reader.path("CMD.CMD")), QByteArray(512, '4'));
}

void DriveLinuxCommandTest::readersAreAllowedMeanwhile()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    const auto backend = LinuxReaderFolder::scannedBackend();
    QVERIFY(writeThrough(backend.get(), kCommandPath, QByteArray(512, '1')).ok());
    QByteArray bytes;
    QVERIFY(readThrough(backend.get(), kCommandPath, Buffering::Unbuffered, 0, 1024, &bytes).ok());
    QCOMPARE(bytes, QByteArray(512, '1'));
}

void DriveLinuxCommandTest::commandFileIsNotReadable()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    const auto backend = LinuxReaderFolder::scannedBackend();
    std::unique_ptr<DriveFile> file;
    QVERIFY(backend->openForWrite(kCommandPath.constData(), &file).ok());
    char bytes[16] = {};
    std::uint32_t count = 99;
    QVERIFY(file->read(bytes, 16, &count).code == DriveErrorCode::BadRequest);
    QCOMPARE(count, 0U);
}

// A memory stick that was taken for the reader stays as it is.
void DriveLinuxCommandTest::nothingIsCreatedWithoutAnIdentityFile()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    QVERIFY(QFile::remove(reader.path("K-DRIVER.DMP")));
    const auto backend = LinuxReaderFolder::scannedBackend();
    const DriveStatus refused = writeThrough(backend.get(), kCommandPath, "command");
    QVERIFY(refused.code == DriveErrorCode::NotTheReader);
    QVERIFY2(refused.message.find(reader.folder().toStdString()) != std::string::npos,
             refused.message.c_str());
    QCOMPARE(entriesOf(reader.folder()), QStringList());

    // A drive that has one is written to, as it passes for a reader all the same.
    putFile(reader.path("CMD.CMD"), "old");
    QVERIFY(writeThrough(backend.get(), kCommandPath, "command").ok());
    QVERIFY(QFile::remove(reader.path("CMD.CMD")));
    QVERIFY(writeThrough(backend.get(), kCommandPath, "again").code ==
            DriveErrorCode::NotTheReader);
    QCOMPARE(entriesOf(reader.folder()), QStringList());
}

void DriveLinuxCommandTest::mayWriteTellsWithoutATrace_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<int>("code");
    QTest::newRow("both") << QStringList{"CMD.CMD", "K-DRIVER.DMP"}
                          << static_cast<int>(DriveErrorCode::None);
    QTest::newRow("command file alone")
        << QStringList{"CMD.CMD"} << static_cast<int>(DriveErrorCode::None);
    QTest::newRow("no command file yet")
        << QStringList{"K-DRIVER.DMP"} << static_cast<int>(DriveErrorCode::NotFound);
    QTest::newRow("neither") << QStringList() << static_cast<int>(DriveErrorCode::NotTheReader);
    QTest::newRow("folder in its place")
        << QStringList{"CMD.CMD/", "K-DRIVER.DMP"} << static_cast<int>(DriveErrorCode::Refused);
    // Root may write anything but this.
    QTest::newRow("read-only file") << QStringList{"CMD.CMD@/sys/kernel/uevent_seqnum"}
                                    << static_cast<int>(DriveErrorCode::Refused);
}

void DriveLinuxCommandTest::mayWriteTellsWithoutATrace()
{
    QFETCH(QStringList, files);
    QFETCH(int, code);
    const LinuxReaderFolder reader(QDir::tempPath());
    QVERIFY(QFile::remove(reader.path("K-DRIVER.DMP")));
    for (const QString &name : files) {
        if (name.endsWith('/'))
            QVERIFY(QDir(reader.folder()).mkdir(name));
        else if (name.contains('@'))
            QVERIFY(QFile::link(name.section('@', 1), reader.path(name.section('@', 0, 0))));
        else
            putFile(reader.path(name), "content");
    }
    const QStringList before = entriesOf(reader.folder());
    const auto backend = LinuxReaderFolder::scannedBackend();
    const DriveStatus status = backend->mayWrite(kCommandPath.constData());
    QVERIFY2(static_cast<int>(status.code) == code, status.message.c_str());
    QCOMPARE(entriesOf(reader.folder()), before);
    if (files.contains("CMD.CMD"))
        QCOMPARE(contentOf(reader.path("CMD.CMD")), QByteArray("content"));
    QCOMPARE(descriptorsOn(reader.path("CMD.CMD")).size(), 0);
}

void DriveLinuxCommandTest::refusedPathsCreateNothing_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<int>("code");
    QTest::newRow("a folder") << QByteArray("E:\\FOLDER")
                              << static_cast<int>(DriveErrorCode::Refused);
    QTest::newRow("in a missing folder")
        << QByteArray("E:\\missing\\CMD.CMD") << static_cast<int>(DriveErrorCode::NotFound);
    QTest::newRow("below a file") << QByteArray("E:\\FILE\\CMD.CMD")
                                  << static_cast<int>(DriveErrorCode::NotFound);
}

void DriveLinuxCommandTest::refusedPathsCreateNothing()
{
    QFETCH(QByteArray, path);
    QFETCH(int, code);
    const LinuxReaderFolder reader(QDir::tempPath());
    QVERIFY(QDir(reader.folder()).mkdir("FOLDER"));
    putFile(reader.path("FILE"), "content");
    const auto backend = LinuxReaderFolder::scannedBackend();
    const DriveStatus status = writeThrough(backend.get(), path, "command");
    QCOMPARE(static_cast<int>(status.code), code);
    QVERIFY(!status.message.empty());
    QCOMPARE(entriesOf(reader.folder()), QStringList({"FILE", "FOLDER", "K-DRIVER.DMP"}));
    QVERIFY(entriesOf(reader.path("FOLDER")).isEmpty());
    QCOMPARE(contentOf(reader.path("FILE")), QByteArray("content"));
}

void DriveLinuxCommandTest::fullDeviceIsReportedAndGivenUp()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    QVERIFY(QFile::link("/dev/full", reader.path("CMD.CMD")));
    const auto backend = LinuxReaderFolder::scannedBackend();
    const DriveStatus status = writeThrough(backend.get(), kCommandPath, QByteArray(512, 'x'));
    QVERIFY(status.code == DriveErrorCode::Full);
    QCOMPARE(descriptorsOn("/dev/full").size(), 0);
    QVERIFY(QFile::remove(reader.path("CMD.CMD")));
    QVERIFY(writeThrough(backend.get(), kCommandPath, QByteArray(512, 'y')).ok());
    QCOMPARE(contentOf(reader.path("CMD.CMD")), QByteArray(512, 'y'));
}

// /dev/null takes every write and refuses to be synced: nothing proves that the bytes arrived.
void DriveLinuxCommandTest::failedSyncIsReportedAndGivenUp()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    QVERIFY(QFile::link("/dev/null", reader.path("CMD.CMD")));
    const auto backend = LinuxReaderFolder::scannedBackend();
    const int openBefore = descriptorsOn("/dev/null").size();
    QVERIFY(!writeThrough(backend.get(), kCommandPath, QByteArray(512, 'x')).ok());
    QCOMPARE(descriptorsOn("/dev/null").size(), openBefore);
}

GBDRIVER_TEST(DriveLinuxCommandTest, none)
#include "drive_linux_command_test.moc"
