// Texts for bug reports: the line that tells, and no folders.
#include "cli/plain_text.h"

#include "test_class.h"

#include <QDir>
#include <QtTest>

class PlainTextTest : public QObject
{
    Q_OBJECT

private slots:
    void tellingLineIsTheError_data()
    {
        QTest::addColumn<QStringList>("log");
        QTest::addColumn<QString>("line");
        QTest::newRow("nothing") << QStringList() << "";
        QTest::newRow("last that says something")
            << QStringList({"Start dump rom...", "It broke.", "\n", " "}) << "It broke.";
        QTest::newRow("error of a script")
            << QStringList({"Start", "\nAN ERROR HAS OCCURRED [no bank]\n", "\nCALLSTACK\n",
                            "Dump rom finish."})
            << "AN ERROR HAS OCCURRED [no bank]";
        QTest::newRow("other spelling")
            << QStringList({"\nAN ERROR HAS OCCURED [no bank]\n", "end"})
            << "AN ERROR HAS OCCURED [no bank]";
        QTest::newRow("compiler")
            << QStringList({"/home/a b/x.nut line = (3) column = (5) : error expected ';'\n",
                            "dump core script error\n"})
            << "x.nut line = (3) column = (5) : error expected ';'";
        QTest::newRow("compiler, Windows")
            << QStringList({"C:\\Users\\a b\\x.nut line = (3) column = (5) : error no\n"})
            << "x.nut line = (3) column = (5) : error no";
    }
    void tellingLineIsTheError()
    {
        QFETCH(QStringList, log);
        QTEST(tellingLine(log), "line");
    }

    void foldersAreTakenOut()
    {
        const QString folder = QDir::rootPath() + "some/where";
        QCOMPARE(withoutPaths("a \"" + folder + "/x.nut\" b", folder),
                 QString("a \".../x.nut\" b"));
        QCOMPARE(withoutPaths(QDir::tempPath() + "/y: no", folder), QString(".../y: no"));
        QCOMPARE(withoutPaths(QDir::toNativeSeparators(folder) + "z", folder), QString("...z"));
        QCOMPARE(withoutPaths("all well", folder), QString("all well"));
    }

    void folderIsNamedByItsLastPart()
    {
        QCOMPARE(folderText(QCoreApplication::applicationDirPath() + "/mapper"),
                 QString("mapper, beside the program"));
        QCOMPARE(folderText("/home/somebody/scripts"), QString("scripts"));
        QCOMPARE(folderText(QDir::homePath()), QString("the home folder"));
    }
};

GBDRIVER_TEST(PlainTextTest, core)
#include "plain_text_test.moc"
