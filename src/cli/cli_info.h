// The command "info": the cartridge report on standard output, as lines or as one JSON object.
#pragma once

// Looks at the cartridge and prints. Beyond the window's report it says whether the header's
// checksums are right; the global checksum of a GB cartridge needs the whole ROM, which is read
// into a temporary file with progress on standard error, unless `isQuick`.
// Returns: true if a cartridge was recognised.
bool runCliInfo(bool asJson, bool isQuick, bool isTerminal);
