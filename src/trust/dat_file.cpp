#include "trust/dat_file.h"

#include "trust/dat_tags.h"

#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

#include <algorithm>
#include <optional>

namespace
{

// A DAT file needs five levels. Many more would only fill the memory.
constexpr int kDeepestElement = 64;

// In letters; no catalogue comes near it. The name of a game stands in the title of each of its
// ROMs, so that a long one would be in the memory many times.
constexpr int kLongestName = 255;

const QLatin1String kNoDat("not a DAT file in its XML form: ");

// One <rom>, with no entry if it tells nothing that a dump can be compared with.
struct DatRom {
    QString name;
    std::optional<DatEntry> entry;
};

// Names are printed, and XML lets characters through that some terminals take as commands.
QString withoutControls(QString text)
{
    const auto isControl = [](QChar letter) { return letter.category() == QChar::Other_Control; };
    std::replace_if(text.begin(), text.end(), isControl, QLatin1Char(' '));
    return text;
}

// The beginning of a name, in whole letters.
QString shortened(const QString &name)
{
    const bool cutsLetter = name.size() > kLongestName && name[kLongestName].isLowSurrogate();
    return name.left(cutsLetter ? kLongestName - 1 : kLongestName);
}

QString nameOf(const QXmlStreamReader &xml)
{
    const QString name = xml.attributes().value(QLatin1String("name")).toString();
    return withoutControls(shortened(name));
}

std::optional<Sha1Digest> digestFromHex(const QString &text)
{
    const QByteArray bytes = QByteArray::fromHex(text.toLatin1());
    // Passes over what is no digit, so both lengths have to be right.
    Sha1Digest digest;
    if (text.size() != 2 * static_cast<int>(digest.size()) ||
        bytes.size() != static_cast<int>(digest.size()))
        return std::nullopt;
    std::copy(bytes.begin(), bytes.end(), digest.begin());
    return digest;
}

std::optional<DatEntry> entryOf(const QXmlStreamAttributes &attributes)
{
    const auto valueOf = [&attributes](const char *name) {
        return attributes.value(QLatin1String(name)).toString();
    };
    const QString status = valueOf("status").toLower();
    if (status == QLatin1String("baddump") || status == QLatin1String("nodump"))
        return std::nullopt;
    bool isNumber = false;
    const quint64 size = valueOf("size").toULongLong(&isNumber);
    const std::optional<Sha1Digest> sha1 = digestFromHex(valueOf("sha1"));
    if (!isNumber || !sha1)
        return std::nullopt;
    return DatEntry{QString(), size, *sha1};
}

// Reads to the end of the current element, whatever is in it.
void skipElement(QXmlStreamReader *xml)
{
    int depth = 1;
    while (depth > 0 && !xml->hasError()) {
        const QXmlStreamReader::TokenType token = xml->readNext();
        if (token == QXmlStreamReader::StartElement && ++depth > kDeepestElement)
            xml->raiseError(QStringLiteral("too many elements inside each other"));
        else if (token == QXmlStreamReader::EndElement)
            --depth;
    }
}

QString titleOf(const QString &game, const DatRom &rom, bool isOnlyOne)
{
    if (game.isEmpty())
        return rom.name;
    return isOnlyOne ? game : QStringLiteral("%1: %2").arg(game, rom.name);
}

void addGame(const QString &game, const QVector<DatRom> &roms, DatFile *dat)
{
    for (const DatRom &rom : roms) {
        if (!rom.entry) {
            ++dat->leftOut;
            continue;
        }
        dat->entries.append(*rom.entry);
        dat->entries.last().title = shortened(titleOf(game, rom, roms.size() == 1));
    }
}

void readGame(QXmlStreamReader *xml, DatFile *dat)
{
    const QString game = nameOf(*xml);
    QVector<DatRom> roms;
    while (xml->readNextStartElement()) {
        if (xml->name() == QLatin1String("rom"))
            roms.append({nameOf(*xml), entryOf(xml->attributes())});
        skipElement(xml);
    }
    addGame(game, roms, dat);
}

void readHeader(QXmlStreamReader *xml, DatFile *dat)
{
    while (xml->readNextStartElement()) {
        if (xml->name() == QLatin1String("name"))
            dat->name = withoutControls(shortened(xml->readElementText()));
        else
            skipElement(xml);
    }
}

void readElement(QXmlStreamReader *xml, DatFile *dat)
{
    const auto name = xml->name();
    if (name == QLatin1String("header"))
        readHeader(xml, dat);
    else if (name == QLatin1String("game") || name == QLatin1String("machine"))
        readGame(xml, dat);
    else
        skipElement(xml);
}

// Goes to the root element.
void readProlog(QXmlStreamReader *xml)
{
    while (!xml->hasError() && !xml->isStartElement())
        xml->readNext();
    if (xml->isStartElement() && xml->name() != QLatin1String("datafile"))
        xml->raiseError(
            QStringLiteral("the root element is <%1>, not <datafile>").arg(xml->name().toString()));
}

void readDocument(QXmlStreamReader *xml, DatFile *dat)
{
    readProlog(xml);
    while (xml->readNextStartElement())
        readElement(xml, dat);
    // Nothing may stand behind the root element.
    while (!xml->atEnd())
        xml->readNext();
}

bool isBefore(const DatEntry &a, const DatEntry &b)
{
    return a.sha1 < b.sha1;
}

bool refuse(QString *problem, const QString &reason)
{
    *problem = reason;
    return false;
}

QString reasonOf(TagFault fault)
{
    return kNoDat +
           (fault == TagFault::Crowded
                ? QStringLiteral("an element has more than %1 attributes").arg(kMostAttributes)
                : QStringLiteral("the file declares a document type of its own"));
}

} // namespace

bool parseDat(const QByteArray &bytes, DatFile *dat, QString *problem)
{
    const std::optional<QString> text = xmlText(bytes);
    if (!text)
        return refuse(problem, kNoDat + QStringLiteral("its bytes are no text in its encoding"));
    const TagFault fault = tagFaultOf(*text);
    if (fault != TagFault::None)
        return refuse(problem, reasonOf(fault));
    QXmlStreamReader xml(*text);
    DatFile read;
    readDocument(&xml, &read);
    if (xml.hasError())
        return refuse(problem,
                      QStringLiteral("line %1: %2%3")
                          .arg(QString::number(xml.lineNumber()), kNoDat, xml.errorString()));
    std::stable_sort(read.entries.begin(), read.entries.end(), isBefore);
    *dat = read;
    return true;
}

bool readDatFile(const QString &path, DatFile *dat, QString *problem)
{
    const auto refuseFile = [&](const QString &reason) {
        return refuse(problem, QStringLiteral("%1: %2").arg(path, reason));
    };
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return refuseFile(QStringLiteral("it is no ordinary file"));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return refuseFile(file.errorString());
    if (file.size() > kLargestDatBytes)
        return refuseFile(QStringLiteral("larger than %1 MiB, this is no DAT file")
                              .arg(kLargestDatBytes / 1024 / 1024));
    QString reason;
    if (!parseDat(file.readAll(), dat, &reason))
        return refuseFile(reason);
    if (dat->name.isEmpty())
        dat->name = info.fileName();
    return true;
}

const DatEntry *findInDat(const DatFile &dat, quint64 size, const Sha1Digest &sha1)
{
    const DatEntry key{QString(), size, sha1};
    const auto range = std::equal_range(dat.entries.begin(), dat.entries.end(), key, isBefore);
    const auto entry = std::find_if(range.first, range.second,
                                    [size](const DatEntry &row) { return row.size == size; });
    return entry == range.second ? nullptr : &*entry;
}
