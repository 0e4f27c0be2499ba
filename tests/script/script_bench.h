// A job, a mapper script and a recording drive for tests of the script host. The host runs on the
// test's own thread. Erase polls do not wait.
//
// The reader is on drive E, both buses are selected, and the natives reach the real commands. What
// the job emits is recorded among the drive's calls, so that one list shows who came first.
#pragma once

#include "files.h"
#include "job_events.h"
#include "recording_drive.h"

class ScriptBench
{
public:
    ScriptBench();
    ~ScriptBench();
    ScriptBench(const ScriptBench &) = delete;
    ScriptBench &operator=(const ScriptBench &) = delete;

    // Writes a mapper script and makes it the job's. Returns: its path.
    QString setScript(const QByteArray &text);

    // Runs the script part of the job with operation code `operate`; only what happens from here on
    // is recorded. Returns: whether it is Done.
    bool run(int operate);
    // Runs `body` as the GB ROM dump of a script; it begins in line 3.
    bool runDump(const QByteArray &body);

    JobEnd end = JobEnd::Done; // what the host returned
    QString scriptError;       // and what it kept of the script's error
    QString scriptPlace;
    unsigned char *data = nullptr; // the job's transfer buffer

    QStringList events() const { return drive.calls; }
    QStringList logs() const { return logTexts(events()); }

    RecordingDrive drive;
    JobRecorder recorder{&drive.calls};
    CartridgeJob job;

private:
    UserFolder m_folder;
};
