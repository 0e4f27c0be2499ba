// Random traffic of the kind that each mapper understands, for the comparison with the emulator
// library. What the sequences leave out, and why, stands with them.
#pragma once

#include "mapper_traffic.h"

// Each appends a few steps that belong together. None of them relies on those before it, but for
// the start.
using BusSequence = void (*)(BusTraffic *traffic);

// What has to come first.
void mbc7Start(BusTraffic *traffic);
void huc1Start(BusTraffic *traffic);
void mmm01Start(BusTraffic *traffic);
void tama5Start(BusTraffic *traffic);

void mbc1Sequence(BusTraffic *traffic);
void mbc2Sequence(BusTraffic *traffic);
void mbc3Sequence(BusTraffic *traffic);
void mbc30Sequence(BusTraffic *traffic);
void mbc5Sequence(BusTraffic *traffic);
void mbc7Sequence(BusTraffic *traffic);
void huc1Sequence(BusTraffic *traffic);
void huc3Sequence(BusTraffic *traffic);
void mmm01Sequence(BusTraffic *traffic);
void tama5Sequence(BusTraffic *traffic);
void cameraSequence(BusTraffic *traffic);
