// Running a cartridge job: whole, on bytes in memory, or step by step for an owner who has files to
// read and write in between.
//
// Thread: whoever calls; blocks until the job has ended. One job or report at a time, because the
// device link is process-wide. The drive backend of the process must be set.
#pragma once

#include "script/job.h"

// Runs the job from the search for the reader to the end of its script, and gives the drive up.
// `input`: what a job that writes moves to the cartridge; a flash job takes its size from it, a
// save job needs ramSize bytes, or more of which only the first are used. Not altered.
// Returns: how it ended. NoScript before anything else is done; InputNotRead for a short input.
JobResult runJob(const CartridgeJob &job, const QByteArray &input, JobListener &listener);

// --- Steps ---------------------------------------------------------------------------------------
// For the owner of a ReaderSession, in this order.

// Looks for the reader, puts it on the job's bus and binds the job's kind of save memory.
// Returns: Done, NoReader, or what modeFault() says.
JobEnd selectReader(const CartridgeJob &job);

// Why the bus mode could not just be selected: NoMode, ReaderInUse or NotTheReader. Nothing was
// sent to the reader then.
JobEnd modeFault();

// A flash job's cipher key, which the reader hands out anew for every job. A failed query leaves a
// key of zeros.
void keyCipher();

// The script's part is runOperation() in script/script_host.h.

// What is known of the job when it has ended, without its bytes. The drive's error is the last
// since clearLastDriveError(), which the owner calls before the first step.
JobResult resultOf(const RunningJob &running, JobEnd end);
