#include "cli/shell_completion.h"

QString completionScript(const QString &shell)
{
    if (shell == QLatin1String("bash"))
        return bashCompletion();
    if (shell == QLatin1String("zsh"))
        return zshCompletion();
    return shell == QLatin1String("fish") ? fishCompletion() : QString();
}
