// What the environment variable makes of the drive backend.
#include "virtual/backend_choice.h"
#include "virtual/image_generator.h"

#include <QTemporaryDir>
#include <QtTest>

#include <string>

class BackendChoiceTest : public QObject
{
    Q_OBJECT

private slots:
    void withoutAValueThePlatformServes();
    void demoNeedsNoFile();
    void allPartsAreUnderstood();
    void demoTakesTheOtherParts();
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
        "cart=/a b/c=d.gb,save=x.sav,label=MY LABEL,drive=k,identity=ABC_1,strict=1", &request,
        &error));
    QCOMPARE(request.setup.cartPath, std::string("/a b/c=d.gb"));
    QCOMPARE(request.setup.savePath, std::string("x.sav"));
    QCOMPARE(request.drive.label, std::string("MY LABEL"));
    QCOMPARE(request.drive.letter, 'K');
    QCOMPARE(request.setup.config.identity, std::string("ABC_1"));
    QVERIFY(request.setup.config.strictSectors);
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
    QTest::newRow("long letter") << QByteArray("demo,drive=EE") << "\"drive=EE\"";
    QTest::newRow("no letter") << QByteArray("demo,drive=1") << "\"drive=1\"";
    QTest::newRow("strict") << QByteArray("demo,strict=yes") << "\"strict=yes\"";
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
    ByteVector image;
    std::string error;
    QVERIFY(makeGbImage({0x03, 0x10000, 0x2000, "INSERTED", 8}, &image, &error));
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

QTEST_APPLESS_MAIN(BackendChoiceTest)
#include "backend_choice_test.moc"
