#include "flash_fixture.h"

using namespace virtual_reader;

namespace
{

CartridgeOptions boardOptions(FlashWidth width, const FlashChipBehaviour &behaviour)
{
    CartridgeOptions options;
    options.flash = width;
    options.flashChip = behaviour;
    return options;
}

} // namespace

FlashFixture::FlashFixture(MapperKind kind, FlashWidth width, int chipSize,
                           const FlashChipBehaviour &behaviour)
    : MapperFixture(factsOf(kind), chipSize, factsOf(kind).ramSizes.first(), {},
                    boardOptions(width, behaviour)),
      m_facts(factsOf(kind))
{
}

JobOutcome FlashFixture::flash(const QByteArray &file, int width, int cancelAfter)
{
    const QString path = m_folder.filePath("game.gb");
    if (!writeFile(path, file))
        qFatal("no file");
    return run({m_facts.script, GB_WRITE_FLASH, file.size(), path, 0, width, cancelAfter});
}

QByteArray FlashFixture::dump(int size)
{
    const QString path = m_folder.filePath("dump.gb");
    return run(GB_READ_ROM, size, path).succeeded() ? fileBytes(path) : QByteArray();
}

QByteArray newGame(MapperKind kind, int size)
{
    return JobFixture::bytesOf(makeMapperImage(factsOf(kind), size, 0, 2));
}

QByteArray inChip(const QByteArray &file, int chipSize)
{
    return file + QByteArray(chipSize - file.size(), '\xFF');
}
