// Names of backups: any title makes one that every system can hold, and none is ever another's.
#include "trust/backup_store.h"

#include "test_class.h"

#include <QtTest>

Q_DECLARE_METATYPE(VerdictKind)

class BackupStoreTest : public QObject
{
    Q_OBJECT

private slots:
    void safeNames_data();
    void safeNames();
    void anyTitleCanBeAFile_data();
    void anyTitleCanBeAFile();
    void datedNameHasNoColon();
    void datedNamesNeverReplace();
    void freeNamesNeverReplace();
    void defaultFolderIsTheUsers();
    void readsAreKeptBesideGoodOnes_data();
    void readsAreKeptBesideGoodOnes();
    void firstReadsReplaceNothing();
    void longNamesMakeRoomForTheirMarks_data();
    void longNamesMakeRoomForTheirMarks();
};

void BackupStoreTest::safeNames_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << "POKEMON RED"
                           << "POKEMON RED";
    QTest::newRow("catalogue") << "Game - Part 2 (USA, Europe) (Rev 1)"
                               << "Game - Part 2 (USA, Europe) (Rev 1)";
    QTest::newRow("empty") << ""
                           << "cartridge";
    QTest::newRow("spaces") << "  \t\n "
                            << "cartridge";
    QTest::newRow("dots") << "..."
                          << "cartridge";
    QTest::newRow("hidden") << ".profile"
                            << "_.profile";
    QTest::newRow("option") << "-rf"
                            << "_-rf";
    QTest::newRow("parent") << "../../etc/passwd"
                            << "_.._.._etc_passwd";
    QTest::newRow("separators") << "a/b\\c:d*e?f\"g<h>i|j"
                                << "a_b_c_d_e_f_g_h_i_j";
    QTest::newRow("control characters") << QString("A\x01\x7F\x1B[2JB") << "A___[2JB";
    QTest::newRow("no text") << QString(QChar(0xD800)) << "_";
    QTest::newRow("umlaut") << QString::fromUtf8("\xC3\x9C"
                                                 "BER")
                            << QString::fromUtf8("\xC3\x9C"
                                                 "BER");
    QTest::newRow("spaces in between") << "A   B"
                                       << "A B";
    QTest::newRow("end") << "NAME. . ."
                         << "NAME";
    for (const char *device : {"CON", "con", "PRN", "AUX", "NUL", "COM1", "lpt9"})
        QTest::newRow(device) << device << QString("_") + device;
    QTest::newRow("device with an ending") << "nul.txt"
                                           << "_nul.txt";
    QTest::newRow("device with more") << "CONTRA"
                                      << "CONTRA";
    QTest::newRow("device with a space") << "CON "
                                         << "_CON";
    QTest::newRow("long") << QString(1000, 'x') << QString(180, 'x');
    QTest::newRow("long with a region")
        << QString(1000, 'x') + " (Japan) (Rev 1)" << QString(164, 'x') + " (Japan) (Rev 1)";
    const QString longestKnown(125, 'x');
    QTest::newRow("as long as a known title") << longestKnown << longestKnown;
}

void BackupStoreTest::safeNames()
{
    QFETCH(QString, title);
    QFETCH(QString, name);
    QCOMPARE(safeFileName(title), name);
    QCOMPARE(safeFileName(name), name);
}

void BackupStoreTest::anyTitleCanBeAFile_data()
{
    QTest::addColumn<QString>("title");
    for (const int base : {0x00, 0x40, 0x80, 0x3040, 0xD7F0, 0xFFC0}) {
        QString title;
        for (int i = 0; i < 64; ++i)
            title += QChar(base + i);
        QTest::newRow(qPrintable(QString::number(base, 16))) << title;
    }
}

void BackupStoreTest::anyTitleCanBeAFile()
{
    QFETCH(QString, title);
    const QTemporaryDir folder;
    const QString path = datedPath(folder.path(), title, QDateTime::currentDateTime(), ".sav");
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 1);
    QVERIFY(QFileInfo(path).fileName().toUtf8().size() <= 255);
}

void BackupStoreTest::datedNameHasNoColon()
{
    const QDateTime time({2026, 11, 21}, {14, 30, 5});
    const QTemporaryDir folder;
    QCOMPARE(datedPath(folder.path(), "A: B", time, ".sav"),
             folder.filePath("A_ B 2026-11-21 14-30-05.sav"));
}

void BackupStoreTest::datedNamesNeverReplace()
{
    const QDateTime time({2026, 11, 21}, {14, 30, 5});
    const QTemporaryDir folder;
    for (const char *name : {"A 2026-11-21 14-30-05.sav", "A 2026-11-21 14-30-05 (2).sav",
                             "A 2026-11-21 14-30-05 (3).sav"}) {
        const QString path = datedPath(folder.path(), "A", time, ".sav");
        QCOMPARE(path, folder.filePath(name));
        QVERIFY(QFile(path).open(QIODevice::WriteOnly));
    }
    QCOMPARE(datedPath(folder.path(), "A", time, ".gb"),
             folder.filePath("A 2026-11-21 14-30-05.gb"));
}

