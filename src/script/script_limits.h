// What keeps a script from taking the program with it. The library that runs scripts trusts them:
// it does not look whether memory was to be had, follows nested things on the machine's stack, and
// runs a loop for ever. So
// - a machine's memory is bounded. The library's allocation functions are ours, see the source;
// - it runs on a stack of its own, deep enough for everything that fits into that memory;
// - what happens in it is counted by the library's debug hook, so that it can be ended.
// A machine that goes over a limit is given up in the middle: nothing of it may be used any more.
// Its memory goes as a whole. What else it had, an open file, stays until the program ends.
//
// Thread: one run a thread; runs of several threads know nothing of each other.
#pragma once

#include "script/job.h"

#include <squirrel.h>

#include <functional>

// Far more than scripts need: the shipped ones take 120 KiB.
constexpr std::size_t kScriptMemoryBytes = 8 * 1024 * 1024;
// A script that has called no native for so long may be ended where the user wants the job to stop.
constexpr int kSilenceMs = 3000;

enum class ScriptStop {
    None,
    Memory,  // it needs more than there is for it
    Depth,   // its text, its calls or its data are nested too deeply
    Silence, // it called no native for a while, and its end was wanted
};

// Runs `work` on a stack of its own, within the limits, and waits for it.
// Returns: false if there is no memory for the stack; nothing was run.
bool runWithinLimits(RunningJob &job, const std::function<void()> &work);

// Calls `step`, which uses a machine. When the machine is given up, `step` never returns: it must
// hold nothing that has to be destroyed. Outside of runWithinLimits() there are no limits.
// Returns: whether the machine may still be used.
bool stepWithinLimits(const std::function<void()> &step);

// Of the run of this thread; None outside of one.
ScriptStop scriptStop();
// Where the given-up machine was: "gb_mbc5.nut, line 12"; empty if it had not begun.
QString scriptStopPlace();
// What is to be told of a stop.
QString scriptStopText(ScriptStop stop);

// Frees what a machine has left that was closed or given up. Nothing of it may be used afterwards.
// The library leaves something behind a compile error.
void dropMachineMemory();
// Memory of the run's machines in use, in bytes.
std::size_t machineMemoryUsed();

// --- For what the machine calls ---

// Gives the machine up if its stack is nearly used. Called where nesting can be seen.
void checkScriptDepth();
// The script has called a native that did something.
void noteNativeCall();
// Has the machine watched: the debug hook of this module.
void watchMachine(HSQUIRRELVM v);

// For tests: another time than kSilenceMs.
void setSilence(int timeMs);
