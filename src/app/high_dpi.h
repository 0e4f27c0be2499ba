// Screens with many pixels to an inch.
#pragma once

#include <QCoreApplication>

// Has Qt 5 scale the window; Qt 6 always does. Of use only before there is an application.
inline void askForHighDpi()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
}
