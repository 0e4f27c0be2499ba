#include "mapper_fixture.h"

#include "device/device_link.h"
#include "device/device_ops.h"
#include "virtual/cartridge_factory.h"
#include "virtual/image_generator.h"

#include <QFile>

namespace
{

constexpr int kRomBank = 16 * 1024;
constexpr int kRamBank = 8 * 1024;
constexpr int kRamStart = 0xA000;

ByteVector makeImage(const MapperFacts &mapper, int romSize, int ramSize)
{
    GbImageSpec spec;
    spec.type = ramSize > 0 ? mapper.ramType : mapper.romType;
    spec.romSize = static_cast<std::uint32_t>(romSize);
    spec.ramSize = static_cast<std::uint32_t>(ramSize);
    ByteVector image;
    std::string error;
    if (!makeGbImage(spec, &image, &error))
        qFatal("no image: %s", error.c_str());
    return image;
}

std::unique_ptr<KeptReader> makeReader(const ByteVector &image, const QString &savePath)
{
    std::string error;
    auto cartridge = makeCartridge(image, &error);
    if (cartridge == nullptr)
        qFatal("no cartridge: %s", error.c_str());
    SaveFile save(savePath.toStdString());
    if (!save.load(cartridge.get(), &error))
        qFatal("no save: %s", error.c_str());
    VirtualReaderConfig config;
    config.strictSectors = true;
    return std::make_unique<KeptReader>(std::move(cartridge), config, std::move(save));
}

} // namespace

MapperFixture::MapperFixture(const MapperFacts &mapper, int romSize, int ramSize,
                             const QString &savePath)
    : m_mapper(mapper), m_platform(createPlatformBackend())
{
    const ByteVector image = makeImage(mapper, romSize, ramSize);
    m_rom = bytesOf(image);
    m_inProcess = std::make_unique<InProcessDrive>(makeReader(image, savePath), *m_platform);
    m_drive = std::make_unique<FaultyDrive>(*m_inProcess);
    deviceLink = DeviceLink();
    deviceOps = DeviceOps();
    setDriveBackend(m_drive.get());
}

MapperFixture::~MapperFixture()
{
    setDriveBackend(nullptr);
}

JobOutcome MapperFixture::run(JobCode operate, int size, const QString &fileName)
{
    return runScript(QStringLiteral(MAPPER_FOLDER "/") + m_mapper.script, operate, size, fileName);
}

// The slots run on the worker's thread; what they collect is looked at only after it has ended.
JobOutcome MapperFixture::runScript(const QString &scriptPath, JobCode operate, int size,
                                    const QString &fileName)
{
    JobOutcome outcome;
    FamicomThread worker;
    worker.operate = operate;
    worker.script_name = scriptPath;
    worker.file_name = fileName;
    (operate == GB_READ_ROM ? worker.rom_size : worker.ram_size) = size;
    QObject::connect(&worker, &FamicomThread::log,
                     [&](const QString &line) { outcome.log << line; });
    QObject::connect(&worker, &FamicomThread::error, [&](int flag) { outcome.results << flag; });
    reader().clearOperations();
    worker.start();
    worker.wait();
    return outcome;
}

void MapperFixture::disturbRegisters()
{
    Cartridge &cartridge = reader().cartridge();
    for (const unsigned address : m_mapper.registers)
        cartridge.gbWrite(static_cast<std::uint16_t>(address), address == 0 ? 0x0A : 0x03);
}

void MapperFixture::setSave(const QByteArray &bytes)
{
    if (!reader().cartridge().loadSave(ByteVector(bytes.begin(), bytes.end())))
        qFatal("the cartridge has no save memory of %d bytes", bytes.size());
}

QVector<BlockRecord> MapperFixture::busWrites()
{
    constexpr std::uint8_t kGbBusWriteOpcode = 13;
    QVector<BlockRecord> writes;
    for (const Operation &operation : reader().operations()) {
        for (const BlockRecord &block : operation.blocks) {
            if (block.commandClass == kClassGb && block.opcode == kGbBusWriteOpcode)
                writes << block;
        }
    }
    return writes;
}

QByteArray MapperFixture::busBytes(int address, int count)
{
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes +=
            static_cast<char>(reader().cartridge().gbRead(static_cast<std::uint16_t>(address + i)));
    return bytes;
}

QString MapperFixture::unrest()
{
    if (busBytes(0, kRomBank) != m_rom.left(kRomBank))
        return "bank 0 is not at 0x0000";
    if (busBytes(kRomBank, kRomBank) != m_rom.mid(kRomBank, kRomBank))
        return "bank 1 is not at 0x4000";
    if (m_mapper.kind == MapperKind::None)
        return {};
    const QString ram = save().isEmpty() ? QString() : ramUnrest();
    return ram.isEmpty() && m_mapper.kind == MapperKind::Mbc1 ? modeUnrest() : ram;
}

QString MapperFixture::ramUnrest()
{
    if (busBytes(kRamStart, kRamBank) != QByteArray(kRamBank, '\xFF'))
        return "the RAM gate is open";
    reader().cartridge().gbWrite(0x0000, 0x0A);
    return busBytes(kRamStart, kRamBank) == save().left(kRamBank) ? QString()
                                                                  : "RAM bank 0 is not selected";
}

// In mode 0 the second register does not reach 0x0000.
QString MapperFixture::modeUnrest()
{
    reader().cartridge().gbWrite(0x4000, 1);
    return busBytes(0, kRomBank) == m_rom.left(kRomBank) ? QString() : "the mode is 1";
}

QByteArray MapperFixture::bytesOf(const ByteVector &bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size()));
}

QByteArray noise(int size, unsigned seed)
{
    return MapperFixture::bytesOf(makeNoise(static_cast<std::uint32_t>(size), seed));
}

QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}
