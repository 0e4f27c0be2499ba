#include "cli/shell_word.h"

QString shellWord(const QString &text)
{
    return cmdWord(text);
}
