// A file of the user's holds the old bytes or the new ones, whatever becomes of its writing; and
// what a killed program leaves beside it can be told from what a running one uses.
#include "device/user_file.h"

#include "files.h"
#include "test_class.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace
{

const QByteArray kOld = "old content";
const QByteArray kNew(100000, 'n');

} // namespace

class UserFileTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void oldContentStaysUntilTheFileIsClosed();
    void givenUpFileLeavesNothing_data();
    void givenUpFileLeavesNothing();
    void newFileReplacesNothing();
    void roomCanBeReserved();
    void writtenBytesAreReadBack();
    void temporaryNames_data();
    void temporaryNames();
    void otherNamesAreNoTemporaries_data();
    void otherNamesAreNoTemporaries();
    void fileInUseIsNotLeftBehind();
    void leftBehindFileIsPassedOver();

private:
    std::string path(const QString &name = "game.sav") const
    {
        return QFile::encodeName(m_folder->filePath(name)).toStdString();
    }
    QByteArray content() const { return contentOf(m_folder->filePath("game.sav")); }
    QStringList names() const
    {
        return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    void putOld() const { putFile(m_folder->filePath("game.sav"), kOld); }

    std::unique_ptr<DriveFile> begin() const
    {
        std::unique_ptr<DriveFile> file;
        const DriveStatus status = openUserFileForWrite(path(), &file);
        if (!status.ok())
            qFatal("%s", status.message.c_str());
        return file;
    }

    static void write(DriveFile &file, const QByteArray &bytes)
    {
        std::uint32_t count = 0;
        const auto size = static_cast<std::uint32_t>(bytes.size());
        QVERIFY(file.write(bytes.constData(), size, &count).ok());
        QCOMPARE(count, size);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void UserFileTest::oldContentStaysUntilTheFileIsClosed()
{
    putOld();
    const auto file = begin();
    QVERIFY(file->isWhole());
    QCOMPARE(content(), kOld);
    write(*file, kNew.left(50000));
    QCOMPARE(content(), kOld);
    write(*file, kNew.mid(50000));
    QCOMPARE(content(), kOld);
    QCOMPARE(names(), QStringList({"game.sav", "game.sav.gbdriver-1.part"}));
    QVERIFY(file->close().ok());
    QVERIFY(content() == kNew);
    QCOMPARE(names(), QStringList({"game.sav"}));
}

void UserFileTest::givenUpFileLeavesNothing_data()
{
    QTest::addColumn<bool>("hasOld");
    QTest::addColumn<int>("bytes");
    for (const bool hasOld : {false, true}) {
        for (const int bytes : {-1, 0, 5000})
            QTest::addRow("%s, %d", hasOld ? "old" : "new", bytes) << hasOld << bytes;
    }
}

void UserFileTest::givenUpFileLeavesNothing()
{
    QFETCH(bool, hasOld);
    QFETCH(int, bytes);
    if (hasOld)
        putOld();
    auto file = begin();
    if (bytes >= 0)
        write(*file, kNew.left(bytes));
    file.reset();
    QCOMPARE(names(), hasOld ? QStringList({"game.sav"}) : QStringList());
    QCOMPARE(content(), hasOld ? kOld : QByteArray());
}

void UserFileTest::newFileReplacesNothing()
{
    {
        const auto file = begin();
        write(*file, kNew);
        putOld(); // somebody else's
        const DriveStatus status = file->closeAsNew();
        QVERIFY(!status.ok());
        QVERIFY2(status.message.find(path()) != std::string::npos, status.message.c_str());
    }
    QCOMPARE(content(), kOld);
    QCOMPARE(names(), QStringList({"game.sav"}));
    QVERIFY(QFile::remove(m_folder->filePath("game.sav")));
    const auto file = begin();
    write(*file, kNew);
    QVERIFY(file->closeAsNew().ok());
    QVERIFY(content() == kNew);
}

void UserFileTest::roomCanBeReserved()
{
    const auto file = begin();
    QVERIFY(file->reserve(1 << 20).ok());
    QVERIFY(file->reserve(0).ok());
    write(*file, kNew);
    QVERIFY(file->close().ok());
    QVERIFY(content() == kNew);
}

void UserFileTest::writtenBytesAreReadBack()
{
    const auto file = begin();
    write(*file, kNew);
    file->seek(0);
    QByteArray found(kNew.size() + 1, '\0');
    std::uint32_t count = 0;
    QVERIFY(file->read(found.data(), static_cast<std::uint32_t>(found.size()), &count).ok());
    QVERIFY(found.left(static_cast<int>(count)) == kNew);
}

void UserFileTest::temporaryNames_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("number");
    QTest::addColumn<QByteArray>("temporary");
    const QByteArray end = ".gbdriver-1.part";
    QTest::newRow("short") << QByteArray("a.sav") << 1 << QByteArray("a.sav") + end;
    QTest::newRow("second") << QByteArray("a.sav") << 12 << QByteArray("a.sav.gbdriver-12.part");
    QTest::newRow("longest") << QByteArray(239, 'n') << 1 << QByteArray(239, 'n') + end;
    QTest::newRow("too long") << QByteArray(240, 'n') << 1 << QByteArray(239, 'n') + end;
    QTest::newRow("cut between characters")
        << QByteArray(238, 'n') + "\xC3\x9C" << 1 << QByteArray(238, 'n') + end;
}

void UserFileTest::temporaryNames()
{
    QFETCH(QByteArray, name);
    QFETCH(int, number);
    QFETCH(QByteArray, temporary);
    const std::string made = temporaryName(name.toStdString(), number, 255);
    QCOMPARE(QByteArray(made.c_str()), temporary);
    QVERIFY(isTemporaryName(made));
}

void UserFileTest::otherNamesAreNoTemporaries_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char *name : {"", ".part", "a.part", "a.gbdriver-.part", "a.gbdriver-1.par",
                             "a.gbdriver-1.partly", "a.gbdriver-1", "a.gbdriver-x.part",
                             "a.gbdriver-1.part.sav", ".gbdriver-1.part", "a.Ab12Cd.part"})
        QTest::newRow(name) << QByteArray(name);
}

