#include "cli/print_line.h"

#include "worker/shown_text.h"

#include <cerrno>

namespace
{
constexpr char kPlain[] = "\033[0m";
}

bool writeLine(std::FILE *stream, const QByteArray &line)
{
    errno = 0;
    const int count = std::fprintf(stream, "%s\n", line.constData());
    // Not every library's fprintf() tells of an error itself.
    return std::fflush(stream) == 0 && count >= 0 && std::ferror(stream) == 0;
}

bool printLine(std::FILE *stream, const QString &text, const char *color)
{
    QString shown = shownText(text);
    while (shown.endsWith(QLatin1Char('\n')))
        shown.chop(1);
    const char *const end = *color == '\0' ? "" : kPlain;
    return writeLine(stream, color + shown.toLocal8Bit() + end);
}
