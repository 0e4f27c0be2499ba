#include "cli/backup_report.h"

#include "cart/setting_tables.h"
#include "cli/cli_detection.h"
#include "device/checksums.h"

#include <QCryptographicHash>
#include <QFileInfo>

namespace
{

QString line(const char *name, const QString &value)
{
    return value.isEmpty() ? QString()
                           : QStringLiteral("%1%2\n").arg(QLatin1String(name), -16).arg(value);
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

QString memoryText(const char *heading, const BackedUpMemory &memory)
{
    QString text = QStringLiteral("\n%1\n").arg(QLatin1String(heading));
    text += line("Verdict", memory.verdict);
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

QString reportText(const BackupRecord &record)
{
    return line("Title", record.title) + line("Begin", record.begin.toString(Qt::ISODate)) +
           line("End", record.end.toString(Qt::ISODate)) +
           line("Program", QStringLiteral("gbdriver-cli " GBDRIVER_VERSION)) +
           line("Reader", record.label) + line("Firmware", record.firmware) +
           line("Script", record.script) + line("Script SHA-1", record.scriptSha1) +
           QStringLiteral("\nSettings\n") + valuesText(record.values) +
           memoryText("ROM", record.rom) + memoryText("Save", record.save);
}

QJsonObject factsOf(const BackedUpMemory &memory)
{
    return {{QStringLiteral("file"), memory.path},
            {QStringLiteral("size"), memory.bytes.size()},
            {QStringLiteral("sha1"), QString::fromLatin1(memory.sha1.toHex())},
            {QStringLiteral("reads"), memory.reads}};
}
