#include "cli/cli_options.h"

#include "cli/command_table.h"
#include "cli/help_text.h"
#include "cli/option_reader.h"

#include <QCommandLineParser>

#include <algorithm>

namespace
{

constexpr int kLargestSize = 64 * 1024 * 1024;

// Teaches the parser every option of every command, so that it knows which words are values.
void addOptions(QCommandLineParser *parser)
{
    for (const OptionRow *row : optionsByName()) {
        QStringList names(QLatin1String(row->name));
        if (row->letter != 0)
            names.prepend(QString(QLatin1Char(row->letter)));
        parser->addOption({names, QString(), valueName(row->kind)});
    }
}

// Neither signs nor blanks, which a conversion would let pass.
bool isDigitsOnly(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar character) {
        return character >= QLatin1Char('0') && character <= QLatin1Char('9');
    });
}

CliOptions answer(CliRequest request, const QString &text)
{
    CliOptions options;
    options.request = request;
    options.text = text;
    return options;
}

// Every refusal says where to read on, and that nothing has happened. `command`: null if it is not
// known.
CliOptions refusal(const CommandRow *command, const QString &reason)
{
    const QString name =
        command == nullptr ? QString() : QLatin1String(command->name) + QLatin1Char(' ');
    return answer(CliRequest::Refuse,
                  reason + QStringLiteral("\nTry \"gbdriver-cli %1--help\". Nothing was read or "
                                          "written.\n")
                               .arg(name));
}

// The option that the parser calls `name`, as it was typed: of "-json" it only knows a "j".
QString typedOption(const QStringList &arguments, const QString &name)
{
    for (const QString &word : arguments) {
        const QString option = word.section(QLatin1Char('='), 0, 0);
        const bool isShort = name.size() == 1 && word.startsWith(QLatin1Char('-')) &&
                             !word.startsWith(QLatin1String("--"));
        if (isShort && option.contains(name))
            return option;
    }
    return QStringLiteral("--") + name;
}

QString retiredForce()
{
    QString text = QStringLiteral("There is no option --%1 any more: it dropped three checks at "
                                  "once. Give the one that is meant:")
                       .arg(QLatin1String(kRetiredForceOption));
    for (const OptionRow *row : kIgnoringOptions)
        text += QStringLiteral("\n  --%1: %2")
                    .arg(QLatin1String(row->name), QLatin1String(row->description));
    return text;
}

QString unknownOption(const CommandRow *command, const QString &typed)
{
    const QString subject = command == nullptr
                                ? QStringLiteral("There is")
                                : QLatin1String(command->name) + QStringLiteral(" has");
    QString word = typed;
    while (word.startsWith(QLatin1Char('-')))
        word.remove(0, 1);
    return QStringLiteral("%1 no option %2.%3")
        .arg(subject, typed,
             nearOption(word, command == nullptr ? allOptions() : command->options));
}

// `words`: empty, or the first is no command.
QString missingCommand(const QStringList &words)
{
    const QString all = commandNames().join(QStringLiteral(", "));
    if (words.isEmpty())
        return QStringLiteral("Missing command: one of %1.").arg(all);
    const QString near = nearWord(words[0], commandNames());
    if (near.isEmpty())
        return QStringLiteral("\"%1\" is no command. Use one of %2.").arg(words[0], all);
    return QStringLiteral("\"%1\" is no command. Did you mean %2?").arg(words[0], near);
}

} // namespace

bool parseSize(const QString &text, int *sizeBytes)
{
    qlonglong unit = 1;
    QString digits = text;
    if (digits.endsWith(QLatin1Char('K'), Qt::CaseInsensitive))
        unit = 1024;
    else if (digits.endsWith(QLatin1Char('M'), Qt::CaseInsensitive))
        unit = 1024 * 1024;
    if (unit != 1)
        digits.chop(1);
    bool isNumber = false;
    const qlonglong number = digits.toLongLong(&isNumber);
    if (!isNumber || !isDigitsOnly(digits) || number < 1 || number > kLargestSize / unit)
        return false;
    *sizeBytes = static_cast<int>(number * unit);
    return true;
}

CliOptions parseCliOptions(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(&parser);
    const bool isParsed = parser.parse(arguments);
    const QStringList words = parser.positionalArguments();
    const CommandRow *command = words.isEmpty() ? nullptr : findCommand(words[0]);
    if (!words.isEmpty() && command == nullptr)
        return refusal(nullptr, missingCommand(words));
    const QStringList unknown = parser.unknownOptionNames();
    if (unknown.contains(QLatin1String(kRetiredForceOption)))
        return refusal(command, retiredForce());
    if (!unknown.isEmpty())
        return refusal(command, unknownOption(command, typedOption(arguments, unknown[0])));
    if (!isParsed)
        return refusal(command, parser.errorText());
    if (parser.isSet(QLatin1String(kHelpOption.name)))
        return answer(CliRequest::ShowText,
                      command == nullptr ? overviewHelp() : commandHelp(*command));
    if (parser.isSet(QLatin1String(kVersionOption.name)))
        return answer(CliRequest::ShowText, QStringLiteral("gbdriver-cli " GBDRIVER_VERSION "\n"));
    if (command == nullptr)
        return refusal(nullptr, missingCommand(words));

    CliOptions options;
    QString problem;
    if (!readOptions(parser, *command, &options, &problem))
        return refusal(command, problem);
    return options;
}
