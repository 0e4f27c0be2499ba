// What tests of the Info action share: cartridges whose headers say what a test wants, and the
// lines and the traffic that are the same in every report.
#pragma once

#include "virtual/cartridge.h"

#include <QStringList>

#include <memory>

class Settings;

// 32 KiB behind no mapper, with the header codes of any other cartridge: the report reads no
// further than the header. The title is "VIRTUAL".
std::unique_ptr<virtual_reader::Cartridge> makeGbHeaderCartridge(int type, int romCode,
                                                                 int ramCode);

// A GBA cartridge with the game code `code`.
std::unique_ptr<virtual_reader::Cartridge> makeGbaGame(const QString &code,
                                                       std::uint32_t romSize = 64 * 1024);

// What the report says of the reader of a fixture.
QStringList deviceLines();
// What it says when neither bus shows a header.
QStringList nothingFoundLines();

// What it asks the reader for, as ReaderFixture::traffic() tells.
QStringList gbHeaderTraffic();
QStringList gbaHeaderTraffic();

// What the four lists of the settings box show.
QStringList shownSettings(const Settings &settings);
