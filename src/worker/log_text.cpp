#include "worker/log_text.h"

#include "worker/shown_text.h"

QString markupOf(const QString &plain)
{
    QString escaped = shownText(plain).toHtmlEscaped();
    escaped.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    escaped.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    escaped.replace(QLatin1Char('\n'), QLatin1String("<br>"));
    return escaped;
}

QString logText(const QString &foreign)
{
    if (!foreign.contains(QLatin1Char('<')) && !foreign.contains(QLatin1Char('&')))
        return shownText(foreign);
    return QStringLiteral("<span style=\"white-space: pre-wrap\">%1</span>").arg(markupOf(foreign));
}
