// What people read of a job's end.
//
// Thread: pure functions; any thread.
#pragma once

#include "script/job.h"

// The line that the window's log has for this end. Empty where the script's own lines say it all.
QString jobEndLine(JobEnd end);

// Why the job failed, in one line: what the script said, without the folders in front of its name,
// else jobEndLine(), else what a native said whose error the script caught, else what the drive
// said.
QString reasonOf(const JobResult &result);
