#include "trust/backup_report.h"

#include "cart/setting_tables.h"
#include "device/checksums.h"
#include "trust/file_sha1.h"
#include "trust/judgement_words.h"
#include "trust/words.h"
#include "worker/job_words.h"
#include "worker/shown_text.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFileInfo>

namespace
{

struct Backup {
    Q_DECLARE_TR_FUNCTIONS(Backup)
};

QString line(const char *name, const QString &value)
{
    return value.isEmpty()
               ? QString()
               : QStringLiteral("%1%2\n").arg(QLatin1String(name), -16).arg(shownValue(value));
}

QString hashText(const QByteArray &bytes, QCryptographicHash::Algorithm algorithm)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, algorithm).toHex());
}

QString crcText(const QByteArray &bytes)
{
    const std::uint32_t crc = crc32(reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                                    static_cast<std::uint32_t>(bytes.size()));
    return QStringLiteral("%1").arg(crc, 8, 16, QLatin1Char('0'));
}

// One line. What a script refused stands in its own words only.
QString reasonOf(const Outcome &outcome)
{
    const QString text = troubleText(outcome);
    return text.isEmpty() ? reasonOf(outcome.job) : text;
}

QString memoryText(const char *heading, const BackedUpMemory &memory)
{
    QString text = QStringLiteral("\n%1\n").arg(QLatin1String(heading));
    text += line("Verdict", memoryText(memory) + memory.advice);
    if (memory.path.isEmpty())
        return text;
    text += line("File", QFileInfo(memory.path).fileName());
    text += line("Bytes", QString::number(memory.bytes.size()));
    text += line("CRC-32", crcText(memory.bytes));
    text += line("MD5", hashText(memory.bytes, QCryptographicHash::Md5));
    text += line("SHA-1", QString::fromLatin1(memory.sha1.toHex()));
    text += line("SHA-256", hashText(memory.bytes, QCryptographicHash::Sha256));
    text += line("Reads", QString::number(memory.reads));
    text += line("First read", QStringLiteral("%1 ms").arg(memory.milliseconds));
    return text;
}

QString valuesText(const CartridgeValues &values)
{
    QString text =
        line("System", values.system == kSystemGba ? QStringLiteral("gba") : QStringLiteral("gb"));
    if (values.mapper)
        text += line("Mapper", labelOf(kMappers, *values.mapper));
    if (values.romSize)
        text += line("ROM size", QString::number(*values.romSize));
    if (values.saveType)
        text += line("Save type", labelOf(kGbaSaveTypes, *values.saveType));
    if (values.ramSize)
        text += line("Save size", QString::number(*values.ramSize));
    return text;
}

} // namespace

QString memoryGrounds(const BackedUpMemory &memory)
{
    switch (memory.end) {
    case MemoryEnd::Kept:
        return memory.isThere ? Backup::tr("%1; already there").arg(groundsOf(memory.verdict))
                              : groundsOf(memory.verdict);
    case MemoryEnd::NoMemory:
        return Backup::tr("none");
    case MemoryEnd::NotKnown:
        return Backup::tr("not read: its size or kind is not known");
    case MemoryEnd::Dangerous:
        return Backup::tr("not read: %1").arg(dangerText(memory.danger));
    case MemoryEnd::Locked:
        return Backup::tr("not read: after a ROM of this size an MMM01 shows its save in "
                          "pieces until it is taken out");
    case MemoryEnd::UnknownGame:
        return Backup::tr("not read: no table knows this game");
    case MemoryEnd::Swapped:
        return Backup::tr("not read: the cartridge was changed meanwhile");
    case MemoryEnd::NotRead:
        return Backup::tr("not read: %1").arg(reasonOf(memory.outcome));
    case MemoryEnd::NotReadTwice:
        return Backup::tr("not read twice: %1")
            .arg(memory.path.isEmpty() ? reasonOf(memory.outcome)
                                       : sentences(reasonOf(memory.outcome),
                                                   Backup::tr("The first read is in %1.")
                                                       .arg(QFileInfo(memory.path).fileName())));
    case MemoryEnd::NotWritten:
        return Backup::tr("not written: %1").arg(reasonOf(memory.outcome));
    }
    return QString();
}

QString memoryText(const BackedUpMemory &memory)
{
    const QString grounds = memoryGrounds(memory);
    return memory.end == MemoryEnd::Kept ? judgedText(judgementOf(memory.verdict.kind), grounds)
                                         : grounds;
}

QString reportText(const BackupRecord &record)
{
    return line("Title", record.title) + line("Begin", record.begin.toString(Qt::ISODate)) +
           line("End", record.end.toString(Qt::ISODate)) + line("Program", record.program) +
           line("Reader", record.label) + line("Firmware", record.firmware) +
           line("Script", QFileInfo(record.scriptPath).fileName()) +
           line("Script SHA-1", fileSha1(record.scriptPath)) + QStringLiteral("\nSettings\n") +
           valuesText(record.values) + memoryText("ROM", record.rom) +
           memoryText("Save", record.save);
}
