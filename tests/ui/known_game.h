// A game that the programs of window tests know: their table of known dumps has one row, this one,
// for the true one has no game that a test may hold.
#pragma once

#include "samples.h"

virtual_reader::ByteVector knownGame();