void BackupStoreTest::freeNamesNeverReplace()
{
    const QTemporaryDir folder;
    QCOMPARE(freePath(folder.path(), "A", ".gb"), folder.filePath("A.gb"));
    // A folder takes a name like a file.
    QVERIFY(QDir(folder.path()).mkdir("A.gb"));
    QCOMPARE(freePath(folder.path(), "A", ".gb"), folder.filePath("A (2).gb"));
}

void BackupStoreTest::defaultFolderIsTheUsers()
{
    QVERIFY(defaultBackupFolder().endsWith("/gbdriver/backups"));
    QVERIFY(QDir::isAbsolutePath(defaultBackupFolder()));
}

void BackupStoreTest::readsAreKeptBesideGoodOnes_data()
{
    QTest::addColumn<VerdictKind>("kind");
    QTest::addColumn<QStringList>("existing");
    QTest::addColumn<QString>("kept");
    QTest::addColumn<QString>("replacing"); // with --force
    const QStringList none;
    for (const VerdictKind kind :
         {VerdictKind::Verified, VerdictKind::Consistent, VerdictKind::Unverified}) {
        QTest::addRow("good %d", int(kind)) << kind << none << "a.sav"
                                            << "a.sav";
        // Whether it may be replaced was asked before the read.
        QTest::addRow("good %d over another", int(kind)) << kind << QStringList("a.sav") << "a.sav"
                                                         << "a.sav";
    }
    QTest::newRow("suspicious") << VerdictKind::Suspicious << none << "a.sav"
                                << "a.sav";
    QTest::newRow("suspicious over another")
        << VerdictKind::Suspicious << QStringList("a.sav") << "a.sav.suspicious"
        << "a.sav.suspicious";
    QTest::newRow("suspicious for the second time")
        << VerdictKind::Suspicious << QStringList({"a.sav", "a.sav.suspicious"})
        << "a.sav (2).suspicious"
        << "a.sav.suspicious";
    QTest::newRow("unstable") << VerdictKind::Unstable << none << "a.sav.unstable"
                              << "a.sav.unstable";
    QTest::newRow("unstable for the second time")
        << VerdictKind::Unstable << QStringList("a.sav.unstable") << "a.sav (2).unstable"
        << "a.sav.unstable";
}

// Nobody takes a bad read for a dump, and it never takes the place of a good one.
void BackupStoreTest::readsAreKeptBesideGoodOnes()
{
    QFETCH(VerdictKind, kind);
    QFETCH(QStringList, existing);
    QFETCH(QString, kept);
    QFETCH(QString, replacing);
    const QTemporaryDir folder;
    for (const QString &name : existing)
        QVERIFY(QFile(folder.filePath(name)).open(QIODevice::WriteOnly));
    const QString path = folder.filePath("a.sav");
    QCOMPARE(keptReadPath(path, kind, false), folder.filePath(kept));
    QCOMPARE(keptReadPath(path, kind, true), folder.filePath(replacing));
}

void BackupStoreTest::firstReadsReplaceNothing()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("a.sav");
    for (const char *name : {"a.sav.unverified", "a.sav (2).unverified", "a.sav (3).unverified"}) {
        QCOMPARE(unverifiedPath(path), folder.filePath(name));
        QVERIFY(QFile(folder.filePath(name)).open(QIODevice::WriteOnly));
    }
}

// A file system takes 255 bytes; a complete read must not fail for its mark.
void BackupStoreTest::longNamesMakeRoomForTheirMarks_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("bytes") << QString(255, 'a');
#ifndef Q_OS_WIN // where names have no bytes
    QTest::newRow("letters of two bytes") << QString(127, QChar(0xDC)) + "x";
#endif
}

void BackupStoreTest::longNamesMakeRoomForTheirMarks()
{
    QFETCH(QString, name);
    const QTemporaryDir folder;
    const QString path = folder.filePath(name);
    for (int number = 1; number <= 3; ++number) {
        for (const QString &kept :
             {unverifiedPath(path), keptReadPath(path, VerdictKind::Unstable, false)}) {
            QVERIFY(QFile::encodeName(QFileInfo(kept).fileName()).size() <= 255);
            QVERIFY(!QFile::exists(kept));
            QVERIFY(QFile(kept).open(QIODevice::WriteOnly));
        }
    }
}

GBDRIVER_TEST(BackupStoreTest, none)
#include "backup_store_test.moc"
