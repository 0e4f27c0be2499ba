// A job, a mapper script and a recording drive for tests of the script host. The host runs on the
// test's own thread.
//
// The reader is on drive E, both buses are selected, and the natives reach the real commands. What
// the job emits is recorded among the drive's calls, so that one list shows who came first.
#pragma once

#include "recording_drive.h"

#include "worker/famicom_thread.h"

#include <QTemporaryDir>

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
    // is recorded. Returns: what the host returned.
    bool run(int operate);

    QStringList events() const { return drive.calls; }
    QStringList logs() const;

    RecordingDrive drive;
    FamicomThread job;

private:
    QTemporaryDir m_folder;
};
