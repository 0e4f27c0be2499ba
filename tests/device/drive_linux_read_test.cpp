// Reading through the Linux backend: any offset, length and memory address, on file systems that
// take O_DIRECT and on those that refuse it.
#include "files.h"
#include "linux_reader_folder.h"
#include "test_bytes.h"
#include "test_class.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace
{

// Not a multiple of the sector size: the last sector is short.
constexpr int kFileSize = 70001;

} // namespace

class DriveLinuxReadTest : public QObject
{
    Q_OBJECT

private slots:
    void unbufferedMeansDirectWhereTheFileSystemAgrees_data() { addPlaceRows(); }
    void unbufferedMeansDirectWhereTheFileSystemAgrees();
    void everyShapeOfRequestIsServed_data() { addPlaceRows(); }
    void everyShapeOfRequestIsServed();
    void positionMovesWithWhatWasRead_data() { addPlaceRows(); }
    void positionMovesWithWhatWasRead();
    void changesByOthersAreSeen_data() { addPlaceRows(); }
    void changesByOthersAreSeen();
    void offsetsNear4GiBAreServed_data() { addPlaceRows(); }
    void offsetsNear4GiBAreServed();
    void fileSystemWithoutDirectReadsIsRead();
    void descriptorEndsWithTheFile();
    void missingFileIsNotFound();
    void folderIsNotReadable();
    void readFileIsNotWritable();
};

void DriveLinuxReadTest::unbufferedMeansDirectWhereTheFileSystemAgrees()
{
    QFETCH(QString, place);
    const LinuxReaderFolder reader(place);
    QVERIFY(reader.isValid());
    putFile(reader.path("DUMP.ROM"), patternBytes(kFileSize, 1));
    const auto backend = LinuxReaderFolder::scannedBackend();
    for (const Buffering buffering : {Buffering::Buffered, Buffering::Unbuffered}) {
        std::unique_ptr<DriveFile> file;
        QVERIFY(backend->openForRead("E:\\DUMP.ROM", buffering, &file).ok());
        const QList<int> descriptors = descriptorsOn(reader.path("DUMP.ROM"));
        QCOMPARE(descriptors.size(), 1);
        const int flags = openFlags(descriptors[0]);
        QCOMPARE((flags & O_DIRECT) != 0,
                 buffering == Buffering::Unbuffered && acceptsDirectReads(reader.path("DUMP.ROM")));
        QVERIFY((flags & O_CLOEXEC) != 0);
        QVERIFY(file->close().ok());
    }
}

void DriveLinuxReadTest::everyShapeOfRequestIsServed()
{
    QFETCH(QString, place);
    const LinuxReaderFolder reader(place);
    QVERIFY(reader.isValid());
    const QByteArray content = patternBytes(kFileSize, 2);
    putFile(reader.path("DUMP.ROM"), content);
    const auto backend = LinuxReaderFolder::scannedBackend();
    alignas(4096) static char memory[4096 * 8];
    for (const Buffering buffering : {Buffering::Buffered, Buffering::Unbuffered}) {
        std::unique_ptr<DriveFile> file;
        QVERIFY(backend->openForRead("E:\\DUMP.ROM", buffering, &file).ok());
        for (const int offset : {0, 1, 256, 512, 1000, 4096, 0x8000, 69632, 70000, 70001, 80000}) {
            for (const int length : {0, 1, 16, 512, 1000, 1024, 4096, 10000}) {
                for (const int shift : {0, 1, 16, 512}) {
                    std::memset(memory, 0x5C, sizeof(memory));
                    std::uint32_t count = 99;
                    file->seek(static_cast<std::uint32_t>(offset));
                    const DriveStatus status =
                        file->read(memory + shift, static_cast<std::uint32_t>(length), &count);
                    const QByteArray shape = QString("%1 bytes at %2, address + %3")
                                                 .arg(length)
                                                 .arg(offset)
                                                 .arg(shift)
                                                 .toUtf8();
                    QVERIFY2(status.ok(), (shape + ": " + status.message.c_str()).constData());
                    const QByteArray expected = content.mid(offset, length);
                    QVERIFY2(static_cast<int>(count) == expected.size(), shape.constData());
                    QVERIFY2(QByteArray(memory + shift, expected.size()) == expected,
                             shape.constData());
                    QVERIFY2(memory[shift + length] == '\x5C', shape.constData());
                    QVERIFY2(shift == 0 || memory[shift - 1] == '\x5C', shape.constData());
                }
            }
        }
        QVERIFY(file->close().ok());
    }
}

