// What ended programs leave in a folder is listed, and nothing else is.
#include "trust/left_behind.h"

#include "files.h"
#include "test_class.h"
#include "trust/pending_file.h"
#include "trust_bench.h"

#include <QtTest>

class LeftBehindTest : public QObject
{
    Q_OBJECT

private slots:
    void onlyWhatNobodyUsesIsListed()
    {
        const TrialBench bench(benchCartridge());
        const UserFolder folder;
        const QString left = folder.addFile("a.sav.gbdriver-2.part", "half");
        (void)folder.addFile("a.sav", "whole");
        (void)folder.addFile("download.part", "another program's");
        PendingFile used(folder.path("b.gb"), ExistingFile::Keep);
        QVERIFY(used.write("not yet whole"));

        QCOMPARE(leftBehindIn(folder.path()), QStringList({left}));
        QCOMPARE(temporariesIn(folder.path()),
                 QStringList({left, folder.path("b.gb.gbdriver-1.part")}));
        QVERIFY(used.commit());
        QCOMPARE(temporariesIn(folder.path()), QStringList({left}));
    }

    void missingFolderHasNone()
    {
        QCOMPARE(leftBehindIn(UserFolder().path("missing")), QStringList());
    }
};

GBDRIVER_TEST(LeftBehindTest, core)
#include "left_behind_test.moc"
