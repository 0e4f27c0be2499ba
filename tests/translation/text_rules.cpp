#include "text_rules.h"

#include "word_rules.h"

#include <QHash>
#include <QRegularExpression>

namespace
{

// Chinese characters, kana and the sign of a long vowel.
#define IDEOGRAPH u8"[\u3005\u3041-\u3096\u30A1-\u30FA\u30FC\u3400-\u9FFF]"
#define FULL_WIDTH_MARK                                                                            \
    u8"[\uFF0C\u3002\uFF1A\uFF1B\uFF1F\uFF01\uFF08\uFF09\u201C\u201D\u3001\u300C\u300D]"

QRegularExpression pattern(const char *text)
{
    return QRegularExpression(QString::fromUtf8(text));
}

QStringList matchesOf(const QRegularExpression &pattern, const QString &text)
{
    QStringList found;
    for (auto all = pattern.globalMatch(text); all.hasNext();)
        found << all.next().captured();
    return found;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

QString leadingBlanks(const QString &text)
{
    static const QRegularExpression blanks("^[ \\r\\n]*");
    return blanks.match(text).captured();
}

QString trailingBlanks(const QString &text)
{
    static const QRegularExpression blanks("[ \\r\\n]*$");
    return blanks.match(text).captured();
}

bool isSelfMapped(const QString &source)
{
    static const QStringList texts{"/mapper/", "gba.nut", "KB",
                                   "B",        "\r\n",    "Velora Cartridge Driver/Dumper"};
    return texts.contains(source) || source.contains("Copyright (c)");
}

QStringList placeholderFaults(const QString &source, const QString &translation)
{
    static const QRegularExpression placeholder("%[1-9n]");
    static const QRegularExpression crowded("%[1-9n]\\d");
    QStringList faults;
    if (sorted(matchesOf(placeholder, source)) != sorted(matchesOf(placeholder, translation)))
        faults << "other placeholders";
    if (crowded.match(translation).hasMatch())
        faults << "a digit right behind a placeholder";
    return faults;
}

QStringList markupFaults(const QString &source, const QString &translation)
{
    static const QRegularExpression element("<span[^>]*>[^<]*</span>");
    QString rest = translation;
    QStringList faults;
    for (const QString &markup : matchesOf(element, source)) {
        if (!rest.contains(markup))
            faults << "other markup";
        rest.remove(markup);
    }
    if (rest.contains('<'))
        faults << "a < that the log takes for markup";
    static const QRegularExpression accelerator("\\(&[A-Z]\\)");
    if (source.contains('&')) {
        if (!accelerator.match(rest).hasMatch())
            faults << "no accelerator in brackets";
    } else if (rest.contains('&')) {
        faults << "an & that the English has not";
    }
    return faults;
}

QStringList colonFaults(const QString &source, const QString &translation, Language language)
{
    const QString body = source.trimmed();
    if (!body.endsWith(':'))
        return {};
    if (language == Language::Chinese)
        return translation.endsWith(QChar(0xFF1A)) ? QStringList()
                                                   : QStringList("no full-width colon at the end");
    const bool hasBlank = source.endsWith(": ");
    const bool mayHaveBlank = hasBlank || source.endsWith(" :"); // a value follows at once
    const bool isRight =
        translation.endsWith(": ") ? mayHaveBlank : translation.endsWith(':') && !hasBlank;
    return isRight ? QStringList() : QStringList("no colon like the English one at the end");
}

// Leading and trailing blanks, ends of lines, and the blanks that lines begin with.
QStringList blankFaults(const QString &source, const QString &translation)
{
    QStringList faults;
    if (leadingBlanks(source) != leadingBlanks(translation))
        faults << "other blanks at the beginning";
    if (!source.trimmed().endsWith(':') && trailingBlanks(source) != trailingBlanks(translation))
        faults << "other blanks at the end";
    const QStringList lines = source.split('\n');
    const QStringList translated = translation.split('\n');
    if (lines.size() != translated.size())
        return faults << "other line breaks";
    for (int i = 0; i < lines.size(); ++i) {
        if (leadingBlanks(lines[i]) != leadingBlanks(translated[i]))
            return faults << "a line begins with other blanks";
    }
    return faults;
}

// True if both texts match or neither does.
bool isSame(const QRegularExpression &shape, const QString &source, const QString &translation)
{
    return shape.match(source).hasMatch() == shape.match(translation).hasMatch();
}

QStringList shapeFaults(const QString &source, const QString &translation)
{
    static const QRegularExpression prefix("^>(?! )");
    static const QRegularExpression heading("^--[^-].*[^-]--$");
    static const QRegularExpression number("^ \\d\\.");
    static const QRegularExpression filter(" \\(\\*\\.[^)]*\\)$| \\(\\*\\)$");
    static const QRegularExpression dots("(?<!\\.)\\.\\.\\.[ \\n]*$");
    static const QRegularExpression ellipsis = pattern(u8"(?<!\u2026)\u2026$");
    static const QRegularExpression otherDots =
        pattern(u8"\u2026\u2026|\u3002\u3002|\u30FB\u30FB|\\.{4}");
    QStringList faults;
    if (!isSame(prefix, source, translation))
        faults << "another > at the beginning";
    if (!isSame(heading, source, translation))
        faults << "not -- on both sides as in the English";
    if (number.match(source).captured() != number.match(translation).captured())
        faults << "another number at the beginning";
    if (filter.match(source).captured() != filter.match(translation).captured())
        faults << "another file filter at the end";
    if (!isSame(dots, source, translation) || !isSame(ellipsis, source, translation) ||
        otherDots.match(translation).hasMatch())
        faults << "other dots";
    return faults;
}

QStringList numberFaults(const QString &source, const QString &translation)
{
    static const QRegularExpression number("(?<!%)\\d+(\\.\\d+)?");
    QStringList there = matchesOf(number, translation);
    for (const QString &wanted : matchesOf(number, source)) {
        if (!there.removeOne(wanted))
            return {"the number " + wanted + " is missing"};
    }
    return {};
}

struct MarkRule {
    QRegularExpression pattern;
    const char *fault;
};

const QVector<MarkRule> &marksOfBoth()
{
    static const QVector<MarkRule> rules{
        {pattern(u8"[\uFF10-\uFF19\uFF21-\uFF3A\uFF41-\uFF5A\uFF1C\uFF1E]"),
         "a full-width letter, digit, < or >"},
        {pattern(u8"[\uFF61-\uFF9F]"), "half-width kana"},
        {pattern(IDEOGRAPH "[A-Za-z0-9]|[A-Za-z0-9]" IDEOGRAPH),
         "no blank between Latin letters or digits and the language's own"},
        {pattern(" " FULL_WIDTH_MARK "|" FULL_WIDTH_MARK " "), "a blank beside a full-width mark"},
        {pattern(IDEOGRAPH "[,;]"), "a half-width comma or semicolon"},
        {pattern(IDEOGRAPH "\\.(?!\\.\\.)"), "a half-width full stop"},
        {pattern("  "), "two blanks"}};
    return rules;
}

const QVector<MarkRule> &marksOf(Language language)
{
    static const QVector<MarkRule> chinese{
        {pattern(IDEOGRAPH "[:?!]"), "a half-width colon, question or exclamation mark"},
        {pattern("\\([^()]*" IDEOGRAPH "[^()]*\\)"), "half-width brackets around Chinese"},
        {pattern(u8"\uFF08[A-Za-z0-9 .,/*-]*\uFF09"), "full-width brackets around Latin letters"},
        {pattern(u8"[\u300C\u300D]"), "Japanese quotation marks"}};
    static const QVector<MarkRule> japanese{
        {pattern(u8"[\uFF1A\uFF1B\uFF1F\uFF01\uFF08\uFF09\uFF0C]"),
         "a full-width colon, semicolon, comma, bracket, question or exclamation mark"},
        {pattern(u8"\u30FB"), "a middle dot"},
        {pattern(u8"[\u201C\u201D]"), "Chinese quotation marks"}};
    return language == Language::Chinese ? chinese : japanese;
}

// Of each line without the blanks around it.
QStringList markFaults(const QString &translation, Language language)
{
    QString text;
    for (const QString &line : translation.split('\n'))
        text += line.trimmed() + '\n';
    QStringList faults;
    for (const MarkRule &rule : marksOfBoth() + marksOf(language)) {
        if (rule.pattern.match(text).hasMatch())
            faults << rule.fault;
    }
    return faults;
}

// The texts of a filter that differ in "Rom" and "ROM", and one bank and several, are alike in both
// languages.
bool mayBeAlike(QString a, QString b)
{
    static const QRegularExpression plural("\\b(bank|block)s\\b");
    return a.replace(plural, "\\1").compare(b.replace(plural, "\\1"), Qt::CaseInsensitive) == 0;
}

QString inQuotes(const QString &text, Language language)
{
    return language == Language::Chinese ? QChar(0x201C) + text + QChar(0x201D)
                                         : QChar(0x300C) + text + QChar(0x300D);
}

} // namespace

QStringList faultsOf(const TsEntry &entry, Language language)
{
    if (!entry.type.isEmpty())
        return {entry.type};
    if (entry.translation.isEmpty())
        return {"empty"};
    if (isSelfMapped(entry.source))
        return entry.source == entry.translation ? QStringList()
                                                 : QStringList("not the same as the English");
    const QString &source = entry.source;
    const QString &translation = entry.translation;
    return placeholderFaults(source, translation) + markupFaults(source, translation) +
           colonFaults(source, translation, language) + blankFaults(source, translation) +
           shapeFaults(source, translation) + numberFaults(source, translation) +
           markFaults(translation, language) + wordFaults(source, translation, language);
}

QStringList faultsAmong(const QVector<TsEntry> &entries, Language language)
{
    static const QRegularExpression quoted("\"([^\"]+)\"");
    QStringList faults;
    QHash<QString, QString> translations;
    QHash<QString, QString> sources;
    for (const TsEntry &entry : entries) {
        if (entry.translation.isEmpty())
            continue; // a fault of its own
        const QString &known = translations[entry.source];
        if (!known.isEmpty() && known != entry.translation)
            faults << keyOf(entry) + ": translated differently elsewhere";
        translations[entry.source] = entry.translation;
        QString &other = sources[entry.context + '\n' + entry.translation];
        if (!other.isEmpty() && !mayBeAlike(other, entry.source))
            faults << keyOf(entry) + ": translated like " + other;
        other = entry.source;
    }
    for (const TsEntry &entry : entries) {
        for (auto all = quoted.globalMatch(entry.source); all.hasNext();) {
            const QString name = translations.value(all.next().captured(1));
            if (!name.isEmpty() && !entry.translation.contains(inQuotes(name, language)))
                faults << keyOf(entry) + ": does not name " + inQuotes(name, language);
        }
    }
    return faults;
}
