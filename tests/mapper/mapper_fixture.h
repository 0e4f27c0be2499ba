// A generated Game Boy cartridge of any kind for jobs to run on.
//
// Before a job its registers can be left as no script expects them, and afterwards it tells whether
// the job left it at rest.
#pragma once

#include "job_fixture.h"
#include "mapper_facts.h"
#include "virtual/cartridge_options.h"

// An image with a header of the kind. `ramSize` 0: a cartridge with ROM alone.
virtual_reader::ByteVector makeMapperImage(const MapperFacts &mapper, int romSize, int ramSize,
                                           unsigned seed = 1);

class MapperFixture : public JobFixture
{
public:
    MapperFixture(const MapperFacts &mapper, int romSize, int ramSize, const QString &savePath = {},
                  const virtual_reader::CartridgeOptions &options = {});

    // Runs one job with the mapper's script.
    JobOutcome run(JobCode operate, int size, const QString &fileName);
    using JobFixture::run;

    // Leaves the gate open and odd banks selected, as a program before this one could have.
    void disturbRegisters();

    // What is wrong with the state that the cartridge was left in; empty if it is at rest: save
    // memory closed, ROM bank 1, RAM bank 0, the mode of bank groups 0. Finds it out on the bus and
    // changes it. Sees everything only on the largest ROM, and with RAM banks that hold different
    // bytes.
    QString unrest();

private:
    QString ramUnrest();
    QString modeUnrest();
    QString motionUnrest();

    const MapperFacts &m_mapper;
};
