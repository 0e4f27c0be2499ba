// Scripts by which shells complete command lines of this program, made from the tables of commands
// and options. Plain ASCII.
// Pure; any thread.
#pragma once

#include <QString>

// `shell`: "bash", "zsh" or "fish". Returns: empty for any other.
QString completionScript(const QString &shell);

// Need bash 4 or later; nothing of the package bash-completion.
QString bashCompletion();

// For a folder of zsh's fpath; sourcing it works too.
QString zshCompletion();

// Needs fish 3 or later.
QString fishCompletion();
