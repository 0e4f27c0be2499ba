#include "app/translation.h"

#include <QCoreApplication>
#include <QFile>
#include <QTranslator>

QString chooseTranslation(const QString &folder)
{
    for (const char *name : {"/gb3_chs.qm", "/gb3_jpn.qm"}) {
        const QString path = folder + QString::fromLatin1(name);
        if (QFile::exists(path))
            return path;
    }
    return QString();
}

bool installTranslation(const QString &folder, QTranslator *translator)
{
    const QString path = chooseTranslation(folder);
    if (path.isEmpty())
        return false;
    // A file that cannot be loaded leaves every text in English.
    static_cast<void>(translator->load(path));
    QCoreApplication::installTranslator(translator);
    return true;
}
