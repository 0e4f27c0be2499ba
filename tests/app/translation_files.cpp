#include "translation_files.h"

#include <QFile>
#include <QLibraryInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <utility>
#include <vector>

namespace
{
const std::vector<std::pair<const char *, QStringList>> kTexts = {
    {"TabDialog", {"GB Driver 3.0 build - ", "GB", "Update", "About"}},
    {"MainTab", {"Info", "Dump", "Not exists script file :"}},
    {"Settings", {"Settings", "MBC TYPE:"}},
};

QString translationSource(const QString &mark)
{
    QString text = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE TS>\n"
                   "<TS version=\"2.1\" language=\"ja_JP\">\n";
    for (const auto &[context, sources] : kTexts) {
        text += QString("<context><name>%1</name>\n").arg(context);
        for (const QString &source : sources)
            text += QString("<message><source>%1</source><translation>%2%1</translation>"
                            "</message>\n")
                        .arg(source, mark);
        text += "</context>\n";
    }
    return text + "</TS>\n";
}

QString compilerPath()
{
    const QString folder = QLibraryInfo::location(QLibraryInfo::BinariesPath);
    const QString beside = QStandardPaths::findExecutable("lrelease", {folder});
    return beside.isEmpty() ? QStandardPaths::findExecutable("lrelease") : beside;
}
} // namespace

QString makeTranslation(const QString &path, const QString &mark)
{
    const QTemporaryDir folder;
    QFile source(folder.filePath("program.ts"));
    if (!source.open(QIODevice::WriteOnly))
        return "cannot write " + source.fileName();
    source.write(translationSource(mark).toUtf8());
    source.close();

    const QString compiler = compilerPath();
    if (compiler.isEmpty())
        return "lrelease is missing; install the package qttools5-dev-tools";
    QProcess process;
    process.start(compiler, {"-silent", source.fileName(), "-qm", path});
    if (!process.waitForFinished() || process.exitCode() != 0)
        return "lrelease failed: " + QString::fromLocal8Bit(process.readAllStandardError());
    return QString();
}
