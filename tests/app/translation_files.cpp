#include "translation_files.h"

#include <QFile>

QString addTranslation(const QString &path, const QString &mark)
{
    QFile compiled(QStringLiteral(MARKED_TRANSLATIONS "/marked_") + mark + ".qm");
    QFile::remove(path);
    return compiled.copy(path) ? QString() : compiled.fileName() + ": " + compiled.errorString();
}
