// Writing into cartridges from the window, with the scripts that the program ships: what the user
// reads in the console, and what the chip then holds.
#include "file_dialog_answer.h"
#include "log_check.h"
#include "reader_fixture.h"

#include "test_class.h"
#include "ui/guarded_job.h"
#include "ui/settings.h"

#include <QPushButton>
#include <QtTest>

#include <memory>

using namespace virtual_reader;

Q_DECLARE_METATYPE(FlashWidth)

namespace
{

constexpr int kJobTimeoutMs = 60000;
constexpr std::uint32_t kKiB = 1024;
constexpr std::uint32_t kMiB = 1024 * kKiB;
constexpr unsigned kErasePolls = 2; // that see the chip at work

ByteVector gameOf(std::uint32_t size, std::uint64_t seed)
{
    return gbImage({0x1B, size, 8 * kKiB, "VIRTUAL", seed});
}

std::unique_ptr<Cartridge> makeFlashBoard(FlashWidth width, std::uint32_t chipSize)
{
    CartridgeOptions options;
    options.flash = width;
    options.flashChip.erasePolls = kErasePolls;
    return cartridgeOf(gameOf(chipSize, 1), options);
}

std::unique_ptr<Cartridge> makeGbaBoard(GbaSaveType type, std::uint32_t saveSize)
{
    CartridgeOptions options;
    options.saveType = type;
    options.saveSize = saveSize;
    options.flashChip.erasePolls = kErasePolls;
    auto cartridge = cartridgeOf(gbaImage(), options);
    putSave(cartridge.get(), noise(static_cast<int>(saveSize), 1));
    return cartridge;
}

} // namespace

class CartridgeWriteTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void gbFlashIsErasedProgrammedAndReadBack_data();
    void gbFlashIsErasedProgrammedAndReadBack();
    void gbaSaveIsWrittenAndReadBack_data();
    void gbaSaveIsWrittenAndReadBack();

private:
    void use(std::unique_ptr<Cartridge> cartridge);
    void pressAndWait(QPushButton *button, const QString &path);

    std::unique_ptr<ReaderFixture> m_fixture;
    std::unique_ptr<MainTab> m_tab;
};

void CartridgeWriteTest::cleanup()
{
    m_tab.reset();
    m_fixture.reset();
}

void CartridgeWriteTest::use(std::unique_ptr<Cartridge> cartridge)
{
    m_fixture = std::make_unique<ReaderFixture>(std::move(cartridge));
    m_fixture->findReader();
    ReaderFixture::addShippedScripts();
    m_tab = std::make_unique<MainTab>();
    m_tab->guarded->backupFolder = m_fixture->path("backups");
    m_tab->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_tab.get()));
}

void CartridgeWriteTest::pressAndWait(QPushButton *button, const QString &path)
{
    FileDialogAnswer answer(path);
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(answer.wasAsked);
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(*m_tab), kJobTimeoutMs);
}

void CartridgeWriteTest::gbFlashIsErasedProgrammedAndReadBack_data()
{
    QTest::addColumn<FlashWidth>("width");
    QTest::addColumn<QStringList>("probeLines");
    QTest::newRow("8-bit chip") << FlashWidth::Byte << QStringList{"Flash chip is 8bit width"};
    QTest::newRow("16-bit chip") << FlashWidth::Word
                                 << QStringList{"Flash chip is 16bit width",
                                                "Flash chip size is :1024KB"};
}

