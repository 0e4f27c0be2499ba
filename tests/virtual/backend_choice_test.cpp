// What the environment variable makes of the drive backend.
#include "samples.h"
#include "test_class.h"
#include "virtual/backend_choice.h"
#include "virtual/image_generator.h"

#include <QTemporaryDir>
#include <QtTest>

#include <string>

using namespace virtual_reader;

class BackendChoiceTest : public QObject
{
    Q_OBJECT

private slots:
    void withoutAValueThePlatformServes();
    void demoNeedsNoFile();
    void allPartsAreUnderstood();
    void demoTakesTheOtherParts();
    void noneIsAnEmptySlot();
    void systemCanBeAskedFor();
    void chipsCanBeAskedFor();
    void optionsReachTheCartridge();
    void badValuesAreExplained_data();
    void badValuesAreExplained();
    void cartridgeFileIsInserted();
    void unreadableFilesAreExplained();
};

void BackendChoiceTest::withoutAValueThePlatformServes()
{
    for (const char *value : {static_cast<const char *>(nullptr), ""}) {
        const ChosenBackend choice = chooseDriveBackend(value);
        QVERIFY(choice.platform != nullptr);
        QVERIFY(choice.virtualDrive == nullptr);
        QCOMPARE(choice.backend(), choice.platform.get());
    }
}

void BackendChoiceTest::demoNeedsNoFile()
{
    const ChosenBackend choice = chooseDriveBackend("demo");
    QVERIFY2(choice.error.empty(), choice.error.c_str());
    QCOMPARE(choice.backend(), static_cast<DriveBackend *>(choice.virtualDrive.get()));
    Cartridge &cartridge = choice.virtualDrive->reader().cartridge();
    QCOMPARE(cartridge.romImage().size(), std::size_t(1024 * 1024));
    QCOMPARE(cartridge.saveImage().size(), std::size_t(32 * 1024));
    QCOMPARE(int(cartridge.romImage()[0x147]), 0x1B);
    QCOMPARE(choice.backend()->logicalDrives(), 1U << 4);
}

void BackendChoiceTest::allPartsAreUnderstood()
{
    VirtualReaderRequest request;
    std::string error;
    QVERIFY(parseVirtualReaderRequest(
        "cart=/a b/c=d.gb,save=x.sav,label=MY LABEL,drive=k,identity=ABC_1,strict=1,"
        "fail-command=3,pull-out=9,timing=40000000:125",
        &request, &error));
    QCOMPARE(request.setup.cartPath, std::string("/a b/c=d.gb"));
    QCOMPARE(request.setup.savePath, std::string("x.sav"));
    QCOMPARE(request.drive.label, std::string("MY LABEL"));
    QCOMPARE(request.drive.letter, 'K');
    QCOMPARE(request.setup.config.identity, std::string("ABC_1"));
    QVERIFY(request.setup.config.strictSectors);
    QCOMPARE(request.setup.config.fault.failedCommand, 3U);
    QCOMPARE(request.setup.config.fault.pulledAt, 9U);
    QCOMPARE(request.setup.config.timing.bytesPerSecond, 40000000U);
    QCOMPARE(request.setup.config.timing.transferMicroseconds, 125U);
    QVERIFY(!request.setup.demo);
}

void BackendChoiceTest::demoTakesTheOtherParts()
{
    const ChosenBackend choice = chooseDriveBackend("demo,drive=Z,label=DEMO");
    QVERIFY2(choice.error.empty(), choice.error.c_str());
    QCOMPARE(choice.backend()->logicalDrives(), 1U << 25);
    char label[16] = {};
    QVERIFY(choice.backend()->volumeLabel("Z:", label, sizeof label).ok());
    QCOMPARE(label, "DEMO");
}

void BackendChoiceTest::noneIsAnEmptySlot()
{
    const ChosenBackend choice = chooseDriveBackend("cart=none,drive=K");
    QVERIFY2(choice.error.empty(), choice.error.c_str());
    QCOMPARE(choice.backend()->logicalDrives(), 1U << 10);
    Cartridge &cartridge = choice.virtualDrive->reader().cartridge();
    QCOMPARE(int(cartridge.gbRead(0x0104)), 0xFF);
    QCOMPARE(int(cartridge.gbaRead(0x0002)), 0xFFFF);
    QVERIFY(cartridge.romImage().empty());
}

