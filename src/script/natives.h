// The natives: the functions that a mapper script calls. Each checks its arguments, calls one
// operation of the cartridge access table, moves bytes between the cartridge and the job's buffer
// at the job's cursor, and reports progress. docs/mapper-scripts.md tells script authors about
// them.
//
// Stack of every native: 1 `this`, 2 the job as user pointer, 3.. integer arguments. A negative
// result is an error in the script.
//
// A transfer that would leave the job's buffer is refused before anything is sent, with the message
//     NAME: cursor N, length L: outside the buffer of S bytes
// where NAME is the native's. Scripts may rely on this form: from N they learn how much has
// arrived.
//
// An operation of the device that fails ends the script as well: the reader took no command, did
// not answer, or sent fewer bytes than asked for, or the drive reported an error in any part of the
// operation. The cursor stays where it was, so that it always
// says how much has arrived, and no progress is told. The message is one of
//     NAME: the reader did not take the command
//     NAME: the reader did not answer
//     NAME: only N of L bytes arrived
// A script may catch the error, but its job remembers the failure.
//
// Thread: the one that runs the job, inside a script call. The machine has an owner, see
// createVm().
#pragma once

#include <squirrel.h>

// (dev, addr1, val1 [, addr2, val2 ...]): up to 8 GB bus writes in one command.
SQInteger nat_cpu_write(HSQUIRRELVM v);
// (dev, addr, len): reads from the bus and appends to the buffer.
SQInteger nat_cpu_read_gb(HSQUIRRELVM v);
SQInteger nat_cpu_read_gba(HSQUIRRELVM v);
// (dev, addr, len): reads GBA save memory and appends to the buffer.
SQInteger nat_ram_read(HSQUIRRELVM v);
// (dev, addr, len): writes save memory from the buffer.
SQInteger nat_ram_write_gb(HSQUIRRELVM v);
SQInteger nat_ram_write_gba(HSQUIRRELVM v);
// (): starts the erase of a GBA FLASH save.
SQInteger nat_ram_erase(HSQUIRRELVM v);
// (dev, addr, len): programs flash from the buffer.
SQInteger nat_rom_write(HSQUIRRELVM v);
// (dev, cfg): even selects flash opcode 14, odd 15, until the next GB mode selection.
SQInteger nat_rom_flash_cfg(HSQUIRRELVM v);

struct NativeEntry {
    const SQChar *name;
    SQFUNCTION function;
};

struct NativeSet {
    const NativeEntry *natives; // static; in the order of registration
    int count;                  // 0: no such operation
};

// The natives that the scripts of an operation (a JobCode) get.
NativeSet nativesOf(int operate);
