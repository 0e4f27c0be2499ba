#include "app/session_end.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>

#include <utility>

#include <windows.h>

// Qt's own support of sessions is not built for Windows; the message is all there is to it.
struct SessionEnd::Watch : QAbstractNativeEventFilter {
    bool nativeEventFilter(const QByteArray & /*type*/, void *message, long *result) override
    {
        if (static_cast<const MSG *>(message)->message != WM_QUERYENDSESSION)
            return false;
        *result = mayEnd() ? TRUE : FALSE;
        return true;
    }

    std::function<bool()> mayEnd;
};

SessionEnd::SessionEnd(std::function<bool()> mayEnd) : m_watch(std::make_unique<Watch>())
{
    m_watch->mayEnd = std::move(mayEnd);
    QCoreApplication::instance()->installNativeEventFilter(m_watch.get());
}

SessionEnd::~SessionEnd()
{
    QCoreApplication::instance()->removeNativeEventFilter(m_watch.get());
}
