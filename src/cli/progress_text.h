// How far a transfer has come, as a line of text: bar, bytes, rate, time left.
// Pure; any thread.
#pragma once

#include <QString>

// `done` and `total` in bytes, `elapsedMs` since the transfer began. `done` may be anything; it is
// shown between 0 and `total`.
QString progressText(qint64 done, qint64 total, qint64 elapsedMs);

// Whole percent of `total`, 0 to 100.
int progressPercent(qint64 done, qint64 total);
