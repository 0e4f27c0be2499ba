// What a window says to screen readers whatever has the keyboard: they read the log only where it
// has. There is nothing to see.
//
// Thread: GUI thread only.
#pragma once

#include <QWidget>

class Announcement : public QWidget
{
public:
    // `window` owns it.
    explicit Announcement(QWidget *window);

    // Speaks `words`, plain text, once.
    void say(const QString &words);
};
