#include "trust/dat_tags.h"

#include <QTextCodec>
#include <QXmlStreamReader>

#include <array>

namespace
{

// A declaration is shorter.
constexpr int kDeclarationBytes = 1024;

struct Section {
    const char *begin;
    const char *end;
};

// What may hold anything, quotes and brackets too.
constexpr std::array<Section, 3> kOpaque = {{{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}}};

const QTextCodec *codecOf(const QByteArray &bytes)
{
    if (const QTextCodec *marked = QTextCodec::codecForUtfText(bytes, nullptr))
        return marked;
    QXmlStreamReader xml(bytes.left(kDeclarationBytes));
    xml.readNext();
    const QTextCodec *declared = QTextCodec::codecForName(xml.documentEncoding().toLatin1());
    return declared == nullptr ? QTextCodec::codecForName("UTF-8") : declared;
}

// Where the section that begins at `at` ends; `at` itself if none begins there.
int behindSection(const QString &xml, int at)
{
    for (const Section &section : kOpaque) {
        const QLatin1String begin(section.begin);
        if (!QStringView(xml).mid(at, begin.size()).startsWith(begin))
            continue;
        const int end = xml.indexOf(QLatin1String(section.end), at + begin.size());
        return end < 0 ? xml.size() : end;
    }
    return at;
}

// From "<" to the ">" that ends the tag; quotes hide both.
class Tag
{
public:
    Tag(const QString &xml, int at) : m_xml(xml), m_at(at) {}

    TagFault goToEnd()
    {
        const bool isDeclaration = m_at + 1 < m_xml.size() && m_xml[m_at + 1] == QLatin1Char('!');
        for (; m_at < m_xml.size() && m_xml[m_at] != QLatin1Char('>'); ++m_at) {
            const QChar letter = m_xml[m_at];
            m_attributes += letter == QLatin1Char('=') ? 1 : 0;
            if (m_attributes > kMostAttributes)
                return TagFault::Crowded;
            if (isDeclaration && letter == QLatin1Char('['))
                return TagFault::Declarations;
            if (letter == QLatin1Char('"') || letter == QLatin1Char('\''))
                m_at = behindQuote(letter);
        }
        return TagFault::None;
    }

    int end() const { return m_at; }

private:
    // The closing quote; the last byte if there is none.
    int behindQuote(QChar quote) const
    {
        const int found = m_xml.indexOf(quote, m_at + 1);
        return found < 0 ? m_xml.size() - 1 : found;
    }

    const QString &m_xml;
    int m_at;
    int m_attributes = 0;
};

} // namespace

std::optional<QString> xmlText(const QByteArray &bytes)
{
    QTextCodec::ConverterState state;
    QString text = codecOf(bytes)->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0)
        return std::nullopt;
    if (text.startsWith(QChar(QChar::ByteOrderMark)))
        text.remove(0, 1);
    return text;
}

TagFault tagFaultOf(const QString &xml)
{
    for (int at = xml.indexOf(QLatin1Char('<')); at >= 0; at = xml.indexOf(QLatin1Char('<'), at)) {
        const int behind = behindSection(xml, at);
        if (behind != at) {
            at = behind;
            continue;
        }
        Tag tag(xml, at);
        const TagFault fault = tag.goToEnd();
        if (fault != TagFault::None)
            return fault;
        at = tag.end();
    }
    return TagFault::None;
}
