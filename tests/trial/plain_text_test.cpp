// Texts for bug reports have no folders in them.
#include "trial/plain_text.h"

#include "test_class.h"

#include <QDir>
#include <QtTest>

class PlainTextTest : public QObject
{
    Q_OBJECT

private slots:
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
