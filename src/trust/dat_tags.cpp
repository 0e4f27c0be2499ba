#include "trust/dat_tags.h"

#include <QTextCodec>

#include <array>

namespace
{

struct Section {
    const char *begin;
    const char *end;
};

// What may hold anything, quotes and brackets too.
constexpr std::array<Section, 3> kOpaque = {{{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}}};

QByteArray asUtf8(const QByteArray &xml)
{
    const QTextCodec *codec = QTextCodec::codecForUtfText(xml, nullptr);
    return codec == nullptr ? xml : codec->toUnicode(xml).toUtf8();
}

// Where the section that begins at `at` ends; `at` itself if none begins there.
int behindSection(const QByteArray &xml, int at)
{
    for (const Section &section : kOpaque) {
        const auto length = static_cast<int>(qstrlen(section.begin));
        if (qstrncmp(xml.constData() + at, section.begin, qstrlen(section.begin)) != 0)
            continue;
        const int end = xml.indexOf(section.end, at + length);
        return end < 0 ? xml.size() : end;
    }
    return at;
}

// From "<" to the ">" that ends the tag; quotes hide both.
class Tag
{
public:
    Tag(const QByteArray &xml, int at) : m_xml(xml), m_at(at) {}

    TagFault goToEnd()
    {
        const bool isDeclaration = m_at + 1 < m_xml.size() && m_xml[m_at + 1] == '!';
        for (; m_at < m_xml.size() && m_xml[m_at] != '>'; ++m_at) {
            const char letter = m_xml[m_at];
            m_attributes += letter == '=' ? 1 : 0;
            if (m_attributes > kMostAttributes)
                return TagFault::Crowded;
            if (isDeclaration && letter == '[')
                return TagFault::Declarations;
            if (letter == '"' || letter == '\'')
                m_at = behindQuote(letter);
        }
        return TagFault::None;
    }

    int end() const { return m_at; }

private:
    // The closing quote; the last byte if there is none.
    int behindQuote(char quote) const
    {
        const int found = m_xml.indexOf(quote, m_at + 1);
        return found < 0 ? m_xml.size() - 1 : found;
    }

    const QByteArray &m_xml;
    int m_at;
    int m_attributes = 0;
};

} // namespace

TagFault tagFaultOf(const QByteArray &xml)
{
    const QByteArray text = asUtf8(xml);
    for (int at = text.indexOf('<'); at >= 0; at = text.indexOf('<', at)) {
        const int behind = behindSection(text, at);
        if (behind != at) {
            at = behind;
            continue;
        }
        Tag tag(text, at);
        const TagFault fault = tag.goToEnd();
        if (fault != TagFault::None)
            return fault;
        at = tag.end();
    }
    return TagFault::None;
}
