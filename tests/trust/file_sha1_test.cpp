// The hash of a file, as lists and reports name it.
#include "trust/file_sha1.h"

#include "script_folder.h"
#include "test_class.h"

#include <QtTest>

class FileSha1Test : public QObject
{
    Q_OBJECT

private slots:
    void sha1IsOfTheBytes()
    {
        ScriptFolder folder;
        folder.write("a.nut", "abc"); // the example of FIPS 180-4
        QCOMPARE(fileSha1(folder.filePath("a.nut")),
                 QString("a9993e364706816aba3e25717850c26c9cd0d89d"));
        folder.write("a.nut", "");
        QCOMPARE(fileSha1(folder.filePath("a.nut")),
                 QString("da39a3ee5e6b4b0d3255bfef95601890afd80709"));
        QCOMPARE(fileSha1(folder.filePath("none.nut")), QString());
        QCOMPARE(fileSha1(folder.path()), QString());
    }
};

GBDRIVER_TEST(FileSha1Test, none)
#include "file_sha1_test.moc"
