#include "corpus_folder.h"

#include <QDir>
#include <QFile>

#include <cstdio>

namespace
{

bool writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    if (!isWritten)
        std::fprintf(stderr, "%s: %s\n", qPrintable(path), qPrintable(file.errorString()));
    return isWritten;
}

} // namespace

bool writeCorpus(const QString &folder, const QVector<CorpusSample> &samples)
{
    const QDir target(folder);
    if (!target.mkpath(QStringLiteral(".")))
        return false;
    QStringList paths;
    for (const CorpusSample &sample : samples) {
        paths.append(target.filePath(sample.name));
        if (!writeBytes(paths.last(), sample.bytes))
            return false;
    }
    return writeBytes(target.filePath(QStringLiteral("list")),
                      QFile::encodeName(paths.join(QLatin1Char(','))));
}
