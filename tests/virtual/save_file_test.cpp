// Keeping a cartridge's save memory in a file.
#include "virtual/gb_cartridges.h"
#include "virtual/image_generator.h"
#include "virtual/reader_setup.h"
#include "virtual/save_file.h"

#include "command_blocks.h"
#include "files.h"
#include "test_class.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <string>

using namespace virtual_reader;

namespace
{

constexpr std::uint32_t kKiB = 1024;

} // namespace

class SaveFileTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void missingFileLeavesTheSaveAsItIs();
    void fileIsLoaded();
    void wrongSizeIsRefused();
    void cartridgeWithoutSaveIsRefused();
    void folderIsRefused();
    void onlyChangesAreWritten();
    void failedWriteIsTriedAgain();
    void commandRunsWriteTheFileBack();
    void setupErrorsNameTheFile();
    void demoCartridgeStartsWithTheSaveFile();

private:
    QString savePath() const { return m_folder->filePath("game.sav"); }
    static std::unique_ptr<Cartridge> cartridge(std::uint32_t ramSize)
    {
        return std::make_unique<GbCartridge>(ByteVector(32 * kKiB), ramSize);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::string m_error;
};

void SaveFileTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_error.clear();
}

void SaveFileTest::cleanup()
{
    m_folder.reset();
}

void SaveFileTest::missingFileLeavesTheSaveAsItIs()
{
    const auto inserted = cartridge(8 * kKiB);
    inserted->loadSave(makeNoise(8 * kKiB, 4));
    SaveFile save(savePath().toStdString());
    QVERIFY2(save.load(inserted.get(), &m_error), m_error.c_str());
    QVERIFY(inserted->saveImage() == makeNoise(8 * kKiB, 4));
    QVERIFY(!QFile::exists(savePath()));
}

void SaveFileTest::fileIsLoaded()
{
    const ByteVector bytes = makeNoise(8 * kKiB, 5);
    putFile(savePath(), toByteArray(bytes));
    const auto inserted = cartridge(8 * kKiB);
    SaveFile save(savePath().toStdString());
    QVERIFY2(save.load(inserted.get(), &m_error), m_error.c_str());
    QVERIFY(inserted->saveImage() == bytes);
}

void SaveFileTest::wrongSizeIsRefused()
{
    putFile(savePath(), toByteArray(ByteVector(8 * kKiB - 1)));
    SaveFile save(savePath().toStdString());
    QVERIFY(!save.load(cartridge(8 * kKiB).get(), &m_error));
    QVERIFY2(QString::fromStdString(m_error).contains("it has 8191 bytes, the save memory 8192"),
             m_error.c_str());
}

void SaveFileTest::cartridgeWithoutSaveIsRefused()
{
    SaveFile save(savePath().toStdString());
    QVERIFY(!save.load(cartridge(0).get(), &m_error));
    QVERIFY2(QString::fromStdString(m_error).contains("no save memory"), m_error.c_str());
}

void SaveFileTest::folderIsRefused()
{
    SaveFile save(m_folder->path().toStdString());
    QVERIFY(!save.load(cartridge(8 * kKiB).get(), &m_error));
    QVERIFY2(QString::fromStdString(m_error).contains("it is a folder"), m_error.c_str());
}

void SaveFileTest::onlyChangesAreWritten()
{
    const auto inserted = cartridge(8 * kKiB);
    SaveFile save(savePath().toStdString());
    QVERIFY(save.load(inserted.get(), &m_error));
    QVERIFY(save.storeIfChanged(*inserted, &m_error));
    QVERIFY(!QFile::exists(savePath()));
    inserted->gbWrite(0xA123, 0x77);
    QVERIFY2(save.storeIfChanged(*inserted, &m_error), m_error.c_str());
    QCOMPARE(contentOf(savePath()), toByteArray(inserted->saveImage()));
    QCOMPARE(contentOf(savePath())[0x123], char(0x77));
    // Nothing but the file itself is left behind.
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList{"game.sav"});
    QVERIFY(QFile::remove(savePath()));
    QVERIFY(save.storeIfChanged(*inserted, &m_error));
    QVERIFY(!QFile::exists(savePath()));
}

