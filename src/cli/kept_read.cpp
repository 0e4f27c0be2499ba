#include "cli/kept_read.h"

#include "cli/backup_store.h"
#include "cli/interrupt.h"
#include "cli/job_runner.h"
#include "cli/repeated_read.h"

#include <QFileInfo>

bool KeptRead::failWith(ExitCode code, const QString &problem)
{
    m_code = code;
    if (!problem.isEmpty())
        m_reporter.problem(problem);
    return false;
}

bool KeptRead::isStopped()
{
    return wasInterrupted() &&
           !failWith(ExitCode::Cancelled,
                     QStringLiteral("Stopped. The cartridge is as it was; no file was made."));
}

bool KeptRead::begin()
{
    m_file = std::make_unique<PendingFile>(
        m_options.path, m_options.overwrites ? ExistingFile::Replace : ExistingFile::Keep);
    if (m_file->isTaken())
        return failWith(ExitCode::Refused,
                        m_file->problem() + QStringLiteral(" Choose another name, or replace it "
                                                           "with --overwrite. Nothing was read."));
    if (!m_file->problem().isEmpty())
        return failWith(ExitCode::FileError,
                        m_file->problem() + QStringLiteral(" Nothing was read."));
    const CartridgeLook look = lookAtCartridge(m_options, m_reporter);
    m_code = look.code;
    if (m_code == ExitCode::Done)
        m_code = completeLookedAtJob(m_options, look, m_file->temporaryPath(), m_reporter, &m_job);
    return m_code == ExitCode::Done && !isStopped();
}

bool KeptRead::readOnce()
{
    const JobResult result = runJob(m_job, "read", JobLog::Told, m_reporter);
    m_code = result.code;
    m_sha1 = result.sha1;
    m_reads = 1;
    QString problem;
    if (m_code == ExitCode::Done && !readTransferred(m_job.fileName, m_sha1, &m_bytes, &problem))
        return failWith(ExitCode::FileError, problem);
    return m_code == ExitCode::Done && !isStopped();
}

bool KeptRead::readAgain(int times, QString *differences)
{
    int made = 0;
    m_code = ::readAgain(m_job, m_bytes, times, m_reporter, differences, &made);
    m_reads += made;
    return m_code == ExitCode::Done;
}

QString KeptRead::nameFor(VerdictKind kind) const
{
    QString mark;
    if (kind == VerdictKind::Unstable)
        mark = QStringLiteral(".unstable");
    else if (kind == VerdictKind::Suspicious && QFileInfo::exists(m_options.path))
        mark = QStringLiteral(".suspicious");
    const QString path = m_options.path + mark;
    if (mark.isEmpty() || m_options.overwrites || !QFileInfo::exists(path))
        return path;
    const QFileInfo info(path);
    return freePath(info.path(), info.completeBaseName(), mark);
}

ExitCode KeptRead::finish(const Verdict &verdict)
{
    const QString path = nameFor(verdict.kind);
    if (!m_file->commit(path)) {
        failWith(ExitCode::FileError, m_file->problem());
        return m_code;
    }
    tellVerdict(verdict,
                {{QStringLiteral("file"), path},
                 {QStringLiteral("size"), m_bytes.size()},
                 {QStringLiteral("sha1"), QString::fromLatin1(m_sha1.toHex())},
                 {QStringLiteral("reads"), m_reads}},
                m_reporter);
    return exitCodeOf(verdict.kind);
}