void CartridgeWriteTest::gbFlashIsErasedProgrammedAndReadBack()
{
    QFETCH(FlashWidth, width);
    QFETCH(QStringList, probeLines);
    constexpr std::uint32_t kGameSize = 256 * kKiB;
    use(makeFlashBoard(width, kMiB));
    const QByteArray game = toByteArray(gameOf(kGameSize, 2));
    const QByteArray chipBefore = m_fixture->rom();
    QVERIFY(chipBefore.left(game.size()) != game);

    const QString file = m_fixture->addFile("game.gb", game);
    pressAndWait(m_tab->flashButton, file);
    const QStringList flashLines =
        probeLines + QStringList{"Writing rom to cartridge from file:\n" + file,
                                 "Read file :" + file,
                                 "Read 262144 Bytes",
                                 "Start erase flash chip...",
                                 "Erase flash chip finish.",
                                 "Start flash ROM...",
                                 "Flash ROM finish.",
                                 ">Success!",
                                 "<hr><br>"};
    COMPARE_LOG(*m_tab, flashLines);
    const QByteArray erased(static_cast<int>(kMiB - kGameSize), '\xFF');
    QVERIFY(m_fixture->rom() == game + erased);

    m_tab->settings->selectItem2(kGameSize);
    const QString dump = m_fixture->path("dump.gb");
    pressAndWait(m_tab->dumpButton, dump);
    COMPARE_LOG(*m_tab, (flashLines + QStringList{"Reading data from ROM to file:\n" + dump,
                                                  "Start dump rom...", "Dump rom finish.",
                                                  ">Success!", "<hr><br>"}));
    QVERIFY(m_fixture->fileBytes("dump.gb") == game);
    QCOMPARE(m_fixture->reader().counters().refusedBlocks, 0U);
}

void CartridgeWriteTest::gbaSaveIsWrittenAndReadBack_data()
{
    QTest::addColumn<int>("chip");
    QTest::addColumn<int>("type"); // in the settings
    QTest::addColumn<int>("size");
    const auto row = [](const char *name, GbaSaveType chip, int type, std::uint32_t size) {
        QTest::newRow(name) << static_cast<int>(chip) << type << static_cast<int>(size);
    };
    row("FLASH 64 KiB", GbaSaveType::Flash, 1, 64 * kKiB);
    row("FLASH 128 KiB", GbaSaveType::Flash, 1, 128 * kKiB);
    row("EEPROM 512 bytes", GbaSaveType::Eeprom, 2, 512);
    row("EEPROM 8 KiB", GbaSaveType::Eeprom, 2, 8 * kKiB);
}

void CartridgeWriteTest::gbaSaveIsWrittenAndReadBack()
{
    QFETCH(int, chip);
    QFETCH(int, type);
    QFETCH(int, size);
    use(makeGbaBoard(static_cast<GbaSaveType>(chip), static_cast<std::uint32_t>(size)));
    m_tab->settings->selectSysType(1);
    m_tab->settings->selectItem2(type);
    m_tab->settings->selectItem3(size);
    const QByteArray save = noise(size, 2);
    QVERIFY(m_fixture->save() != save);

    const QString file = m_fixture->addFile("new.sav", save);
    pressAndWait(m_tab->writeRamButton, file);
    QStringList lines = {"Writing save to cartridge from file:\n" + file, "Read file :" + file,
                         QString("Read %1 Bytes").arg(size)};
    if (type == 1)
        lines += {"Start erase flash chip...", "Erase flash chip finish."};
    lines += {"Start write save...", "Write save finish.", ">Success!", "<hr><br>"};
    COMPARE_LOG(*m_tab, lines);
    QVERIFY(m_fixture->save() == save);

    const QString readBack = m_fixture->path("back.sav");
    pressAndWait(m_tab->readRamButton, readBack);
    lines += {"Reading data from save to file:\n" + readBack, "Start dump save...",
              "Dump save finish.", ">Success!", "<hr><br>"};
    COMPARE_LOG(*m_tab, lines);
    QVERIFY(m_fixture->fileBytes("back.sav") == save);
    // Whether a chip is larger than the settings say is asked by reading beyond 64 KiB, 2 KiB at a
    // time, and this chip has no second bank.
    const bool isAskedForMore = type == 1 && size == 64 * static_cast<int>(kKiB);
    QCOMPARE(m_fixture->reader().counters().refusedBlocks, isAskedForMore ? 32U : 0U);
}

GBDRIVER_TEST(CartridgeWriteTest, gui)
#include "cartridge_write_test.moc"
