// What a cartridge says of itself, and how far it can be believed.
//
// Thread: pure functions, but for detectCartridge().
#pragma once

#include "trust/cartridge_task.h"
#include "worker/cartridge_report.h"

#include <QVector>

#include <functional>

// Makes the cartridge report and passes its lines on, without the rules. A cartridge that
// was not recognised while the drive failed is a ShortRead; lastDriveError() is then why. The
// reader is given up before the call returns. Blocks; no job may run.
CartridgeReport detectCartridge(const std::function<void(const QString &)> &line);

// The values that the report found. What it cannot know (no save memory named, unknown game) is
// left open. Two things are taken as the cartridges mean them and not as the report, which follows
// the window, has them: RAM size codes 4 and 5 are 128 and 64 KiB, for half a save would be lost;
// and a TAMA5 has its own mapper script, for with the MBC5's one bank would come again and again.
// Source: Pan Docs, "The Cartridge Header".
CartridgeValues valuesFound(const CartridgeReport &report);

// The same without what is only assumed: an unknown cartridge type is taken for one of MBC5's.
CartridgeValues valuesNamed(const CartridgeReport &report);

// What the user said, completed by what was found. Found values of another system than the user's
// are not taken.
CartridgeValues mergeValues(const CartridgeValues &said, const CartridgeValues &found);

// The cartridge's title, of its header or of the game table; empty if it was not recognised.
QString titleOf(const CartridgeReport &report);

// Whether the slot holds a cartridge that one can tell from another.
bool isRecognised(const CartridgeReport &report);

// How a job would have ended with the reader as the report found it: NoReader, what modeFault()
// says, or Done.
JobEnd readerFaultOf(const CartridgeReport &report);

// A task that must not be tried on this cartridge.
enum class Danger { None, Mbc6Save, Mbc7Save, Tama5Save };
Danger dangerOf(const CartridgeReport &report, CartridgeTask task);

// What the header says and the report takes for something else, so that a job with these values
// would end well and still bring a wrong ROM or half a save.
enum class Doubt { Tama5AsMbc5, Mbc6AsMbc5, UnknownRomSize };
QVector<Doubt> doubtsAbout(const CartridgeReport &report, CartridgeTask task,
                           const CartridgeValues &used);
