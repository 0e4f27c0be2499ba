#include "worker/shown_text.h"

namespace
{

// Embedding, override and isolate of the Unicode bidirectional algorithm (UAX #9), and its marks.
bool changesDirection(char16_t letter)
{
    return (letter >= 0x202A && letter <= 0x202E) || (letter >= 0x2066 && letter <= 0x2069) ||
           letter == 0x200E || letter == 0x200F || letter == 0x061C;
}

// C0 and C1. Line and paragraph separator end a line where nobody expects it.
bool isControl(char16_t letter)
{
    return letter < 0x20 || (letter >= 0x7F && letter < 0xA0) || letter == 0x2028 ||
           letter == 0x2029;
}

QString escapeOf(char16_t letter)
{
    const QString digits = QString::number(letter, 16).toUpper();
    return letter < 0x100 ? QStringLiteral("\\x") + digits.rightJustified(2, QLatin1Char('0'))
                          : QStringLiteral("\\u") + digits.rightJustified(4, QLatin1Char('0'));
}

bool isHalfPair(const QString &text, int at)
{
    const QChar letter = text[at];
    if (letter.isHighSurrogate())
        return at + 1 == text.size() || !text[at + 1].isLowSurrogate();
    return letter.isLowSurrogate() && (at == 0 || !text[at - 1].isHighSurrogate());
}

// What is shown instead of the character at `at`; ends of lines and tabs only if they are allowed.
QString shownAt(const QString &text, int at, bool hasLines)
{
    const QChar letter = text[at];
    const bool isReturn = letter == QLatin1Char('\r');
    if (hasLines && isReturn)
        return QStringView(text).mid(at + 1).startsWith(QLatin1Char('\n')) ? letter : QChar(u'\n');
    if (hasLines && (letter == QLatin1Char('\n') || letter == QLatin1Char('\t')))
        return letter;
    if (isControl(letter.unicode()) || changesDirection(letter.unicode()))
        return escapeOf(letter.unicode());
    return isHalfPair(text, at) ? QChar(QChar::ReplacementCharacter) : letter;
}

QString shown(const QString &foreign, bool hasLines)
{
    QString result;
    result.reserve(foreign.size());
    for (int at = 0; at < foreign.size(); ++at)
        result += shownAt(foreign, at, hasLines);
    return result;
}

} // namespace

QString shownText(const QString &foreign)
{
    return shown(foreign, true);
}

QString shownValue(const QString &foreign)
{
    return shown(foreign, false);
}