void DriveLinuxReadTest::positionMovesWithWhatWasRead()
{
    QFETCH(QString, place);
    const LinuxReaderFolder reader(place);
    QVERIFY(reader.isValid());
    const QByteArray content = patternBytes(3000, 3);
    putFile(reader.path("save.sav"), content);
    const auto backend = LinuxReaderFolder::scannedBackend();
    for (const Buffering buffering : {Buffering::Buffered, Buffering::Unbuffered}) {
        std::unique_ptr<DriveFile> file;
        QVERIFY(backend->openForRead("E:\\save.sav", buffering, &file).ok());
        std::uint32_t size = 0;
        QVERIFY(file->size(&size).ok());
        QCOMPARE(size, 3000U);
        QByteArray gathered;
        for (const std::uint32_t expected : {1024U, 1024U, 952U, 0U}) {
            char bytes[1024] = {};
            std::uint32_t count = 99;
            QVERIFY(file->read(bytes, sizeof(bytes), &count).ok());
            QCOMPARE(count, expected);
            gathered.append(bytes, static_cast<int>(count));
        }
        QCOMPARE(gathered, content);
        QVERIFY(file->close().ok());
    }
}

void DriveLinuxReadTest::changesByOthersAreSeen()
{
    QFETCH(QString, place);
    const LinuxReaderFolder reader(place);
    QVERIFY(reader.isValid());
    putFile(reader.path("K-DRIVER.DMP"), patternBytes(4096, 0));
    const auto backend = LinuxReaderFolder::scannedBackend();
    std::unique_ptr<DriveFile> file;
    QVERIFY(backend->openForRead("E:\\K-DRIVER.DMP", Buffering::Unbuffered, &file).ok());
    QFile other(reader.path("K-DRIVER.DMP"));
    QVERIFY(other.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    for (std::uint32_t round = 1; round <= 20; ++round) {
        const QByteArray content = patternBytes(4096, round);
        QVERIFY(other.seek(0));
        QCOMPARE(other.write(content), qint64{4096});
        QByteArray kept(4096, '\0');
        QByteArray anew;
        std::uint32_t count = 0;
        file->seek(0);
        QVERIFY(file->read(kept.data(), 4096, &count).ok());
        QVERIFY(kept == content);
        QVERIFY(
            readThrough(backend.get(), "E:\\K-DRIVER.DMP", Buffering::Unbuffered, 0, 4096, &anew)
                .ok());
        QVERIFY(anew == content);
    }
    QVERIFY(file->close().ok());
}

void DriveLinuxReadTest::offsetsNear4GiBAreServed()
{
    QFETCH(QString, place);
    const LinuxReaderFolder reader(place);
    QVERIFY(reader.isValid());
    const QByteArray path = QFile::encodeName(reader.path("BIG.BIN"));
    const int descriptor = ::open(path.constData(), O_RDWR | O_CREAT, 0600);
    QVERIFY(descriptor >= 0);
    const QByteArray tail = patternBytes(2048, 5); // the file has a hole up to here
    constexpr off_t kTailAt = 0xFFFFFC00;
    const ssize_t put = ::pwrite(descriptor, tail.constData(), 2048, kTailAt);
    QVERIFY(::fsync(descriptor) == 0 && ::close(descriptor) == 0);
    QCOMPARE(put, ssize_t{2048});
    const auto backend = LinuxReaderFolder::scannedBackend();
    for (const Buffering buffering : {Buffering::Buffered, Buffering::Unbuffered}) {
        for (const int skip : {0, 16, 512, 1000, 1023}) {
            QByteArray bytes;
            const auto offset = static_cast<std::uint32_t>(kTailAt + skip);
            QVERIFY(
                readThrough(backend.get(), "E:\\BIG.BIN", buffering, offset, 1024, &bytes).ok());
            QVERIFY2(bytes == tail.mid(skip, 1024), QByteArray::number(skip).constData());
        }
    }
    std::unique_ptr<DriveFile> file;
    QVERIFY(backend->openForRead("E:\\BIG.BIN", Buffering::Buffered, &file).ok());
    std::uint32_t size = 0;
    QVERIFY(file->size(&size).ok());
    QCOMPARE(size, 0x400U); // low 32 bits of 4 GiB and 1024
}

// The kernel's own files refuse O_DIRECT everywhere.
void DriveLinuxReadTest::fileSystemWithoutDirectReadsIsRead()
{
    const QByteArray path = "/proc/version";
    QVERIFY2(!acceptsDirectReads(path), "no file to try the fallback on");
    const QByteArray content = contentOf(path);
    QVERIFY(content.size() > 16);
    const auto backend = createPlatformBackend();
    for (const int length : {1, 16, 1000, 1024}) {
        QByteArray bytes;
        const DriveStatus status = readThrough(backend.get(), path, Buffering::Unbuffered, 0,
                                               static_cast<std::uint32_t>(length), &bytes);
        QVERIFY2(status.ok(), status.message.c_str());
        QCOMPARE(bytes, content.left(length));
    }
    QByteArray bytes;
    QVERIFY(readThrough(backend.get(), path, Buffering::Unbuffered, 7, 5, &bytes).ok());
    QCOMPARE(bytes, content.mid(7, 5));
}

void DriveLinuxReadTest::descriptorEndsWithTheFile()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    putFile(reader.path("DUMP.ROM"), "x");
    const auto backend = LinuxReaderFolder::scannedBackend();
    std::unique_ptr<DriveFile> file;
    QVERIFY(backend->openForRead("E:\\DUMP.ROM", Buffering::Unbuffered, &file).ok());
    QCOMPARE(descriptorsOn(reader.path("DUMP.ROM")).size(), 1);
    file.reset(); // without a close()
    QCOMPARE(descriptorsOn(reader.path("DUMP.ROM")).size(), 0);
    QVERIFY(backend->openForRead("E:\\DUMP.ROM", Buffering::Unbuffered, &file).ok());
    QVERIFY(file->close().ok());
    QCOMPARE(descriptorsOn(reader.path("DUMP.ROM")).size(), 0);
}

