// Jobs with the scripts of the source tree on generated cartridges of any kind, Game Boy boards
// with a flash chip among them.
//
// Before a job its registers can be left as no script expects them, and afterwards it tells whether
// the job left the cartridge at rest.
#pragma once

#include "mapper_facts.h"
#include "reader_bench.h"

// What a refusal ends with.
constexpr char kNothingSent[] = "Nothing was sent to the cartridge.";

// A job with a script of the source tree that moves `size` bytes of ROM or save, as `operate` has
// it.
CartridgeJob scriptJob(const QString &script, JobCode operate, int size, int saveType = 0,
                       int flashWidth = 0);

// An image with a header of the kind. `ramSize` 0: a cartridge with ROM alone.
virtual_reader::ByteVector makeMapperImage(const MapperFacts &mapper, int romSize, int ramSize,
                                           unsigned seed = 1);

class MapperFixture : public ReaderBench
{
public:
    MapperFixture(const MapperFacts &mapper, int romSize, int ramSize, const QString &savePath = {},
                  const virtual_reader::CartridgeOptions &options = {});

    // Runs one job with the mapper's script.
    JobRun run(JobCode operate, int size, const QByteArray &input = {});
    using ReaderBench::run;

    // Reads as many bytes of ROM by a dump; empty if it fails.
    QByteArray dump(int size);

    // Leaves the gate open and odd banks selected, as a program before this one could have.
    void disturbRegisters();

    // What is wrong with the state that the cartridge was left in; empty if it is at rest: save
    // memory closed, ROM bank 1, RAM bank 0, the mode of bank groups 0. Finds it out on the bus and
    // changes it. Sees everything only on the largest ROM, and with RAM banks that hold different
    // bytes.
    QString unrest();

protected:
    const MapperFacts &m_mapper;

private:
    QString ramUnrest();
    QString modeUnrest();
    QString motionUnrest();
};

// A board with a flash chip, an old game in it and a save beside it.
class FlashFixture : public MapperFixture
{
public:
    // `chipSize` in bytes; the save memory is the smallest of the kind.
    FlashFixture(MapperKind kind, virtual_reader::FlashWidth width, int chipSize,
                 const virtual_reader::FlashChipBehaviour &behaviour = {});

    // Writes `file` as the user of an 8-bit (0) or 16-bit chip (1) does. `looks`: as in run().
    JobRun flash(const QByteArray &file, int width, int looks = 0);
};

// A game for the kind: a file of this size with a valid header. Differs from the one that a fixture
// begins with.
QByteArray newGame(MapperKind kind, int size);

// `file` as a chip of this size holds it: erased behind its end.
QByteArray inChip(const QByteArray &file, int chipSize);
