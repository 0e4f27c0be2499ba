#include "cli/manual.h"

#include "cli/command_table.h"
#include "virtual/backend_choice.h"

using namespace virtual_reader;

namespace
{

// `text` as roff prints it: a dash that can be searched for and copied, nothing that is taken for a
// request at the beginning of a line.
QString roff(QString text)
{
    text.replace(QLatin1Char('\\'), QStringLiteral("\\e"));
    text.replace(QLatin1Char('-'), QStringLiteral("\\-"));
    text.replace(QLatin1Char('\''), QStringLiteral("\\(aq"));
    text.replace(QLatin1Char('~'), QStringLiteral("\\(ti"));
    if (text.startsWith(QLatin1Char('.')))
        text.prepend(QStringLiteral("\\&"));
    return text;
}

QString bold(const QString &text)
{
    return QStringLiteral("\\fB%1\\fR").arg(roff(text));
}

QString italic(const QString &text)
{
    return QStringLiteral("\\fI%1\\fR").arg(roff(text));
}

QString line(const QString &text)
{
    return text + QLatin1Char('\n');
}

QString section(const char *title)
{
    return line(QStringLiteral(".SH ") + QLatin1String(title));
}

// A text below a term.
QString tagged(const QString &term, const QString &text)
{
    return line(QStringLiteral(".TP")) + line(term) + line(roff(text));
}

// The first word bold, the others, which stand for values, in italics.
QString boldFirst(const QString &words)
{
    const int blank = words.indexOf(QLatin1Char(' '));
    return blank < 0 ? bold(words)
                     : bold(words.left(blank)) + QLatin1Char(' ') + italic(words.mid(blank + 1));
}

QString optionTerm(const OptionRow &option)
{
    QString term = boldFirst(QStringLiteral("--") + QLatin1String(option.name) + QLatin1Char(' ') +
                             valueName(option.kind));
    if (option.kind == ValueKind::None)
        term = bold(QStringLiteral("--") + QLatin1String(option.name));
    if (option.letter != 0)
        term.prepend(bold(QStringLiteral("-") + QLatin1Char(option.letter)) + QStringLiteral(", "));
    return term;
}

QStringList commandsWith(const OptionRow &option)
{
    QStringList names;
    for (const CommandRow &row : commandTable()) {
        if (findOption(row, QLatin1String(option.name)) == &option)
            names << QLatin1String(row.name);
    }
    return names;
}

// --help and --version belong to no command above others.
bool isForEverything(const OptionRow &option)
{
    return option.letter != 0;
}

QString synopsis()
{
    QString text = section("SYNOPSIS");
    for (const CommandRow &row : commandTable()) {
        if (&row != &commandTable().front())
            text += line(QStringLiteral(".br"));
        text += line(bold(QLatin1String(kCliProgram)) + QLatin1Char(' ') +
                     boldFirst(commandUsage(row)) + QStringLiteral(" [") +
                     italic(QStringLiteral("options")) + QLatin1Char(']'));
    }
    return text;
}

QString commands()
{
    QString text = section("COMMANDS");
    for (const CommandRow &row : commandTable()) {
        text += tagged(boldFirst(commandUsage(row)), QLatin1String(row.summary));
        for (const char *words : row.description)
            text += line(QStringLiteral(".IP")) + line(roff(QLatin1String(words)));
    }
    return text;
}

QString options()
{
    QString text = section("OPTIONS");
    text += line(roff(QStringLiteral(
        "An option may stand before or behind the command; of one that is given twice the last "
        "counts, unless it may be given several times. A FILE whose name begins with a dash goes "
        "behind \"--\".")));
    for (const OptionRow *option : allOptions()) {
        text += tagged(optionTerm(*option), optionText(*option));
        if (!isForEverything(*option))
            text += line(roff(QStringLiteral("Commands: %1.")
                                  .arg(commandsWith(*option).join(QStringLiteral(", ")))));
    }
    return text;
}

QString exitStatus()
{
    QString text = section("EXIT STATUS");
    for (const ExitCodeRow &row : kExitCodes)
        text +=
            tagged(bold(QString::number(static_cast<int>(row.code))), QLatin1String(row.meaning));
    return text;
}

QString environment()
{
    return section("ENVIRONMENT") +
           tagged(bold(QStringLiteral("GBDRIVER_DRIVES")),
                  QStringLiteral("Linux: folders to take for the reader's drive, for example "
                                 "\"E=/mnt/reader:LABEL\"; several are separated by \";\". No "
                                 "other drive is looked at.")) +
           tagged(bold(QLatin1String(kVirtualReaderVariable)),
                  QStringLiteral("Use a virtual reader inside the program: \"demo\", or "
                                 "\"cart=FILE,save=FILE\".")) +
           tagged(bold(QStringLiteral("NO_COLOR")),
                  QStringLiteral("If it is set to anything, nothing is coloured."));
}

QString files()
{
    return section("FILES") +
           tagged(italic(QStringLiteral("~/.local/share/gbdriver/backups")),
                  QStringLiteral("What was in cartridges before it was replaced, unless --backup "
                                 "names another folder. The user's data folder is that of "
                                 "XDG_DATA_HOME if it is set."));
}

QString examples()
{
    QString text = section("EXAMPLES");
    for (const CommandRow &row : commandTable()) {
        for (const CommandExample &example : row.examples)
            text += tagged(
                bold(QLatin1String(kCliProgram) + QLatin1Char(' ') + QLatin1String(example.words)),
                QLatin1String(example.meaning));
    }
    return text;
}

} // namespace

QString manualPage()
{
    const QString name = roff(QLatin1String(kCliProgram));
    return line(QStringLiteral(".TH GBDRIVER\\-CLI 1 \"\" \"gbdriver " GBDRIVER_VERSION "\"")) +
           section("NAME") +
           line(name + QStringLiteral(" \\- reads and writes Game Boy cartridges")) + synopsis() +
           section("DESCRIPTION") + line(roff(QLatin1String(kCliPurpose))) +
           line(roff(QStringLiteral(
               "The answer of a command goes to standard output; what happens meanwhile and what "
               "went wrong go to standard error."))) +
           commands() + options() + exitStatus() + environment() + files() + examples() +
           section("SEE ALSO") + line(QStringLiteral(".BR gbdriver (1),")) +
           line(QStringLiteral(".BR gbdriver\\-virtual\\-reader (1)"));
}
