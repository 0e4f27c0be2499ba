// One drive of several is shown; everything else is passed through.
#include "device/one_drive_backend.h"

#include "test_class.h"

#include <QtTest>

#include <cstring>

namespace
{

constexpr std::uint32_t bitOf(char letter)
{
    return 1U << (letter - 'A');
}

class OpenedFile : public DriveFile
{
public:
    void seek(std::uint32_t) override {}
    DriveStatus read(void *, std::uint32_t, std::uint32_t *) override { return {}; }
    DriveStatus write(const void *, std::uint32_t, std::uint32_t *) override { return {}; }
    DriveStatus size(std::uint32_t *) override { return {}; }
    DriveStatus close() override { return {}; }
};

// Records the calls and answers each with something of its own.
class RecordingBackend : public DriveBackend
{
public:
    std::uint32_t logicalDrives() override
    {
        calls << "scan";
        return drives;
    }
    DriveType driveType(const char *root) override
    {
        calls << QString("type ") + root;
        return DriveType::CdRom;
    }
    DriveStatus volumeLabel(const char *root, char *label, std::uint32_t capacity) override
    {
        calls << QString("label %1 %2").arg(root).arg(capacity);
        std::strcpy(label, "LABEL");
        return {DriveErrorCode::Gone, "label status"};
    }
    std::string drivePlace(const char *root) override
    {
        calls << QString("place ") + root;
        return "somewhere";
    }
    DriveStatus openForRead(const char *path, Buffering buffering,
                            std::unique_ptr<DriveFile> *file) override
    {
        const bool unbuffered = buffering == Buffering::Unbuffered;
        calls << QString("read ") + path + (unbuffered ? " unbuffered" : " buffered");
        return open(file, "read status");
    }
    DriveStatus openForWrite(const char *path, std::unique_ptr<DriveFile> *file) override
    {
        calls << QString("write ") + path;
        return open(file, "write status");
    }
    DriveStatus mayWrite(const char *path) override
    {
        calls << QString("may write ") + path;
        return {DriveErrorCode::Refused, "may write status"};
    }
    void releaseDrive() override { calls << "release"; }

    std::uint32_t drives = bitOf('C') | bitOf('E') | bitOf('Z');
    QStringList calls;
    DriveFile *opened = nullptr; // not owned

private:
    DriveStatus open(std::unique_ptr<DriveFile> *file, const char *message)
    {
        *file = std::make_unique<OpenedFile>();
        opened = file->get();
        return {DriveErrorCode::Refused, message};
    }
};

} // namespace

class OneDriveBackendTest : public QObject
{
    Q_OBJECT

private slots:
    void onlyTheDriveIsListed_data()
    {
        QTest::addColumn<char>("letter");
        QTest::addColumn<quint32>("mask");
        QTest::newRow("present") << 'E' << quint32{bitOf('E')};
        QTest::newRow("missing") << 'F' << quint32{0};
        QTest::newRow("first letter, missing") << 'A' << quint32{0};
        QTest::newRow("last letter") << 'Z' << quint32{bitOf('Z')};
    }
    void onlyTheDriveIsListed()
    {
        QFETCH(char, letter);
        RecordingBackend backend;
        QTEST(quint32{OneDriveBackend(backend, letter).logicalDrives()}, "mask");
        QCOMPARE(backend.calls, QStringList("scan"));
    }

    void everyScanLooksAnew()
    {
        RecordingBackend backend;
        OneDriveBackend one(backend, 'E');
        QCOMPARE(one.logicalDrives(), bitOf('E'));
        backend.drives = bitOf('C');
        QCOMPARE(one.logicalDrives(), 0U);
    }

    void typeLabelAndPlaceArePassedOn()
    {
        RecordingBackend backend;
        OneDriveBackend one(backend, 'E');
        char label[16] = {};
        QVERIFY(one.driveType("E:") == DriveType::CdRom);
        const DriveStatus status = one.volumeLabel("E:", label, sizeof label);
        QVERIFY(status.code == DriveErrorCode::Gone);
        QCOMPARE(status.message.c_str(), "label status");
        QCOMPARE(static_cast<const char *>(label), "LABEL");
        QCOMPARE(one.drivePlace("E:").c_str(), "somewhere");
        QCOMPARE(backend.calls, QStringList({"type E:", "label E: 16", "place E:"}));
    }

    void openedFilesArePassedOn()
    {
        RecordingBackend backend;
        OneDriveBackend one(backend, 'E');
        std::unique_ptr<DriveFile> file;
        QCOMPARE(one.openForRead("E:\\DUMP.ROM", Buffering::Unbuffered, &file).message.c_str(),
                 "read status");
        QCOMPARE(file.get(), backend.opened);
        QCOMPARE(one.openForRead("/home/game.sav", Buffering::Buffered, &file).message.c_str(),
                 "read status");
        QCOMPARE(one.openForWrite("E:\\CMD.CMD", &file).message.c_str(), "write status");
        QCOMPARE(file.get(), backend.opened);
        QCOMPARE(backend.calls, QStringList({"read E:\\DUMP.ROM unbuffered",
                                             "read /home/game.sav buffered", "write E:\\CMD.CMD"}));
    }

    void releaseIsPassedOn()
    {
        RecordingBackend backend;
        OneDriveBackend one(backend, 'E');
        one.releaseDrive();
        QCOMPARE(QByteArray(one.mayWrite("E:\\CMD.CMD").message.c_str()),
                 QByteArray("may write status"));
        QCOMPARE(backend.calls, (QStringList{"release", "may write E:\\CMD.CMD"}));
    }
};

GBDRIVER_TEST(OneDriveBackendTest, core)
#include "one_drive_backend_test.moc"