void UserFileTest::otherNamesAreNoTemporaries()
{
    QFETCH(QByteArray, name);
    QVERIFY(!isTemporaryName(name.toStdString()));
}

void UserFileTest::fileInUseIsNotLeftBehind()
{
    const auto file = begin();
    write(*file, kNew);
    const std::string temporary = path("game.sav.gbdriver-1.part");
    QCOMPARE(useOfTemporary(temporary), TemporaryUse::InUse);
    QVERIFY(removeTemporary(temporary).code == DriveErrorCode::Refused);
    std::unique_ptr<DriveFile> second;
    QVERIFY(openUserFileForWrite(path(), &second).code == DriveErrorCode::InUse);
    QVERIFY(file->close().ok());
    QVERIFY(content() == kNew);
}

void UserFileTest::leftBehindFileIsPassedOver()
{
    putFile(m_folder->filePath("game.sav.gbdriver-1.part"), "half");
    const auto file = begin();
    write(*file, kNew);
    QVERIFY(file->close().ok());
    QCOMPARE(names(), QStringList({"game.sav", "game.sav.gbdriver-1.part"}));
    const std::string temporary = path("game.sav.gbdriver-1.part");
    QCOMPARE(useOfTemporary(temporary), TemporaryUse::LeftBehind);
    QVERIFY(removeTemporary(temporary).ok());
    QVERIFY(!removeTemporary(temporary).ok());
    QCOMPARE(names(), QStringList({"game.sav"}));
    QVERIFY(content() == kNew);
}

GBDRIVER_TEST(UserFileTest, none)
#include "user_file_test.moc"