void SaveFileTest::failedWriteIsTriedAgain()
{
    const QString path = m_folder->filePath("missing/game.sav");
    const auto inserted = cartridge(8 * kKiB);
    SaveFile save(path.toStdString());
    QVERIFY(save.load(inserted.get(), &m_error));
    inserted->gbWrite(0xA000, 1);
    QVERIFY(!save.storeIfChanged(*inserted, &m_error));
    QVERIFY2(QString::fromStdString(m_error).contains("missing/game.sav"), m_error.c_str());
    QVERIFY(QDir(m_folder->path()).mkdir("missing"));
    QVERIFY2(save.storeIfChanged(*inserted, &m_error), m_error.c_str());
    QCOMPARE(contentOf(path)[0], char(1));
}

void SaveFileTest::commandRunsWriteTheFileBack()
{
    const ByteVector image = gbImage({0x1B, 32 * kKiB, 8 * kKiB, "KEPT", 1});
    putFile(m_folder->filePath("game.gb"), toByteArray(image));
    ReaderSetup setup;
    setup.cartPath = m_folder->filePath("game.gb").toStdString();
    setup.savePath = savePath().toStdString();
    const auto kept = KeptReader::create(setup, &m_error);
    QVERIFY2(kept != nullptr, m_error.c_str());
    const ByteVector open = selectGb() + gbWriteBlock(0x0000, 0x0A);
    QVERIFY(kept->commandFileWritten(open.data(), open.size(), &m_error));
    QVERIFY(!QFile::exists(savePath()));
    const ByteVector write = commandBlock(2, 12, {0x00, 0xA0, 3, 0}, {7, 8, 9}, 7);
    QVERIFY(kept->commandFileWritten(write.data(), write.size(), &m_error));
    QCOMPARE(contentOf(savePath()).left(4), QByteArray("\7\10\11\0", 4));
    // The next reader finds it.
    const auto next = KeptReader::create(setup, &m_error);
    QVERIFY2(next != nullptr, m_error.c_str());
    QCOMPARE(toByteArray(next->reader().cartridge().saveImage()), contentOf(savePath()));
}

void SaveFileTest::setupErrorsNameTheFile()
{
    ReaderSetup setup;
    setup.cartPath = m_folder->filePath("none.gb").toStdString();
    QVERIFY(KeptReader::create(setup, &m_error) == nullptr);
    QVERIFY2(QString::fromStdString(m_error).contains("none.gb"), m_error.c_str());
    setup.cartPath = m_folder->path().toStdString();
    QVERIFY(KeptReader::create(setup, &m_error) == nullptr);
    QVERIFY2(QString::fromStdString(m_error).contains("it is a folder"), m_error.c_str());
    setup.cartPath.clear();
    setup.config.identity = "SEVENTEEN LETTERS";
    QVERIFY(KeptReader::create(setup, &m_error) == nullptr);
    QVERIFY2(QString::fromStdString(m_error).contains("16 bytes at most"), m_error.c_str());
}

void SaveFileTest::demoCartridgeStartsWithTheSaveFile()
{
    ReaderSetup setup;
    setup.demo = true;
    const auto fresh = KeptReader::create(setup, &m_error);
    QVERIFY2(fresh != nullptr, m_error.c_str());
    QCOMPARE(fresh->reader().cartridge().saveImage().size(), std::size_t(32 * kKiB));
    putFile(savePath(), toByteArray(ByteVector(32 * kKiB, 0x42)));
    setup.savePath = savePath().toStdString();
    const auto kept = KeptReader::create(setup, &m_error);
    QVERIFY2(kept != nullptr, m_error.c_str());
    QVERIFY(kept->reader().cartridge().saveImage() == ByteVector(32 * kKiB, 0x42));
    QVERIFY(fresh->reader().cartridge().saveImage() != ByteVector(32 * kKiB, 0x42));
}

GBDRIVER_TEST(SaveFileTest, none)
#include "save_file_test.moc"
