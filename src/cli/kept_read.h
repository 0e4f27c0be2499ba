// A read of a cartridge that ends in a file of the user's, step by step: look, read, compare,
// judge, give the file its name. Shared by dump and read-ram.
//
// Every step tells what went wrong and leaves the reason in code(); the caller then returns it, and
// nothing is left under the file's name.
// Thread: as job_runner.h.
#pragma once

#include "cli/cartridge_look.h"
#include "cli/pending_file.h"
#include "cli/verdict.h"

#include <memory>

class KeptRead
{
public:
    // Both must outlive this object.
    KeptRead(const CliOptions &options, Reporter &reporter)
        : m_options(options), m_reporter(reporter)
    {
    }

    // Sees that the file can be made, looks at the cartridge, makes the job.
    bool begin();
    bool readOnce();
    // See readAgain() in repeated_read.h.
    bool readAgain(int times, QString *differences);

    // Names the file and tells the verdict. An unstable read gets ".unstable" behind its name, so
    // that nobody takes it for a dump; a suspicious one that would replace a file ".suspicious", for
    // the save of an empty battery must not take the place of the last good one. Where an older one
    // stands, another name.
    ExitCode finish(const Verdict &verdict);

    ExitCode code() const { return m_code; }
    const QByteArray &bytes() const { return m_bytes; }
    const QByteArray &sha1() const { return m_sha1; }

private:
    bool failWith(ExitCode code, const QString &problem);
    QString nameFor(VerdictKind kind) const;
    // True, with the reason told, if the user asked to stop.
    bool isStopped();

    const CliOptions &m_options;
    Reporter &m_reporter;
    std::unique_ptr<PendingFile> m_file;
    CliJob m_job;
    QByteArray m_bytes;
    QByteArray m_sha1;
    int m_reads = 0; // made so far
    ExitCode m_code = ExitCode::Done;
};
