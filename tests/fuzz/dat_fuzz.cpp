// Any bytes as a DAT file, for libFuzzer: what is accepted is sorted, can be found, printed and
// written down again, and takes no more memory than the file did; what is refused changes nothing.
#include "rule.h"
#include "trust/dat_file.h"
#include "trust/dat_tags.h"

#include <QTextCodec>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>

namespace
{

// Letters of all titles together, for each byte of the file. A ROM that counts takes 66 bytes, for
// which its title may have 255 letters that stand elsewhere.
constexpr int kMostGrowth = 5;

bool isSame(const DatEntry &a, const DatEntry &b)
{
    return a.title == b.title && a.size == b.size && a.sha1 == b.sha1;
}

bool isSame(const DatFile &a, const DatFile &b)
{
    return a.name == b.name && a.leftOut == b.leftOut &&
           std::equal(a.entries.begin(), a.entries.end(), b.entries.begin(), b.entries.end(),
                      [](const DatEntry &x, const DatEntry &y) { return isSame(x, y); });
}

bool isPrintable(const QString &text)
{
    return std::none_of(text.begin(), text.end(),
                        [](QChar letter) { return letter.category() == QChar::Other_Control; });
}

void checkEntries(const DatFile &dat, int size)
{
    require(isPrintable(dat.name), "a list's name has no control characters");
    qint64 letters = dat.name.size();
    for (const DatEntry &entry : dat.entries) {
        require(isPrintable(entry.title), "a title has no control characters");
        const DatEntry *found = findInDat(dat, entry.size, entry.sha1);
        require(found != nullptr && found <= &entry && found->size == entry.size &&
                    found->sha1 == entry.sha1,
                "every entry is found, or an earlier one that is equal");
        letters += entry.title.size();
    }
    require(std::is_sorted(dat.entries.begin(), dat.entries.end(),
                           [](const DatEntry &a, const DatEntry &b) { return a.sha1 < b.sha1; }),
            "the entries are sorted");
    require(letters <= qint64{kMostGrowth} * size, "the titles take no more than the file did");
}

// A DAT file with the same entries, each a game of its own.
QByteArray writtenDown(const DatFile &dat)
{
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.writeStartDocument();
    xml.writeStartElement("datafile");
    xml.writeStartElement("header");
    xml.writeTextElement("name", dat.name);
    xml.writeEndElement();
    for (const DatEntry &entry : dat.entries) {
        const QByteArray sha1(reinterpret_cast<const char *>(entry.sha1.data()),
                              static_cast<int>(entry.sha1.size()));
        xml.writeStartElement("game");
        xml.writeAttribute("name", entry.title);
        xml.writeEmptyElement("rom");
        xml.writeAttribute("size", QString::number(entry.size));
        xml.writeAttribute("sha1", QString::fromLatin1(sha1.toHex()));
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    return bytes;
}

void checkRoundTrip(const DatFile &dat)
{
    DatFile again;
    QString problem;
    DatFile expected = dat;
    expected.leftOut = 0;
    require(parseDat(writtenDown(dat), &again, &problem) && isSame(expected, again),
            "what was read can be written and read again");
}

// A byte order mark wins over what the file says of its encoding.
void checkOtherEncoding(const QByteArray &bytes, const DatFile &dat)
{
    if (bytes.contains("encoding"))
        return;
    const QString text = QString::fromUtf8(bytes);
    if (text.toUtf8() != bytes)
        return;
    const QString marked = QChar(QChar::ByteOrderMark) + text;
    const QByteArray wide(reinterpret_cast<const char *>(marked.utf16()),
                          static_cast<int>(sizeof(QChar)) * static_cast<int>(marked.size()));
    DatFile again;
    QString problem;
    require(parseDat(wide, &again, &problem) && isSame(dat, again),
            "a text means the same in another encoding");
}

// What the look at the tags is for: the parser meets nothing that would keep it busy for ever.
void checkTags(const QByteArray &bytes)
{
    const std::optional<QString> text = xmlText(bytes);
    if (!text || tagFaultOf(*text) != TagFault::None)
        return;
    QXmlStreamReader xml(*text);
    while (!xml.atEnd()) {
        xml.readNext();
        require(xml.attributes().size() <= kMostAttributes, "no element has too many attributes");
        require(xml.entityDeclarations().isEmpty(), "no file declares entities");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
    DatFile dat;
    dat.name = QStringLiteral("as before");
    dat.leftOut = -1;
    QString problem;
    checkTags(bytes);
    if (parseDat(bytes, &dat, &problem)) {
        require(problem.isEmpty(), "a file that is accepted has no problem");
        checkEntries(dat, bytes.size());
        checkRoundTrip(dat);
        checkOtherEncoding(bytes, dat);
        return 0;
    }
    require(!problem.isEmpty(), "a refusal has a reason");
    require(dat.name == QLatin1String("as before") && dat.leftOut == -1 && dat.entries.isEmpty(),
            "a refusal leaves the record alone");
    return 0;
}
