// The host's own commands, for tests of the reader. In a source of its own, because host and reader
// share no header and name some constants alike.
#pragma once

#include "device/drive_backend.h"

#include <cstdint>
#include <vector>

using HostBytes = std::vector<std::uint8_t>;

// Serves the host from `drive`, which must outlive what follows, and finds the reader on it.
// Returns: false if there is no reader.
bool connectHost(DriveBackend &drive);

// Puts the reader on the GBA bus for the save memory of `type`, see selectGbaSaveType().
void hostSelectSave(std::uint32_t type);
HostBytes hostReadSave(std::uint32_t size);
// `save` must be a multiple of 512 bytes.
void hostWriteSave(HostBytes save);
void hostEraseSave();
// First byte of the save memory as the host polls it.
std::uint8_t hostPollSave();

// Puts the reader on the GB bus to program with opcode 14 or 15, under the reader's key.
void hostSelectFlash(std::uint32_t opcode);
// From then on the host enciphers with a key of zeros.
void hostUseZeroKey();
void hostWriteBus(std::uint32_t address, std::uint32_t value);
// At least 8 bytes in the last block of 480.
void hostProgram(std::uint32_t address, HostBytes bytes);
HostBytes hostReadBus(std::uint32_t address, std::uint32_t length);
