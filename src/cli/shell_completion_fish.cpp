#include "cli/command_table.h"
#include "cli/shell_completion.h"

namespace
{

// The command of the line is its first word that is neither an option nor an option's value.
const char kBeginning[] = R"(# Completion of gbdriver-cli for fish.
function __gbdriver_cli_command
    set -l waits no
    for word in (commandline -opc)[2..-1]
        if test $waits = yes
            set waits no
        else if contains -- $word @VALUED@
            set waits yes
        else if not string match -q -- '-*' $word
            echo $word
            return
        end
    end
end

function __gbdriver_cli_is
    contains -- (__gbdriver_cli_command) $argv
end

function __gbdriver_cli_needs_command
    test -z (__gbdriver_cli_command)
end

complete -c gbdriver-cli -f
)";

const QString kNeedsCommand = QStringLiteral("__gbdriver_cli_needs_command");

QString quoted(QString text)
{
    text.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    text.replace(QLatin1Char('\''), QStringLiteral("\\'"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

QString rule(const QString &condition, const QString &rest)
{
    return QStringLiteral("complete -c gbdriver-cli -n %1 %2\n").arg(quoted(condition), rest);
}

QString isCommand(const CommandRow &row)
{
    return QStringLiteral("__gbdriver_cli_is ") + QLatin1String(row.name);
}

// What completes the option's value.
QString valueWords(ValueKind kind)
{
    switch (kind) {
    case ValueKind::None:
        return {};
    case ValueKind::File:
        return QStringLiteral(" -r -F");
    case ValueKind::Folder:
        return QStringLiteral(" -x -a '(__fish_complete_directories)'");
    default:
        break;
    }
    const QStringList choices = valueChoices(kind);
    return choices.isEmpty() ? QStringLiteral(" -x")
                             : QStringLiteral(" -x -a ") + quoted(choices.join(QLatin1Char(' ')));
}

QString optionRule(const QString &condition, const OptionRow &option)
{
    QString words = QStringLiteral("-l ") + QLatin1String(option.name);
    if (option.letter != 0)
        words += QStringLiteral(" -s ") + QLatin1Char(option.letter);
    return rule(condition, words + valueWords(option.kind) + QStringLiteral(" -d ") +
                               quoted(QLatin1String(option.description)));
}

QString argumentRule(const CommandRow &row)
{
    switch (row.argument) {
    case ArgumentKind::None:
        return {};
    case ArgumentKind::File:
        return rule(isCommand(row), QStringLiteral("-F"));
    case ArgumentKind::Folder:
        return rule(isCommand(row), QStringLiteral("-a '(__fish_complete_directories)'"));
    case ArgumentKind::Shell:
    case ArgumentKind::Command:
        break;
    }
    return rule(isCommand(row), QStringLiteral("-a ") +
                                    quoted(argumentChoices(row.argument).join(QLatin1Char(' '))));
}

QString commandRules(const CommandRow &row)
{
    QString rules =
        rule(kNeedsCommand, QStringLiteral("-a %1 -d %2")
                                .arg(QLatin1String(row.name), quoted(QLatin1String(row.summary))));
    for (const OptionRow *option : row.options)
        rules += optionRule(isCommand(row), *option);
    return rules + argumentRule(row);
}

QString valuedOptions()
{
    QStringList names;
    for (const OptionRow *option : optionsByName()) {
        if (option->kind != ValueKind::None)
            names << QStringLiteral("--") + QLatin1String(option->name);
    }
    return names.join(QLatin1Char(' '));
}

} // namespace

QString fishCompletion()
{
    QString script = QLatin1String(kBeginning);
    script.replace(QStringLiteral("@VALUED@"), valuedOptions());
    for (const OptionRow *option : optionsByName())
        script += optionRule(kNeedsCommand, *option);
    for (const CommandRow &row : commandTable())
        script += commandRules(row);
    return script;
}
