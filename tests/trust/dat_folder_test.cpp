// The user's folder of DAT files: what is read of it, and what a ROM gains by it.
#include "trust/dat_folder.h"

#include "files.h"
#include "samples.h"
#include "test_class.h"
#include "trust/judged_job.h"

#include <QCryptographicHash>
#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

namespace
{

QByteArray datWith(const QByteArray &header, const QByteArray &image)
{
    const QByteArray sha1 = QCryptographicHash::hash(image, QCryptographicHash::Sha1).toHex();
    return "<datafile>" + header + "<game name=\"My Game\"><rom name=\"a.gb\" size=\"" +
           QByteArray::number(image.size()) + "\" sha1=\"" + sha1 + "\"/></game></datafile>";
}

} // namespace

class DatFolderTest : public QObject
{
    Q_OBJECT

private slots:
    // Below a data directory that is only for tests.
    void init()
    {
        qputenv("HOME", m_home.path().toLocal8Bit());
        QStandardPaths::setTestModeEnabled(true);
        QVERIFY(datFolder().endsWith("/gbdriver/dats"));
        QVERIFY(QDir().mkpath(datFolder()));
    }
    void cleanup()
    {
        QVERIFY(QDir(datFolder()).removeRecursively());
        QStandardPaths::setTestModeEnabled(false);
    }

    void folderThatIsNotThereHasNone()
    {
        const DatFolder read = readDatFolder(m_home.filePath("nothing"));
        QVERIFY(read.tables.isEmpty() && read.problems.isEmpty());
    }

    void filesAreReadInTheOrderOfTheirNames()
    {
        put("b.DAT", datWith("<header><name>Second</name></header>", "b"));
        put("a.xml", datWith("", "a"));
        put("c.txt", datWith("", "c"));
        put("d.dat", "no table");
        const DatFolder read = readDatFolder(datFolder());
        QCOMPARE(read.tables.size(), 2);
        QCOMPARE(read.tables[0].name, QString("a.xml"));
        QCOMPARE(read.tables[1].name, QString("Second"));
        QCOMPARE(read.problems.size(), 1);
        QVERIFY2(read.problems[0].startsWith(datFolder() + "/d.dat: "),
                 qPrintable(read.problems[0]));
    }

    void romIsLookedUpInTheFolder()
    {
        const QByteArray image = toByteArray(gbImage());
        const QString rom = m_home.filePath("game.gb");
        putFile(rom, image);
        QCOMPARE(judgeRomFile(rom).kind, JudgementKind::Unverified);
        put("mine.dat", datWith("", image));
        put("spoiled.dat", "<datafile>");
        const JudgedJob judged = judgeRomFile(rom);
        QCOMPARE(judged.kind, JudgementKind::Verified);
        QCOMPARE(judged.verdict.title, QString("My Game"));
        QCOMPARE(judged.tableProblems.size(), 1);
    }

private:
    void put(const QString &name, const QByteArray &text)
    {
        putFile(datFolder() + '/' + name, text);
    }

    QTemporaryDir m_home;
};

GBDRIVER_TEST(DatFolderTest, core)
#include "dat_folder_test.moc"
