#include "app/session_end.h"

#include <QGuiApplication>
#include <QSessionManager>

#include <utility>

struct SessionEnd::Watch {
    QObject context; // the connection ends with it
};

SessionEnd::SessionEnd(std::function<bool()> mayEnd) : m_watch(std::make_unique<Watch>())
{
    const auto ask = [mayEnd = std::move(mayEnd)](QSessionManager &session) {
        if (!mayEnd())
            session.cancel();
    };
    // Within the signal: behind it the answer has been given.
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, &m_watch->context, ask,
                     Qt::DirectConnection);
}

SessionEnd::~SessionEnd() = default;
