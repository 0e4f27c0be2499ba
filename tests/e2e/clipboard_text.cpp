// Prints what the clipboard of the display holds.
#include <QClipboard>
#include <QGuiApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    std::fputs(QGuiApplication::clipboard()->text().toLocal8Bit().constData(), stdout);
    return 0;
}
