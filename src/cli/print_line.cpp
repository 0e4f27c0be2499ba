#include "cli/print_line.h"

#include "worker/shown_text.h"

namespace
{
constexpr char kPlain[] = "\033[0m";
}

bool wasWritten(std::FILE *stream, int count)
{
    // Not every library's fprintf() tells of an error itself.
    return std::fflush(stream) == 0 && count >= 0 && std::ferror(stream) == 0;
}

bool printLine(std::FILE *stream, const QString &text, const char *color)
{
    QString shown = shownText(text);
    while (shown.endsWith(QLatin1Char('\n')))
        shown.chop(1);
    const char *const end = *color == '\0' ? "" : kPlain;
    const int count = std::fprintf(stream, "%s%s%s\n", color, shown.toLocal8Bit().constData(), end);
    return wasWritten(stream, count);
}
