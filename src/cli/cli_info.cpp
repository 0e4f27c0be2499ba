#include "cli/cli_info.h"

#include "cart/setting_tables.h"
#include "cli/cli_command.h"
#include "cli/cli_detection.h"
#include "cli/cli_job.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <cstdio>

namespace
{

// What is said about one check of the header.
struct HeaderCheck {
    const char *key;   // in JSON
    const char *label; // in text
    QString result;
};

QString rightOrWrong(bool isRight)
{
    return isRight ? QStringLiteral("right") : QStringLiteral("wrong");
}

const std::uint8_t *bytesOf(const QByteArray &bytes)
{
    return reinterpret_cast<const std::uint8_t *>(bytes.constData());
}

// Dumps the ROM into a temporary file to sum it up.
QString globalChecksum(const CartridgeReport &report, bool isTerminal)
{
    const QTemporaryDir folder;
    CliJob job;
    QString problem;
    const bool isComplete =
        completeJob(*findCliCommand(QStringLiteral("dump")), folder.filePath(QStringLiteral("rom")),
                    valuesFound(report), &job, &problem);
    if (!isComplete || !runCliJob(job, stderr, isTerminal, CliJobOutput::Progress))
        return QStringLiteral("not checked, the ROM can not be read");
    QFile rom(job.fileName);
    if (!rom.open(QIODevice::ReadOnly))
        return QStringLiteral("not checked, ") + rom.errorString();
    const QByteArray bytes = rom.readAll();
    return rightOrWrong(
        gbGlobalChecksumIsRight(bytesOf(bytes), static_cast<std::uint32_t>(bytes.size())));
}

QVector<HeaderCheck> checkHeader(const CartridgeReport &report, bool isQuick, bool isTerminal)
{
    const std::uint8_t *header = bytesOf(report.header);
    QVector<HeaderCheck> checks;
    if (report.outcome == ReportOutcome::GbCartridge) {
        checks << HeaderCheck{"headerChecksum",
                              "Header checksum: ", rightOrWrong(gbHeaderChecksumIsRight(header))};
        checks << HeaderCheck{"globalChecksum", "Global checksum: ",
                              isQuick ? QStringLiteral("not checked")
                                      : globalChecksum(report, isTerminal)};
    } else if (report.outcome == ReportOutcome::GbaCartridge || isUnknownGbaGame(report)) {
        checks << HeaderCheck{"complementCheck",
                              "Complement check: ", rightOrWrong(gbaComplementIsRight(header))};
    }
    return checks;
}

void printLine(const QString &line)
{
    std::printf("%s\n", line.toLocal8Bit().constData());
}

void printText(const CartridgeReport &report, const QVector<HeaderCheck> &checks)
{
    if (isUnknownGbaGame(report)) {
        printLine(QString());
        printLine(QStringLiteral("It is a GBA cartridge with an unknown game."));
        printLine(QStringLiteral("Game code: ") + gbaHeaderCode(bytesOf(report.header)));
        printLine(QStringLiteral("Header title: ") + gbaHeaderTitle(bytesOf(report.header)));
    }
    for (const HeaderCheck &check : checks)
        printLine(QLatin1String(check.label) + check.result);
}

void addGb(const GbHeaderInfo &gb, QJsonObject *object)
{
    const auto mapper = static_cast<std::size_t>(rowWithValue(kMappers, gb.mbcType));
    object->insert("system", "gb");
    object->insert("title", gb.title);
    object->insert("type", gb.typeName);
    object->insert("mapper", QString::fromLatin1(kMappers[mapper].label).toLower());
    object->insert("romSize", gb.romSize);
    object->insert("ramSize", gb.ramSize);
}

void addGbaHeader(const QByteArray &header, QJsonObject *object)
{
    object->insert("system", "gba");
    object->insert("headerTitle", gbaHeaderTitle(bytesOf(header)));
    object->insert("headerCode", gbaHeaderCode(bytesOf(header)));
}

void addGbaGame(const GbaHeaderInfo &gba, QJsonObject *object)
{
    const auto type = static_cast<std::size_t>(rowWithValue(kGbaSaveTypes, gba.saveType));
    object->insert("title", gba.title);
    object->insert("year", gba.year);
    object->insert("publisher", gba.publisher);
    object->insert("codes", gba.codes);
    object->insert("romSize", gba.romSize);
    object->insert("ramSize", gba.saveSize);
    // Without a known save the table says nothing about its type.
    if (gba.saveSize != 0)
        object->insert("saveType", QString::fromLatin1(kGbaSaveTypes[type].label).toLower());
}

void printJson(const CartridgeReport &report, const QVector<HeaderCheck> &checks)
{
    QJsonObject object;
    if (report.outcome != ReportOutcome::NoReader)
        object.insert("reader",
                      QJsonObject{{"label", report.label}, {"firmware", report.firmware}});
    if (report.outcome == ReportOutcome::GbCartridge)
        addGb(report.gb, &object);
    else if (!checks.isEmpty())
        addGbaHeader(report.header, &object);
    else
        object.insert("error", report.error);
    if (report.outcome == ReportOutcome::GbaCartridge)
        addGbaGame(report.gba, &object);
    for (const HeaderCheck &check : checks)
        object.insert(QLatin1String(check.key), check.result);
    std::fputs(QJsonDocument(object).toJson().constData(), stdout);
}

} // namespace

bool runCliInfo(bool asJson, bool isQuick, bool isTerminal)
{
    const CartridgeReport report = detectCartridge([&](const QString &line) {
        if (!asJson)
            printLine(line);
    });
    std::fflush(stdout);
    const QVector<HeaderCheck> checks = checkHeader(report, isQuick, isTerminal);
    if (asJson)
        printJson(report, checks);
    else
        printText(report, checks);
    return !checks.isEmpty();
}
