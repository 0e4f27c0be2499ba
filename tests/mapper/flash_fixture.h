// A Game Boy board with a flash chip, an old game in it and a save beside it, and jobs that write a
// ROM file into it.
#pragma once

#include "mapper_fixture.h"

class FlashFixture : public MapperFixture
{
public:
    // `chipSize` in bytes; the save memory is the smallest of the kind.
    FlashFixture(MapperKind kind, virtual_reader::FlashWidth width, int chipSize,
                 const virtual_reader::FlashChipBehaviour &behaviour = {});

    // Writes `file` as the user of an 8-bit (0) or 16-bit chip (1) does. `cancelAfter`: as in Job.
    JobOutcome flash(const QByteArray &file, int width, int cancelAfter = 0);

    // Reads as many bytes of ROM by a dump.
    QByteArray dump(int size);

private:
    const MapperFacts &m_facts;
    QTemporaryDir m_folder;
};

// A game for the kind: a file of this size with a valid header. Differs from the one that a fixture
// begins with.
QByteArray newGame(MapperKind kind, int size);

// `file` as a chip of this size holds it: erased behind its end.
QByteArray inChip(const QByteArray &file, int chipSize);
