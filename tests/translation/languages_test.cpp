// The languages that the project has: complete, and right as far as rules can tell.
#include "process_run.h"
#include "test_class.h"
#include "text_rules.h"

#include <QTemporaryDir>

namespace
{

constexpr int kMostShown = 40;

struct LanguageFile {
    const char *name;
    const char *code;
    Language language;
};

const LanguageFile kFiles[] = {{"gb3_chs.ts", "zh_CN", Language::Chinese},
                               {"gb3_jpn.ts", "ja", Language::Japanese}};

QStringList keysOf(const TsFile &file)
{
    QStringList keys;
    for (const TsEntry &entry : file.entries)
        keys << keyOf(entry);
    keys.sort();
    return keys;
}

// In `list` and not in `other`.
QStringList without(QStringList list, const QStringList &other)
{
    for (const QString &key : other)
        list.removeOne(key);
    return list;
}

// Names the first ones: of an untranslated file there would be hundreds.
QString shown(const QStringList &faults)
{
    return QString("%1 in all\n%2").arg(faults.size()).arg(faults.mid(0, kMostShown).join('\n'));
}

} // namespace

class LanguagesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void fileHoldsTheTextsOfTheSources_data() { addFiles(); }
    void fileHoldsTheTextsOfTheSources();
    void everyEntryIsRight_data() { addFiles(); }
    void everyEntryIsRight();
    void entriesFitEachOther_data() { addFiles(); }
    void entriesFitEachOther();

private:
    static void addFiles();

    TsFile m_found; // in the sources
};

// What lupdate cannot place it leaves out and says so.
void LanguagesTest::initTestCase()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("found.ts");
    const ProcessRun run =
        runProcess(LUPDATE_PROGRAM, {SOURCE_FOLDER "/src", "-ts", path, "-locations", "none"});
    QVERIFY2(run.exitCode == 0, run.errors.constData());
    QCOMPARE(run.errors, QByteArray());
    m_found = readTs(path);
    QCOMPARE(m_found.error, QString());
    QVERIFY(m_found.entries.size() > 300);
}

void LanguagesTest::addFiles()
{
    QTest::addColumn<int>("file");
    for (int i = 0; i < 2; ++i)
        QTest::newRow(kFiles[i].name) << i;
}

void LanguagesTest::fileHoldsTheTextsOfTheSources()
{
    QFETCH(int, file);
    const TsFile ts = readTs(QString(SOURCE_FOLDER "/translations/") + kFiles[file].name);
    QCOMPARE(ts.error, QString());
    QCOMPARE(ts.language, QString(kFiles[file].code));
    QCOMPARE(without(keysOf(m_found), keysOf(ts)), QStringList()); // it lacks
    QCOMPARE(without(keysOf(ts), keysOf(m_found)), QStringList()); // it has too many
}

void LanguagesTest::everyEntryIsRight()
{
    QFETCH(int, file);
    const TsFile ts = readTs(QString(SOURCE_FOLDER "/translations/") + kFiles[file].name);
    QStringList faults;
    for (const TsEntry &entry : ts.entries) {
        const QStringList own = faultsOf(entry, kFiles[file].language);
        if (!own.isEmpty())
            faults << keyOf(entry) + " = " + entry.translation + ": " + own.join("; ");
    }
    QVERIFY2(faults.isEmpty(), qPrintable(shown(faults)));
}

void LanguagesTest::entriesFitEachOther()
{
    QFETCH(int, file);
    const TsFile ts = readTs(QString(SOURCE_FOLDER "/translations/") + kFiles[file].name);
    const QStringList faults = faultsAmong(ts.entries, kFiles[file].language);
    QVERIFY2(faults.isEmpty(), qPrintable(shown(faults)));
}

GBDRIVER_TEST(LanguagesTest, none)
#include "languages_test.moc"
