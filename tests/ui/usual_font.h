// The font of a plain desktop, for tests that measure the window: what a program gets without one
// differs with platform, resolution of the screen and version of Qt.
#pragma once

#include <QApplication>
#include <QFont>
#include <QFontInfo>

// The application's widgets use it from here on.
// Returns: false if it is not installed (package fonts-dejavu-core).
inline bool useUsualFont()
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(12);
    QApplication::setFont(font);
    return QFontInfo(font).exactMatch();
}
