// What the documents say of the tests is so: every test that a page names exists. And where the
// version has to be written once more, it is the build's.
#include "test_class.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

namespace
{

QString textOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// "SectorWindowTest::name" of every function of every test class.
QSet<QString> testFunctions()
{
    static const QRegularExpression kClass("^class (\\w+Test) ",
                                           QRegularExpression::MultilineOption);
    static const QRegularExpression kFunction("\\bvoid (?:\\w+::)?(\\w+)\\(\\)");
    QSet<QString> functions;
    QDirIterator files(QStringLiteral(SOURCE_FOLDER "/tests"), {"*_test.cpp"}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString text = textOf(files.next());
        const QString name = kClass.match(text).captured(1);
        auto matches = kFunction.globalMatch(text);
        while (matches.hasNext())
            functions.insert(name + "::" + matches.next().captured(1));
    }
    return functions;
}

} // namespace

class DocumentsTest : public QObject
{
    Q_OBJECT

private slots:
    void namedTestsExist()
    {
        static const QRegularExpression kName("\\b[A-Z]\\w+Test::\\w+");
        const QSet<QString> functions = testFunctions();
        const QDir docs(QStringLiteral(SOURCE_FOLDER "/docs"));
        int named = 0;
        for (const QString &page : docs.entryList({"*.md"}, QDir::Files)) {
            auto names = kName.globalMatch(textOf(docs.filePath(page)));
            while (names.hasNext()) {
                const QString name = names.next().captured();
                QVERIFY2(functions.contains(name), qPrintable(page + " names " + name));
                ++named;
            }
        }
        QVERIFY(named > 0);
    }

    void versionIsTheBuilds_data()
    {
        const QString version = QStringLiteral(GBDRIVER_VERSION);
        const QString series = version.section('.', 0, 1);
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("written");
        QTest::newRow("newest of what changed") << "CHANGELOG.md"
                                                << "\n## (?:Unreleased \\()?([\\d.]+)" << version;
        QTest::newRow("title of the window") << "src/app/tab_dialog.cpp"
                                             << "\"GB Driver ([\\d.]+) build - \"" << series;
        QTest::newRow("greeting of the log") << "src/ui/main_tab.cpp"
                                             << "GB/GBC/GBA ([\\d.]+) started\\." << series;
    }
    void versionIsTheBuilds()
    {
        QFETCH(QString, file);
        QFETCH(QString, pattern);
        QFETCH(QString, written);
        const QString text = textOf(SOURCE_FOLDER "/" + file);
        QCOMPARE(QRegularExpression(pattern).match(text).captured(1), written);
    }
};

GBDRIVER_TEST(DocumentsTest, core)
#include "documents_test.moc"