void BackendChoiceTest::systemCanBeAskedFor()
{
    VirtualReaderRequest request;
    std::string error;
    QVERIFY(parseVirtualReaderRequest("cart=a", &request, &error));
    QVERIFY(request.setup.cartridge.system == CartridgeSystem::ByHeader);
    QVERIFY(parseVirtualReaderRequest("cart=a,system=gba", &request, &error));
    QVERIFY(request.setup.cartridge.system == CartridgeSystem::Gba);
    QVERIFY(parseVirtualReaderRequest("cart=a,system=gb", &request, &error));
    QVERIFY(request.setup.cartridge.system == CartridgeSystem::Gb);
}

void BackendChoiceTest::chipsCanBeAskedFor()
{
    VirtualReaderRequest request;
    std::string error;
    QVERIFY2(parseVirtualReaderRequest("cart=a,save-type=eep,save-size=8K,flash=16,flash-size=4M,"
                                       "flash-code=0x1B,erase-polls=7,chip-fault=protected,"
                                       "flaky=3",
                                       &request, &error),
             error.c_str());
    const CartridgeOptions &options = request.setup.cartridge;
    QVERIFY(options.saveType == GbaSaveType::Eeprom);
    QCOMPARE(options.saveSize, 8192U);
    QVERIFY(options.flash == FlashWidth::Word);
    QCOMPARE(options.flashSize, 4U * 1024 * 1024);
    QCOMPARE(int(*options.flashChip.sizeCode), 27);
    QCOMPARE(options.flashChip.erasePolls, 7U);
    QCOMPARE(*options.flakyBank, 3U);
    QVERIFY(options.flashChip.writeProtected && !options.flashChip.eraseNeverEnds);
    QVERIFY(parseVirtualReaderRequest("cart=a,save-type=sram,flash=8,chip-fault=endless", &request,
                                      &error));
    QVERIFY(options.saveType == GbaSaveType::Sram);
    QVERIFY(options.flash == FlashWidth::Byte);
    QVERIFY(!options.flashChip.writeProtected && options.flashChip.eraseNeverEnds);
    QVERIFY(parseVirtualReaderRequest("cart=a,save-type=flash", &request, &error));
    QVERIFY(options.saveType == GbaSaveType::Flash);
    QVERIFY(parseVirtualReaderRequest("cart=a,save-type=none", &request, &error));
    QVERIFY(options.saveType == GbaSaveType::None);
}

void BackendChoiceTest::optionsReachTheCartridge()
{
    QTemporaryDir folder;
    const std::string path = folder.filePath("game.gba").toStdString();
    const ByteVector image = gbaImage({});
    std::string error;
    QVERIFY2(replaceFile(path, image, &error), error.c_str());
    const ChosenBackend choice =
        chooseDriveBackend(("cart=" + path + ",save-type=flash,save-size=128K").c_str());
    QVERIFY2(choice.error.empty(), choice.error.c_str());
    QCOMPARE(choice.virtualDrive->reader().cartridge().saveImage().size(), std::size_t(128 * 1024));
    const ChosenBackend flash = chooseDriveBackend("demo,flash=16,flash-size=2M");
    QVERIFY2(flash.error.empty(), flash.error.c_str());
    QCOMPARE(flash.virtualDrive->reader().cartridge().romImage().size(),
             std::size_t(2 * 1024 * 1024));
    const ChosenBackend wrong = chooseDriveBackend(("cart=" + path + ",save-size=3K").c_str());
    QVERIFY2(wrong.error.find("save size 3072") != std::string::npos, wrong.error.c_str());
}

