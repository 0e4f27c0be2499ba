#include "cli/dump_command.h"

#include "cli/kept_read.h"
#include "cli/known_titles.h"
#include "cli/pending_file.h"

#include <QCryptographicHash>

namespace
{

int readsWanted(const CliOptions &options, bool isKnown)
{
    if (!options.verifies)
        return 1;
    if (options.reads != 0)
        return options.reads;
    return isKnown ? 1 : 2;
}

} // namespace

ExitCode runDump(const CliOptions &options, Reporter &reporter)
{
    QVector<DatFile> tables;
    if (!readTables(options.datFiles, &tables, reporter))
        return ExitCode::FileError;
    KeptRead read(options, reporter);
    if (!read.begin() || !read.readOnce())
        return read.code();
    RomEvidence evidence = evidenceOf(read.bytes(), read.sha1(), tables);
    evidence.reads = readsWanted(options, evidence.known.has_value());
    if (!read.readAgain(evidence.reads - 1, &evidence.differences))
        return read.code();
    return read.finish(judgeRom(evidence));
}

ExitCode runVerify(const CliOptions &options, Reporter &reporter)
{
    QVector<DatFile> tables;
    QByteArray bytes;
    QString problem;
    if (!readTables(options.datFiles, &tables, reporter))
        return ExitCode::FileError;
    if (!readUserFile(options.path, &bytes, &problem)) {
        reporter.problem(problem);
        return ExitCode::FileError;
    }
    const QByteArray sha1 = QCryptographicHash::hash(bytes, QCryptographicHash::Sha1);
    const Verdict verdict = judgeRom(evidenceOf(bytes, sha1, tables));
    tellVerdict(verdict,
                {{QStringLiteral("file"), options.path},
                 {QStringLiteral("size"), bytes.size()},
                 {QStringLiteral("sha1"), QString::fromLatin1(sha1.toHex())},
                 {QStringLiteral("reads"), 0}},
                reporter);
    return exitCodeOf(verdict.kind);
}
