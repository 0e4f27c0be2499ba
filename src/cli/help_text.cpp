#include "cli/help_text.h"

#include "cli/command_table.h"

#include <algorithm>

namespace
{

constexpr int kIndent = 2;
constexpr int kExampleIndent = 6;

QString blanks(int count)
{
    return QString(count, QLatin1Char(' '));
}

// `text` in lines that all begin with `indent` blanks.
QString paragraph(const QString &text, int indent)
{
    QString result;
    QString line;
    for (const QString &word : text.split(QLatin1Char(' '))) {
        if (!line.isEmpty() && indent + line.size() + 1 + word.size() > kHelpColumns) {
            result += blanks(indent) + line + QLatin1Char('\n');
            line.clear();
        }
        line += line.isEmpty() ? word : QLatin1Char(' ') + word;
    }
    return result + blanks(indent) + line + QLatin1Char('\n');
}

// A name at the left, its text in the column that begins at `column`.
QString entry(const QString &name, const QString &text, int column)
{
    QString lines = paragraph(text, column);
    return lines.replace(0, kIndent + name.size(), blanks(kIndent) + name);
}

// Where the text of entries with these names begins.
int textColumn(const QStringList &names)
{
    int longest = 0;
    for (const QString &name : names)
        longest = std::max(longest, static_cast<int>(name.size()));
    return kIndent + longest + kIndent;
}

QString optionEntries(const std::vector<const OptionRow *> &options)
{
    QStringList names;
    for (const OptionRow *option : options)
        names << optionUsage(*option);
    const int column = textColumn(names);
    QString lines;
    for (const OptionRow *option : options)
        lines += entry(optionUsage(*option), optionText(*option), column);
    return lines;
}

QString commandEntries()
{
    QStringList names;
    for (const CommandRow &row : commandTable())
        names << commandUsage(row);
    const int column = textColumn(names);
    QString lines;
    for (const CommandRow &row : commandTable())
        lines += entry(commandUsage(row), QLatin1String(row.summary), column);
    return lines;
}

QString exitCodeEntry(const ExitCodeRow &row)
{
    constexpr int kNumberWidth = 2;
    return entry(QStringLiteral("%1").arg(static_cast<int>(row.code), kNumberWidth),
                 QLatin1String(row.meaning), kIndent + kNumberWidth + kIndent);
}

QString exampleEntry(const CommandExample &example)
{
    return blanks(kIndent) + QLatin1String(kCliProgram) + QLatin1Char(' ') +
           QLatin1String(example.words) + QLatin1Char('\n') +
           paragraph(QLatin1String(example.meaning), kExampleIndent);
}

QString heading(const char *text)
{
    return QLatin1Char('\n') + QLatin1String(text) + QStringLiteral(":\n");
}

QString usageLine(const QString &words)
{
    return QStringLiteral("Usage: ") + QLatin1String(kCliProgram) + QLatin1Char(' ') + words +
           QStringLiteral(" [options]\n");
}

} // namespace

QString overviewHelp()
{
    QString text = usageLine(QStringLiteral("COMMAND [FILE]"));
    text += QLatin1Char('\n') + paragraph(QLatin1String(kCliPurpose), 0);
    text += heading("Commands") + commandEntries();
    text += heading("Options") +
            optionEntries({&kHelpOption, &kVersionOption, &kJsonOption, &kQuietOption});
    text += QLatin1Char('\n') +
            paragraph(QStringLiteral("\"gbdriver-cli COMMAND --help\" shows all options of a "
                                     "command, with examples. A FILE whose name begins with a "
                                     "dash goes behind \"--\"."),
                      0);
    text += heading("Exit codes");
    for (const ExitCodeRow &row : kExitCodes)
        text += exitCodeEntry(row);
    return text;
}

QString commandHelp(const CommandRow &command)
{
    QString text = usageLine(commandUsage(command));
    text += QLatin1Char('\n') + paragraph(QLatin1String(command.summary), 0);
    for (const char *words : command.description)
        text += QLatin1Char('\n') + paragraph(QLatin1String(words), 0);
    const QStringList choices = argumentChoices(command.argument);
    if (command.argument == ArgumentKind::Shell)
        text +=
            QLatin1Char('\n') +
            paragraph(QStringLiteral("SHELL is one of %1.").arg(choices.join(QStringLiteral(", "))),
                      0);
    text += heading("Options") + optionEntries(command.options);
    text += heading("Examples");
    for (const CommandExample &example : command.examples)
        text += exampleEntry(example);
    text += heading("Exit codes");
    for (const ExitCode code : command.exitCodes)
        text += exitCodeEntry(rowOf(code));
    return text;
}
