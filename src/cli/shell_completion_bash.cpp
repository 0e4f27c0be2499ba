#include "cli/command_table.h"
#include "cli/shell_completion.h"

namespace
{

// The words of the line before the one that is completed: the command, how many words follow it,
// and the option that waits for its value. Readline makes words of its own of "--option=value".
const char kBeginning[] = R"(# Completion of gbdriver-cli for bash.
_gbdriver_cli()
{
    local word=${COMP_WORDS[COMP_CWORD]} waiting= command= arguments=0 onlyNames= i seen
    COMPREPLY=()
    [[ $word == = ]] && word=
    for ((i = 1; i < COMP_CWORD; i++)); do
        seen=${COMP_WORDS[i]}
        if [[ $seen == = ]]; then
            continue
        elif [[ -n $waiting ]]; then
            waiting=
        elif [[ -z $onlyNames && $seen == -- ]]; then
            onlyNames=yes
        elif [[ -z $onlyNames && $seen == -* ]]; then
            case $seen in
            @VALUED@) waiting=$seen ;;
            esac
        elif [[ -z $command ]]; then
            command=$seen
        else
            ((arguments++))
        fi
    done
    local choices= kind= options="@OPTIONS@"
    case $waiting in
)";

const char kMiddle[] = R"(    '')
        case $command in
)";

const char kEnd[] = R"(        esac
        if [[ -z $onlyNames && $word == -* ]]; then
            choices=$options
        elif [[ -n $command && $arguments != 0 ]]; then
            choices=
        elif [[ -n $kind ]]; then
            compopt -o $kind
        fi
        ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$word")
}
complete -F _gbdriver_cli gbdriver-cli
)";

const QString kBlank = QStringLiteral(" ");

QString dashed(const char *option)
{
    return QStringLiteral("--") + QLatin1String(option);
}

// "--help", "-h"
QStringList spellings(const OptionRow &option)
{
    QStringList names(dashed(option.name));
    if (option.letter != 0)
        names << QStringLiteral("-") + QLatin1Char(option.letter);
    return names;
}

QString optionWords(const std::vector<const OptionRow *> &options)
{
    QStringList words;
    for (const OptionRow *option : options)
        words << spellings(*option);
    return words.join(kBlank);
}

// What is done for the value of `option`.
QString valueAction(const OptionRow &option)
{
    if (option.kind == ValueKind::File)
        return QStringLiteral("compopt -o default");
    if (option.kind == ValueKind::Folder)
        return QStringLiteral("compopt -o dirnames");
    return QStringLiteral("choices=\"%1\"").arg(valueChoices(option.kind).join(kBlank));
}

// What is set for the argument of a command.
QString argumentSetting(ArgumentKind kind)
{
    if (kind == ArgumentKind::File)
        return QStringLiteral("kind=default ");
    if (kind == ArgumentKind::Folder)
        return QStringLiteral("kind=dirnames ");
    const QStringList choices = argumentChoices(kind);
    return choices.isEmpty() ? QString()
                             : QStringLiteral("choices=\"%1\" ").arg(choices.join(kBlank));
}

} // namespace

QString bashCompletion()
{
    QStringList valued;
    QString values;
    for (const OptionRow *option : optionsByName()) {
        if (option->kind == ValueKind::None)
            continue;
        valued << dashed(option->name);
        values += QStringLiteral("    %1) %2 ;;\n").arg(dashed(option->name), valueAction(*option));
    }
    QString commands =
        QStringLiteral("        '') choices=\"%1\" ;;\n").arg(commandNames().join(kBlank));
    for (const CommandRow &row : commandTable())
        commands += QStringLiteral("        %1) %2options=\"%3\" ;;\n")
                        .arg(QLatin1String(row.name), argumentSetting(row.argument),
                             optionWords(row.options));
    QString beginning = QLatin1String(kBeginning);
    beginning.replace(QStringLiteral("@VALUED@"), valued.join(QStringLiteral(" | ")));
    beginning.replace(QStringLiteral("@OPTIONS@"), optionWords(optionsByName()));
    return beginning + values + QLatin1String(kMiddle) + commands + QLatin1String(kEnd);
}