void BackendChoiceTest::badValuesAreExplained_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("reason");
    QTest::newRow("path alone") << QByteArray("game.gb") << "\"game.gb\" is not understood";
    QTest::newRow("unknown key") << QByteArray("cart=a,cat=b") << "\"cat=b\"";
    QTest::newRow("empty value") << QByteArray("cart=") << "\"cart=\"";
    QTest::newRow("empty part") << QByteArray("demo,,label=X") << "\"\" is not understood";
    QTest::newRow("comma at the end") << QByteArray("demo,") << "\"\" is not understood";
    QTest::newRow("no cartridge") << QByteArray("label=X") << "either demo or cart=FILE";
    QTest::newRow("two cartridges") << QByteArray("demo,cart=a") << "either demo or cart=FILE";
    QTest::newRow("none and demo") << QByteArray("demo,cart=none") << "either demo or cart=FILE";
    QTest::newRow("none and a file") << QByteArray("cart=a,cart=none") << "either demo or cart=";
    QTest::newRow("system") << QByteArray("cart=a,system=gbc") << "\"system=gbc\"";
    QTest::newRow("list of options") << QByteArray("cart=a,system=") << "system=gb|gba";
    QTest::newRow("save type") << QByteArray("cart=a,save-type=eeprom") << "\"save-type=eeprom\"";
    QTest::newRow("save size") << QByteArray("cart=a,save-size=0") << "\"save-size=0\"";
    QTest::newRow("flash") << QByteArray("cart=a,flash=32") << "\"flash=32\"";
    QTest::newRow("flash size") << QByteArray("cart=a,flash-size=4G") << "\"flash-size=4G\"";
    QTest::newRow("flash code") << QByteArray("cart=a,flash-code=256") << "\"flash-code=256\"";
    QTest::newRow("chip fault") << QByteArray("cart=a,chip-fault=bad") << "\"chip-fault=bad\"";
    QTest::newRow("polls") << QByteArray("cart=a,erase-polls=-1") << "\"erase-polls=-1\"";
    QTest::newRow("bank") << QByteArray("demo,flaky=512") << "\"flaky=512\"";
    QTest::newRow("bank that is not there") << QByteArray("demo,flaky=64") << "flaky bank 64";
    QTest::newRow("long letter") << QByteArray("demo,drive=EE") << "\"drive=EE\"";
    QTest::newRow("no letter") << QByteArray("demo,drive=1") << "\"drive=1\"";
    QTest::newRow("strict") << QByteArray("demo,strict=yes") << "\"strict=yes\"";
    QTest::newRow("command") << QByteArray("demo,fail-command=x") << "\"fail-command=x\"";
    QTest::newRow("no command") << QByteArray("demo,pull-out=0") << "\"pull-out=0\"";
    QTest::newRow("timing") << QByteArray("demo,timing=fast") << "\"timing=fast\"";
    QTest::newRow("long identity") << QByteArray("demo,identity=12345678901234567") << "16 bytes";
}

void BackendChoiceTest::badValuesAreExplained()
{
    QFETCH(QByteArray, value);
    QFETCH(QString, reason);
    const ChosenBackend choice = chooseDriveBackend(value.constData());
    const QString error = QString::fromStdString(choice.error);
    QVERIFY2(error.contains(reason), choice.error.c_str());
    QVERIFY2(error.startsWith("GBDRIVER_VIRTUAL_READER: "), choice.error.c_str());
    QVERIFY(choice.backend() == nullptr);
}

void BackendChoiceTest::cartridgeFileIsInserted()
{
    QTemporaryDir folder;
    const std::string path = folder.filePath("game.gb").toStdString();
    const ByteVector image = gbImage({0x03, 0x10000, 0x2000, "INSERTED", 8});
    std::string error;
    QVERIFY2(replaceFile(path, image, &error), error.c_str());
    const ChosenBackend choice = chooseDriveBackend(("cart=" + path).c_str());
    QVERIFY2(choice.error.empty(), choice.error.c_str());
    QVERIFY(choice.virtualDrive->reader().cartridge().romImage() == image);
}

void BackendChoiceTest::unreadableFilesAreExplained()
{
    QTemporaryDir folder;
    const std::string path = folder.filePath("none.gb").toStdString();
    const ChosenBackend choice = chooseDriveBackend(("cart=" + path).c_str());
    QVERIFY2(QString::fromStdString(choice.error).contains("none.gb"), choice.error.c_str());
    QVERIFY(choice.backend() == nullptr);
}

GBDRIVER_TEST(BackendChoiceTest, none)
#include "backend_choice_test.moc"
