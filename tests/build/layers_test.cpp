// The layers of docs/architecture.md, read from the includes and from the libraries that CMake
// links: no arrow from a lower one to a higher one, and nothing shared with the reader's own side
// but the seam.
#include "test_class.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QtTest>

namespace
{

// Each folder of src with those that it may know.
const QMap<QString, QStringList> &layers()
{
    static const QMap<QString, QStringList> kLayers = {
        {"constants", {}}, // published facts, no logic
        {"device", {"constants"}},
        {"cart", {"constants"}},
        {"virtual", {"device", "constants"}}, // of the device the seam alone
        {"script", {"device"}},
        {"worker", {"script", "cart", "device"}},
        {"trust", {"worker", "script", "cart", "device"}},
        {"trial", {"worker", "script", "cart", "device", "virtual"}},
        {"ui", {"trust", "worker", "script", "cart", "device"}},
        {"cli", {"trust", "trial", "worker", "script", "cart", "device", "virtual"}},
        {"app", {"ui", "worker", "device", "virtual"}},
    };
    return kLayers;
}

QString sourceFolder(const QString &name)
{
    return QStringLiteral(SOURCE_FOLDER "/src/") + name;
}

QString textOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// "FILE: device/device_link.h" for every include of another folder of src.
QStringList includesOf(const QString &folder)
{
    static const QRegularExpression kInclude("^#include \"(([a-z]+)/[^\"]+)\"",
                                             QRegularExpression::MultilineOption);
    QStringList includes;
    QDirIterator files(sourceFolder(folder), {"*.h", "*.cpp"}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        auto matches = kInclude.globalMatch(textOf(path));
        while (matches.hasNext()) {
            const QRegularExpressionMatch match = matches.next();
            if (match.captured(2) != folder)
                includes << files.fileName() + ": " + match.captured(1);
        }
    }
    return includes;
}

} // namespace

class LayersTest : public QObject
{
    Q_OBJECT

private slots:
    void everyFolderIsALayer()
    {
        const QStringList folders =
            QDir(sourceFolder({})).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        QCOMPARE(folders, QStringList(layers().keys()));
    }

    void includesPointDown_data() { addFolders(); }
    void includesPointDown()
    {
        QFETCH(QString, folder);
        const QStringList allowed = layers().value(folder);
        for (const QString &include : includesOf(folder)) {
            const QString target = include.section(": ", 1).section('/', 0, 0);
            QVERIFY2(allowed.contains(target), qPrintable(folder + "/" + include));
        }
    }

    // A library that is linked would let the next include slip in.
    void librariesPointDown_data() { addFolders(); }
    void librariesPointDown()
    {
        static const QRegularExpression kLinks("target_link_libraries\\(([^)]*)\\)");
        static const QRegularExpression kLibrary("\\bgbdriver_([a-z]+)(_core|_line)?\\b");
        QFETCH(QString, folder);
        const QStringList allowed = layers().value(folder) + QStringList(folder);
        auto calls = kLinks.globalMatch(textOf(sourceFolder(folder) + "/CMakeLists.txt"));
        while (calls.hasNext()) {
            auto libraries = kLibrary.globalMatch(calls.next().captured(1));
            while (libraries.hasNext()) {
                QString library = libraries.next().captured(1);
                if (library == "command")
                    library = "cli";
                if (layers().contains(library))
                    QVERIFY2(allowed.contains(library), qPrintable(folder + " links " + library));
            }
        }
    }

    // The device's side must not find a fault of the host's right because both made it.
    void theReadersSideKnowsTheSeamAlone()
    {
        const QStringList includes = includesOf("virtual");
        QVERIFY(!includes.isEmpty());
        for (const QString &include : includes)
            QVERIFY2(include.endsWith(": device/drive_backend.h") ||
                         include == "main.cpp: device/standard_streams.h" ||
                         include.contains(": constants/"),
                     qPrintable(include));
    }

    // The tables above order the folders, so there can be no circle in them.
    void noLayersKnowEachOther()
    {
        for (auto layer = layers().begin(); layer != layers().end(); ++layer) {
            for (const QString &lower : layer.value())
                QVERIFY2(!layers().value(lower).contains(layer.key()),
                         qPrintable(layer.key() + " and " + lower));
        }
    }

private:
    static void addFolders()
    {
        QTest::addColumn<QString>("folder");
        for (const QString &folder : layers().keys())
            QTest::newRow(qPrintable(folder)) << folder;
    }
};

GBDRIVER_TEST(LayersTest, core)
#include "layers_test.moc"