void DriveLinuxReadTest::missingFileIsNotFound()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    const auto backend = LinuxReaderFolder::scannedBackend();
    for (const QByteArray path : {"E:\\DUMP.ROM", "E:\\no\\folder", "/nowhere/at/all"}) {
        for (const Buffering buffering : {Buffering::Buffered, Buffering::Unbuffered}) {
            std::unique_ptr<DriveFile> file;
            const DriveStatus status = backend->openForRead(path.constData(), buffering, &file);
            QVERIFY(status.code == DriveErrorCode::NotFound);
            QVERIFY(!status.message.empty());
            QVERIFY(file == nullptr);
        }
    }
    QCOMPARE(entriesOf(reader.folder()), QStringList("K-DRIVER.DMP"));
}

void DriveLinuxReadTest::folderIsNotReadable()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    QVERIFY(QDir(reader.folder()).mkdir("DUMP.ROM"));
    const auto backend = LinuxReaderFolder::scannedBackend();
    for (const Buffering buffering : {Buffering::Buffered, Buffering::Unbuffered}) {
        QByteArray bytes;
        const DriveStatus status =
            readThrough(backend.get(), "E:\\DUMP.ROM", buffering, 0, 1024, &bytes);
        QVERIFY(status.code == DriveErrorCode::Refused);
        QVERIFY2(status.message.find("DUMP.ROM") != std::string::npos, status.message.c_str());
        QVERIFY(bytes.isEmpty());
    }
}

void DriveLinuxReadTest::readFileIsNotWritable()
{
    const LinuxReaderFolder reader(QDir::tempPath());
    putFile(reader.path("DUMP.ROM"), "content");
    const auto backend = LinuxReaderFolder::scannedBackend();
    std::unique_ptr<DriveFile> file;
    QVERIFY(backend->openForRead("E:\\DUMP.ROM", Buffering::Buffered, &file).ok());
    std::uint32_t count = 99;
    QVERIFY(file->write("abc", 3, &count).code == DriveErrorCode::BadRequest);
    QCOMPARE(count, 0U);
    QVERIFY(file->close().ok());
    QCOMPARE(contentOf(reader.path("DUMP.ROM")), QByteArray("content"));
}

GBDRIVER_TEST(DriveLinuxReadTest, none)
#include "drive_linux_read_test.moc"
