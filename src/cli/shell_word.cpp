#include "cli/shell_word.h"

#include "worker/shown_text.h"

namespace
{

// Inside of $'...'.
QString escapedControls(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    text.replace(QLatin1Char('\''), QLatin1String("\\'"));
    return shownValue(text);
}

} // namespace

QString posixWord(const QString &text)
{
    if (shownValue(text) != text)
        return QStringLiteral("$'") + escapedControls(text) + QLatin1Char('\'');
    QString quoted = text;
    quoted.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QLatin1Char('\'') + quoted + QLatin1Char('\'');
}

QString cmdWord(const QString &text)
{
    QString quoted = text;
    quoted.replace(QLatin1Char('%'), QLatin1String("\"^%\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}
