#include "reader_fixture.h"

#include "device/device_link.h"
#include "device/device_ops.h"
#include "virtual/cartridge_factory.h"
#include "virtual/image_generator.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStringList>
#include <QtTest>

using namespace virtual_reader;

namespace
{
constexpr char kGbBusWrite[] = "%1<-%2";

QString mapperFolder()
{
    return QCoreApplication::applicationDirPath() + "/mapper";
}

QString hex(std::uint32_t value, int digits = 2)
{
    return QString("%1").arg(value, digits, 16, QChar('0')).toUpper();
}

QString blockText(const BlockRecord &block)
{
    if (block.commandClass == 2 && block.opcode == 13)
        return QString(kGbBusWrite).arg(hex(block.address), hex(block.value));
    return hex(block.commandClass) + "/" + hex(block.opcode);
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}
} // namespace

void CountingDrive::releaseDrive()
{
    ++releases;
    FaultyDrive::releaseDrive();
}

ReaderFixture::ReaderFixture(std::unique_ptr<Cartridge> cartridge, VirtualReaderConfig config)
    : m_platform(createPlatformBackend())
{
    auto kept = std::make_unique<KeptReader>(std::move(cartridge), std::move(config), SaveFile());
    m_inProcess = std::make_unique<InProcessDrive>(std::move(kept), *m_platform);
    m_drive = std::make_unique<CountingDrive>(*m_inProcess);
    deviceLink = DeviceLink();
    deviceOps = DeviceOps();
    setDriveBackend(m_drive.get());
    QDir(mapperFolder()).removeRecursively();
}

ReaderFixture::~ReaderFixture()
{
    QDir(mapperFolder()).removeRecursively();
    setDriveBackend(nullptr);
}

void ReaderFixture::findReader()
{
    QCOMPARE(findDevice(0, nullptr), 1);
    reader().clearOperations();
}

QStringList ReaderFixture::traffic()
{
    QStringList lines;
    for (const Operation &operation : reader().operations()) {
        for (const BlockRecord &block : operation.blocks)
            lines << blockText(block);
        if (operation.kind == Operation::Kind::Read && operation.file == ReaderFile::Dump)
            lines << QString("read %1+%2").arg(operation.offset).arg(operation.length);
    }
    return lines;
}

QString ReaderFixture::scriptPath(const QString &name)
{
    return mapperFolder() + "/" + name;
}

QString ReaderFixture::addScript(const QString &name, const QByteArray &text)
{
    QDir().mkpath(mapperFolder());
    if (!writeFile(scriptPath(name), text))
        qFatal("cannot write the mapper script %s", qPrintable(scriptPath(name)));
    return scriptPath(name);
}

void ReaderFixture::addShippedScripts()
{
    const QDir folder(GBDRIVER_MAPPER_FOLDER);
    for (const QString &name : folder.entryList({"*.nut"}, QDir::Files)) {
        QFile script(folder.filePath(name));
        if (!script.open(QIODevice::ReadOnly))
            qFatal("cannot read %s", qPrintable(script.fileName()));
        addScript(name, script.readAll());
    }
}

QString ReaderFixture::addFile(const QString &name, const QByteArray &bytes) const
{
    if (!writeFile(path(name), bytes))
        qFatal("cannot write %s", qPrintable(path(name)));
    return path(name);
}

QByteArray ReaderFixture::fileBytes(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::unique_ptr<Cartridge> makeGbCartridge(std::uint8_t type, std::uint32_t romSize,
                                           std::uint32_t ramSize)
{
    GbImageSpec spec;
    spec.type = type;
    spec.romSize = romSize;
    spec.ramSize = ramSize;
    ByteVector image;
    std::string error;
    if (!makeGbImage(spec, &image, &error))
        qFatal("%s", error.c_str());
    auto cartridge = makeCartridge(image, &error);
    if (!cartridge)
        qFatal("%s", error.c_str());
    if (ramSize > 0 && !cartridge->loadSave(makeNoise(ramSize, 7)))
        qFatal("the cartridge takes no save of %u bytes", ramSize);
    return cartridge;
}

std::unique_ptr<Cartridge> makeMbc5Cartridge(std::uint32_t romSize)
{
    return makeGbCartridge(0x1B, romSize, 32 * 1024);
}

QByteArray toByteArray(const ByteVector &bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size()));
}
