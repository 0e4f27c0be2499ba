// Names of the user's files where any sequence of bytes is a name, and the locale says what they
// mean.
#include "job_bench.h"
#include "locale_codec.h"
#include "test_class.h"
#include "worker/log_text.h"

#include <QtTest>

#include <filesystem>

namespace
{

constexpr int kSize = 0x2000;

// Names that the test's folder holds beside the user's file: what an unfit name may turn into.
const QStringList kReplacedNames = {"??.bin", "__.bin", "\x1A\x1A.bin", ".bin"};

} // namespace

class JobFileNamesTest : public QObject
{
    Q_OBJECT

private slots:
    void namesOfAnyKindWork_data();
    void namesOfAnyKindWork();
    void namesAreEncodedAsTheSystemWantsThem();
    void nameThatCannotBeEncodedIsNoFile_data();
    void nameThatCannotBeEncodedIsNoFile();
};

void JobFileNamesTest::namesOfAnyKindWork_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("blanks") << " a  b .gb";
    QTest::newRow("per cent") << "100%1 %s.gb";
    QTest::newRow("Latin") << QString::fromUtf8("Spiel \u00E4\u00F6\u00DF.gb");
    QTest::newRow("Japanese") << QString::fromUtf8("\u65E5\u672C\u8A9E.gb");
    QTest::newRow("beyond the first plane") << QString::fromUtf8("\U0001F3AE.gb");
    QTest::newRow("markup") << "<b>R&D.gb";
    QTest::newRow("looks like a drive") << "E:\\CMD.CMD";
}

void JobFileNamesTest::namesOfAnyKindWork()
{
    QFETCH(QString, name);
    const LocaleCodec codec("UTF-8");
    JobBench bench;
    bench.setScript(kMovingScript);
    const QByteArray bytes = TestCartridge::gbBytes(0xA000, kSize);
    bench.job.ram_size = kSize;
    bench.job.file_name = bench.path(name);
    QVERIFY(bench.run(2));
    QCOMPARE(bench.fileNames(), QStringList{name});
    QCOMPARE(bench.fileBytes(name), bytes);
    QVERIFY(bench.run(3));
    QCOMPARE(bench.logs().first(), logText("Read file :" + bench.path(name)));
    QCOMPARE(bench.cartridge().written, bytes);
    bench.cartridge().looksUntilErased = 0;
    QVERIFY(bench.run(1));
    QCOMPARE(bench.job.rom_size, kSize);
}

// As bytes on the disk.
void JobFileNamesTest::namesAreEncodedAsTheSystemWantsThem()
{
    const QMap<QByteArray, std::string> encoded = {{"UTF-8", "\xC3\xA4.gb"},
                                                   {"ISO-8859-1", "\xE4.gb"}};
    int count = 0;
    for (const char *encoding : localeCodecs()) {
        if (!encoded.contains(encoding))
            continue;
        const LocaleCodec codec(encoding);
        JobBench bench;
        bench.setScript(kMovingScript);
        bench.job.rom_size = kSize;
        bench.job.file_name = bench.path(QString::fromUtf8("\u00E4.gb"));
        QVERIFY(bench.run(0));
        const std::filesystem::path folder(bench.path(QString()).toStdString());
        QVERIFY(std::filesystem::exists(folder / encoded[encoding]));
        ++count;
    }
    QVERIFY(count > 0);
}

void JobFileNamesTest::nameThatCannotBeEncodedIsNoFile_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<QString>("message");
    for (int operate : {0, 2, 4, 6})
        QTest::addRow("operation %d", operate) << operate << "Save file error.";
    for (int operate : {1, 3, 5, 7})
        QTest::addRow("operation %d", operate) << operate << "Open File error.";
}

// The name must not turn into that of another file of the user's.
void JobFileNamesTest::nameThatCannotBeEncodedIsNoFile()
{
    QFETCH(int, operate);
    QFETCH(QString, message);
    for (const char *encoding : localeCodecs()) {
        const LocaleCodec codec(encoding);
        JobBench bench;
        bench.cartridge().looksUntilErased = 0;
        bench.setScript(kIdleScript);
        for (const QString &name : kReplacedNames)
            bench.addFile(name, QByteArray(kSize, 'o'));
        const QStringList names = bench.fileNames();
        bench.job.rom_size = kSize;
        bench.job.ram_size = kSize;
        bench.job.file_name = bench.path(unfitText(encoding) + ".bin");
        QVERIFY(!bench.run(operate));
        QCOMPARE(bench.logs().last(), message);
        QCOMPARE(bench.fileNames(), names);
        for (const QString &name : kReplacedNames)
            QCOMPARE(bench.fileBytes(name), QByteArray(kSize, 'o'));
    }
}

GBDRIVER_TEST(JobFileNamesTest, core)
#include "job_file_names_test.moc"
