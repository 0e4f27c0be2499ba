// The tab "About": names the program, its maker and the libraries it is built on, and says what the
// program is for. Static but for its two links, which open in the system's browser and mail
// program.
//
// Thread: GUI thread only.
#pragma once

#include <QWidget>

class QFileInfo;

class TabAbout : public QWidget
{
    Q_OBJECT

public:
    // The file named on the command line is handed to the page, which does not show it.
    explicit TabAbout(const QFileInfo &fileInfo, QWidget *parent = nullptr);
};
