#include "cli/command_table.h"
#include "cli/shell_completion.h"

namespace
{

// zsh calls the file's function from its fpath; a file that is sourced announces the function.
const char kBeginning[] = R"(#compdef gbdriver-cli
# Completion of gbdriver-cli for zsh.
_gbdriver-cli() {
    local curcontext="$curcontext" state line
    typeset -A opt_args
    local -a commands=(
)";

const char kMiddle[] = R"(    )
    _arguments -C \
        @OPTIONS@ \
        '(-)1:command:->command' \
        '(-)*::argument:->argument'
    case $state in
    command) _describe -t commands command commands ;;
    argument)
        case $words[1] in
)";

const char kEnd[] = R"(        esac
        ;;
    esac
}

if [[ $funcstack[1] == _gbdriver-cli ]]; then
    _gbdriver-cli "$@"
else
    compdef _gbdriver-cli gbdriver-cli
fi
)";

// `text` within a single-quoted word whose parts colons and brackets separate.
QString zsh(const char *text)
{
    QString result = QLatin1String(text);
    for (const char special : {'\\', ':', '[', ']'})
        result.replace(QLatin1Char(special), QStringLiteral("\\") + QLatin1Char(special));
    return result.replace(QLatin1Char('\''), QStringLiteral("'\\''"));
}

// The first sentence, which is enough beside a name.
QString firstSentence(const char *text)
{
    const QString whole = zsh(text);
    const int end = whole.indexOf(QStringLiteral(". "));
    const QString sentence = end < 0 ? whole : whole.left(end);
    return sentence.endsWith(QLatin1Char('.')) ? sentence.left(sentence.size() - 1) : sentence;
}

// What completes a value: ":name:action".
QString valueSpec(const OptionRow &option)
{
    if (option.kind == ValueKind::None)
        return {};
    QString action = QStringLiteral(" ");
    const QStringList choices = valueChoices(option.kind);
    if (!choices.isEmpty())
        action = QStringLiteral("(%1)").arg(choices.join(QLatin1Char(' ')));
    if (option.kind == ValueKind::File)
        action = QStringLiteral("_files");
    if (option.kind == ValueKind::Folder)
        action = QStringLiteral("_files -/");
    return QStringLiteral(":%1:%2").arg(valueName(option.kind), action);
}

QString optionSpec(const OptionRow &option)
{
    const QString name = QStringLiteral("--") + QLatin1String(option.name);
    const QString text =
        QStringLiteral("[%1]%2").arg(firstSentence(option.description), valueSpec(option));
    if (option.letter != 0)
        return QStringLiteral("'(- *)'{-%1,%2}'%3'")
            .arg(QLatin1Char(option.letter))
            .arg(name, text);
    const QString sign = option.kind == ValueKind::None ? QString() : QStringLiteral("=");
    if (option.isRepeatable)
        return QStringLiteral("'*%1%2%3'").arg(name, sign, text);
    const QString excluded = option.excludes == nullptr
                                 ? QString()
                                 : QStringLiteral(" --") + QLatin1String(option.excludes);
    return QStringLiteral("'(%1%2)%1%3%4'").arg(name, excluded, sign, text);
}

QString argumentSpec(ArgumentKind kind)
{
    switch (kind) {
    case ArgumentKind::None:
        return {};
    case ArgumentKind::File:
        return QStringLiteral("'1:FILE:_files'");
    case ArgumentKind::Folder:
        return QStringLiteral("'1:DIR:_files -/'");
    case ArgumentKind::Shell:
    case ArgumentKind::Command:
        return QStringLiteral("'1:word:(%1)'").arg(argumentChoices(kind).join(QLatin1Char(' ')));
    }
    return {};
}

// Continues a command line, indented by `indent`.
QString broken(const QStringList &words, int indent)
{
    return words.join(QStringLiteral(" \\\n") + QString(indent, QLatin1Char(' ')));
}

QStringList optionSpecs(const std::vector<const OptionRow *> &options)
{
    QStringList specs;
    for (const OptionRow *option : options)
        specs << optionSpec(*option);
    return specs;
}

QString commandCase(const CommandRow &row)
{
    QStringList specs = optionSpecs(row.options);
    if (row.argument != ArgumentKind::None)
        specs << argumentSpec(row.argument);
    return QStringLiteral("        %1)\n            _arguments \\\n                %2\n            "
                          ";;\n")
        .arg(QLatin1String(row.name), broken(specs, 16));
}

} // namespace

QString zshCompletion()
{
    QString names;
    QString cases;
    for (const CommandRow &row : commandTable()) {
        names += QStringLiteral("        '%1:%2'\n")
                     .arg(QLatin1String(row.name), firstSentence(row.summary));
        cases += commandCase(row);
    }
    QString middle = QLatin1String(kMiddle);
    middle.replace(QStringLiteral("@OPTIONS@"), broken(optionSpecs(optionsByName()), 8));
    return QLatin1String(kBeginning) + names + middle + cases + QLatin1String(kEnd);
}
