// Reading DAT files: what is taken from them, and that a file which is none does no harm.
#include "trust/dat_file.h"

#include "files.h"
#include "test_class.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>

namespace
{

Sha1Digest digestOf(char byte)
{
    Sha1Digest digest;
    digest.fill(static_cast<std::uint8_t>(byte));
    return digest;
}

// The digest that digestOf() makes, as a file has it.
QByteArray hexOf(char byte)
{
    return QByteArray(20, byte).toHex();
}

QByteArray rom(const QByteArray &name, const QByteArray &sha1, const QByteArray &more = {})
{
    return "<rom name=\"" + name + "\" size=\"32768\" crc=\"01234567\" sha1=\"" + sha1 + "\" " +
           more + "/>";
}

QByteArray game(const QByteArray &name, const QByteArray &content)
{
    return "<game name=\"" + name + "\"><description>About</description>" + content + "</game>\n";
}

QByteArray datafile(const QByteArray &games)
{
    return "<?xml version=\"1.0\"?>\n"
           "<!DOCTYPE datafile SYSTEM \"https://example.org/datafile.dtd\">\n"
           "<datafile>\n"
           "<header><id>1</id><name>Hand-made games</name><version>3</version></header>\n" +
           games + "</datafile>\n";
}

QStringList titlesOf(const DatFile &dat)
{
    QStringList titles;
    for (const DatEntry &entry : dat.entries)
        titles << entry.title;
    titles.sort();
    return titles;
}

} // namespace

class DatFileTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void headerAndGamesAreRead();
    void titlesComeFromGameAndRom_data();
    void titlesComeFromGameAndRom();
    void otherEncodingsAreRead();
    void uselessRomsAreLeftOut_data();
    void uselessRomsAreLeftOut();
    void entriesAreFoundBySizeAndSha1();
    void entriesAreSorted();
    void firstOfSeveralTitlesIsFound();
    void emptyListIsADatFile();
    void brokenFilesAreRefused_data();
    void brokenFilesAreRefused();
    void bytesThatAreNoTextAreRefused_data();
    void bytesThatAreNoTextAreRefused();
    void longNamesAreCut();
    void entitiesAreRefused_data();
    void entitiesAreRefused();
    void crowdedTagsAreRefused_data();
    void crowdedTagsAreRefused();
    void deepElementsAreRefused();
    void missingFileIsRefused();
    void folderIsRefused();
    void hugeFileIsRefused();
    void largeFileIsRead();

private:
    bool read(const QByteArray &text);

    std::unique_ptr<QTemporaryDir> m_folder;
    DatFile m_dat;
    QString m_path;
    QString m_problem;
};

void DatFileTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_path = m_folder->filePath("list.dat");
    m_dat = DatFile();
    m_dat.name = "as before";
    m_problem.clear();
}

bool DatFileTest::read(const QByteArray &text)
{
    putFile(m_path, text);
    return readDatFile(m_path, &m_dat, &m_problem);
}

void DatFileTest::headerAndGamesAreRead()
{
    QVERIFY2(read(datafile(game("Some Hack (v1.2)", rom("hack.gb", hexOf('\x12'))))),
             qPrintable(m_problem));
    QCOMPARE(m_dat.name, QString("Hand-made games"));
    QCOMPARE(m_dat.leftOut, 0);
    QCOMPARE(m_dat.entries.size(), 1);
    QCOMPARE(m_dat.entries[0].title, QString("Some Hack (v1.2)"));
    QCOMPARE(m_dat.entries[0].size, quint64{32768});
    QCOMPARE(m_dat.entries[0].sha1, digestOf('\x12'));
}

void DatFileTest::titlesComeFromGameAndRom_data()
{
    QTest::addColumn<QByteArray>("games");
    QTest::addColumn<QStringList>("titles"); // sorted
    const QByteArray one = rom("a.gb", hexOf('\1'));
    const QByteArray two = rom("b.gb", hexOf('\2'));
    QTest::newRow("one ROM") << game("Game", one) << QStringList{"Game"};
    QTest::newRow("two ROMs") << game("Game", one + two) << QStringList{"Game: a.gb", "Game: b.gb"};
    QTest::newRow("two ROMs, one of them bad")
        << game("Game", one + rom("b.gb", hexOf('\2'), "status=\"baddump\""))
        << QStringList{"Game: a.gb"};
    QTest::newRow("two games") << game("First", one) + game("Second", two)
                               << QStringList{"First", "Second"};
    QTest::newRow("machine") << "<machine name=\"Machine\">" + one + "</machine>"
                             << QStringList{"Machine"};
    QTest::newRow("game without a name") << "<game>" + one + "</game>" << QStringList{"a.gb"};
    QTest::newRow("ROM with content")
        << game("Game", "<rom name=\"a\" size=\"1\" sha1=\"" + hexOf('\1') +
                            "\"><note>more</note>text</rom>")
        << QStringList{"Game"};
    QTest::newRow("letters of UTF-8")
        << game("Pok\xC3\xA9mon \xE3\x83\xBB \xF0\x9F\x8E\xAE", one)
        << QStringList{QString::fromUtf8("Pok\xC3\xA9mon \xE3\x83\xBB \xF0\x9F\x8E\xAE")};
    QTest::newRow("escaped characters")
        << game("Tom &amp; &quot;Jerry&quot; &#233; &#x30FB; &lt;3", one)
        << QStringList{QString::fromUtf8("Tom & \"Jerry\" \xC3\xA9 \xE3\x83\xBB <3")};
    QTest::newRow("commands to the terminal") << game("A\xC2\x9B"
                                                      "31mB&#x9D;&#10;C",
                                                      one)
                                              << QStringList{"A 31mB  C"};
    QTest::newRow("elements between") << "<!-- note --><release name=\"x\"/><disks><rom/></disks>" +
                                             game("Game", "<disk name=\"d\"/>" + one)
                                      << QStringList{"Game"};
}

void DatFileTest::titlesComeFromGameAndRom()
{
    QFETCH(QByteArray, games);
    QVERIFY2(read(datafile(games)), qPrintable(m_problem));
    QTEST(titlesOf(m_dat), "titles");
}

void DatFileTest::otherEncodingsAreRead()
{
    QByteArray text = datafile(game("Pok\xE9mon", rom("a", hexOf('\1'))));
    text.replace("<?xml version=\"1.0\"?>", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>");
    QVERIFY2(read(text), qPrintable(m_problem));
    QCOMPARE(m_dat.entries[0].title, QString::fromUtf8("Pok\xC3\xA9mon"));
}

void DatFileTest::uselessRomsAreLeftOut_data()
{
    QTest::addColumn<QByteArray>("rom");
    QTest::addColumn<bool>("isTaken");
    const QByteArray sha1 = hexOf('\1');
    QTest::newRow("plain") << rom("a", sha1) << true;
    QTest::newRow("verified") << rom("a", sha1, "status=\"verified\"") << true;
    QTest::newRow("good") << rom("a", sha1, "status=\"good\"") << true;
    QTest::newRow("SHA-1 in capitals") << rom("a", QByteArray(40, 'A')) << true;
    QTest::newRow("size 0") << QByteArray("<rom name=\"a\" size=\"0\" sha1=\"" + sha1 + "\"/>")
                            << true;
    QTest::newRow("bad") << rom("a", sha1, "status=\"baddump\"") << false;
    QTest::newRow("bad in capitals") << rom("a", sha1, "status=\"BadDump\"") << false;
    QTest::newRow("missing in capitals") << rom("a", sha1, "status=\"NODUMP\"") << false;
    QTest::newRow("missing") << rom("a", sha1, "status=\"nodump\"") << false;
    QTest::newRow("no SHA-1") << QByteArray("<rom name=\"a\" size=\"1\" crc=\"01234567\"/>")
                              << false;
    QTest::newRow("empty SHA-1") << rom("a", "") << false;
    QTest::newRow("SHA-1 too short") << rom("a", sha1.left(38)) << false;
    QTest::newRow("SHA-1 too long") << rom("a", sha1 + "00") << false;
    QTest::newRow("SHA-1 and a letter") << rom("a", sha1 + "g") << false;
    QTest::newRow("SHA-1 with other letters") << rom("a", QByteArray(40, 'g')) << false;
    QTest::newRow("SHA-1 with spaces") << rom("a", sha1.left(38) + "  ") << false;
    QTest::newRow("no size") << QByteArray("<rom name=\"a\" sha1=\"" + sha1 + "\"/>") << false;
    QTest::newRow("size no number")
        << QByteArray("<rom name=\"a\" size=\"32K\" sha1=\"" + sha1 + "\"/>") << false;
    QTest::newRow("negative size")
        << QByteArray("<rom name=\"a\" size=\"-1\" sha1=\"" + sha1 + "\"/>") << false;
}

void DatFileTest::uselessRomsAreLeftOut()
{
    QFETCH(QByteArray, rom);
    QFETCH(bool, isTaken);
    QVERIFY2(read(datafile(game("Good", ::rom("g", hexOf('\x7F'))) + game("Other", rom))),
             qPrintable(m_problem));
    QCOMPARE(titlesOf(m_dat), isTaken ? (QStringList{"Good", "Other"}) : QStringList{"Good"});
    QCOMPARE(m_dat.leftOut, isTaken ? 0 : 1);
}

void DatFileTest::entriesAreFoundBySizeAndSha1()
{
    QByteArray games;
    for (const char byte : {'\x80', '\x01', '\xFF', '\x00', '\x7F'})
        games += game(hexOf(byte), rom("r", hexOf(byte)));
    QVERIFY2(read(datafile(games)), qPrintable(m_problem));
    for (const char byte : {'\x80', '\x01', '\xFF', '\x00', '\x7F'}) {
        const DatEntry *entry = findInDat(m_dat, 32768, digestOf(byte));
        QVERIFY2(entry, hexOf(byte).constData());
        QCOMPARE(entry->title, QString(hexOf(byte)));
        QVERIFY(!findInDat(m_dat, 32769, digestOf(byte)));
    }
    QVERIFY(!findInDat(m_dat, 32768, digestOf('\x02')));
    Sha1Digest almost = digestOf('\x7F');
    almost[19] = 0x7E;
    QVERIFY(!findInDat(m_dat, 32768, almost));
    QVERIFY(!findInDat(DatFile(), 32768, almost));
}

void DatFileTest::entriesAreSorted()
{
    QVERIFY(read(datafile(game("a", rom("a", hexOf('\3'))) + game("b", rom("b", hexOf('\1'))) +
                          game("c", rom("c", hexOf('\2'))))));
    QVERIFY(std::is_sorted(m_dat.entries.begin(), m_dat.entries.end(),
                           [](const DatEntry &a, const DatEntry &b) { return a.sha1 < b.sha1; }));
}

void DatFileTest::firstOfSeveralTitlesIsFound()
{
    QByteArray games;
    for (int number = 0; number < 100; ++number)
        games += game(QByteArray::number(number), rom("r", hexOf(number % 2 == 0 ? '\1' : '\2')));
    QVERIFY2(read(datafile(games)), qPrintable(m_problem));
    QCOMPARE(findInDat(m_dat, 32768, digestOf('\1'))->title, QString("0"));
    QCOMPARE(findInDat(m_dat, 32768, digestOf('\2'))->title, QString("1"));
}

void DatFileTest::emptyListIsADatFile()
{
    QVERIFY2(read("<datafile/>"), qPrintable(m_problem));
    QVERIFY(m_dat.name == "list.dat");
    QVERIFY(m_dat.entries.isEmpty());
}

void DatFileTest::brokenFilesAreRefused_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("reason");
    const QByteArray whole = datafile(game("Game", rom("a", hexOf('\1'))));
    QTest::newRow("empty") << QByteArray() << 1 << QString();
    QTest::newRow("other form") << QByteArray("datfile (\n\tname \"x\"\n)\n") << 1 << QString();
    QTest::newRow("bytes") << QByteArray(4096, '\0') << 1 << QString();
    QTest::newRow("web page") << QByteArray("<!DOCTYPE html>\n<html><body/></html>\n") << 2
                              << QString("the root element is <html>, not <datafile>");
    QTest::newRow("cut off") << whole.left(whole.indexOf("</game>")) << 5 << QString();
    QTest::newRow("cut off inside a tag") << whole.left(whole.indexOf("crc=")) << 5 << QString();
    QTest::newRow("wrong end tag")
        << QByteArray(whole).replace("</game>", "</rom>") << 5 << QString();
    QTest::newRow("unescaped character")
        << QByteArray(whole).replace("Game\"", "A & B\"") << 5 << QString();
    QTest::newRow("text behind the end") << whole + "more" << 7 << QString();
    QTest::newRow("second root") << whole + "<datafile/>" << 7 << QString();
    QTest::newRow("element in the name")
        << QByteArray(whole).replace("Hand-made", "<b>Hand</b>-made") << 4 << QString();
}

void DatFileTest::brokenFilesAreRefused()
{
    QFETCH(QByteArray, text);
    QFETCH(int, line);
    QFETCH(QString, reason);
    QVERIFY(!read(text));
    const QString start =
        QString("%1: line %2: not a DAT file in its XML form: ").arg(m_path).arg(line);
    QVERIFY2(m_problem.startsWith(start + reason), qPrintable(m_problem));
    QVERIFY2(m_problem.size() > start.size(), qPrintable(m_problem));
    QCOMPARE(m_dat.name, QString("as before"));
}

void DatFileTest::bytesThatAreNoTextAreRefused_data()
{
    QTest::addColumn<QByteArray>("text");
    const QByteArray whole = datafile(game("Game", rom("a", hexOf('\1'))));
    QTest::newRow("not UTF-8") << QByteArray(whole).replace("Game\"", "Pok\xE9mon\"");
    QTest::newRow("half a letter") << whole + "\xC3";
    QTest::newRow("half a letter of UTF-16") << QByteArray("\xFF\xFE<\0d", 5);
}

void DatFileTest::bytesThatAreNoTextAreRefused()
{
    QFETCH(QByteArray, text);
    QVERIFY(!read(text));
    QVERIFY2(m_problem.contains("no text in its encoding"), qPrintable(m_problem));
    QCOMPARE(m_dat.name, QString("as before"));
}

// One name and a file full of ROMs would fill any memory.
void DatFileTest::longNamesAreCut()
{
    const QByteArray name = QByteArray(254, 'x') + "\xF0\x9F\x8E\xAE";
    QVERIFY2(read(datafile(game(name, rom("a", hexOf('\1'))) +
                           game("G", rom(name, hexOf('\2')) + rom("b", hexOf('\3'))))),
             qPrintable(m_problem));
    QCOMPARE(titlesOf(m_dat), (QStringList{"G: b", "G: " + QString(252, 'x'), QString(254, 'x')}));
    QVERIFY2(read(datafile({}).replace("Hand-made games", QByteArray(256, 'x'))),
             qPrintable(m_problem));
    QCOMPARE(m_dat.name, QString(255, 'x'));
}

void DatFileTest::entitiesAreRefused_data()
{
    QTest::addColumn<QByteArray>("declarations");
    QTest::addColumn<QByteArray>("use");
    QByteArray nested = "<!ENTITY a0 \"aaaaaaaaaa\">\n";
    QByteArray parameters = "<!ENTITY % p0 \"<!-- aaaaaaaaaa -->\">\n";
    for (int level = 1; level < 30; ++level) {
        const QByteArray number = QByteArray::number(level);
        const QByteArray below = QByteArray::number(level - 1);
        nested += "<!ENTITY a" + number + " \"" + ("&a" + below + ";").repeated(10) + "\">\n";
        parameters += "<!ENTITY % p" + number + " \"" + ("%p" + below + ";").repeated(10) + "\">\n";
    }
    QTest::newRow("nested") << nested << QByteArray("&a29;");
    QTest::newRow("declared only") << nested << QByteArray();
    QTest::newRow("file of the computer")
        << QByteArray("<!ENTITY file SYSTEM \"file:///etc/hostname\">\n") << QByteArray("&file;");
    QTest::newRow("itself") << QByteArray("<!ENTITY a \"&a;\">\n") << QByteArray("&a;");
    QTest::newRow("of the declarations") << parameters + "%p29;\n" << QByteArray();
}

void DatFileTest::entitiesAreRefused()
{
    QFETCH(QByteArray, declarations);
    QFETCH(QByteArray, use);
    QVERIFY(!read("<!DOCTYPE datafile [\n" + declarations + "]>\n<datafile><header><name>" + use +
                  "</name></header></datafile>\n"));
    QVERIFY2(m_problem.contains("declares a document type of its own"), qPrintable(m_problem));
    QCOMPARE(m_dat.name, QString("as before"));
}

// The parser would take minutes for each of them.
void DatFileTest::crowdedTagsAreRefused_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("isRead");
    const auto attributes = [](int count, const QByteArray &value = "") {
        QByteArray all;
        for (int i = 0; i < count; ++i)
            all += " a" + QByteArray::number(i) + "=\"" + value + "\"";
        return all;
    };
    const auto with = [](const QByteArray &tag) { return "<datafile>" + tag + "</datafile>"; };
    const QByteArray crowd = attributes(20000);
    QTest::newRow("as many as may be") << with("<game" + attributes(64) + "/>") << true;
    QTest::newRow("one more") << with("<game" + attributes(65) + "/>") << false;
    QTest::newRow("many") << with("<game" + crowd + "/>") << false;
    QTest::newRow("in single quotes")
        << with("<game" + QByteArray(crowd).replace('"', '\'') + "/>") << false;
    QTest::newRow("ends of tags in the values")
        << with("<game" + attributes(20000, "&gt;>") + "/>") << false;
    QTest::newRow("behind a quote in a comment")
        << with("<!-- don't --><game" + crowd + "/>") << false;
    QTest::newRow("behind a quote in a text") << with("don't <game" + crowd + "/>") << false;
    QTest::newRow("behind a quote in CDATA")
        << with("<![CDATA[ <\" ]]><game" + crowd + "/>") << false;
    QTest::newRow("behind an instruction")
        << "<?note it's ' > ?>" + with("<game" + crowd + "/>") << false;
    QTest::newRow("behind a document type with quotes in it")
        << "<!DOCTYPE datafile [<!-- ' -->]>" + with("<game" + crowd + "/>") << false;
    const QString wide =
        QChar(QChar::ByteOrderMark) + QString::fromLatin1(with("<game" + crowd + "/>"));
    QTest::newRow("UTF-16") << QByteArray(reinterpret_cast<const char *>(wide.utf16()),
                                          2 * wide.size())
                            << false;
    const QByteArray declared = "<?xml version=\"1.0\" encoding=\"UTF-7\"?>";
    QTest::newRow("in an encoding without brackets") << declared + with("<game" + crowd + "/>")
                                                                       .replace('<', "+ADw-")
                                                                       .replace('=', "+AD0-")
                                                                       .replace('>', "+AD4-")
                                                     << false;
    QTest::newRow("many in a comment") << with("<!-- <game" + crowd + "/> -->") << true;
    QTest::newRow("many in a value")
        << with("<game name='" + QByteArray("=").repeated(1000) + "'/>") << true;
}

void DatFileTest::crowdedTagsAreRefused()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, isRead);
    QVERIFY2(read(text) == isRead, qPrintable(m_problem));
    // Not every Qt knows all encodings.
    QVERIFY2(isRead || m_problem.contains("more than 64 attributes") ||
                 m_problem.contains("document type of its own") ||
                 m_problem.contains("Encoding UTF-7 is unsupported"),
             qPrintable(m_problem));
}

void DatFileTest::deepElementsAreRefused()
{
    QVERIFY(!read("<datafile>\n" + QByteArray("<a>").repeated(1000000)));
    QVERIFY2(m_problem.contains("line 2: ") && m_problem.contains("too many elements"),
             qPrintable(m_problem));
}

void DatFileTest::missingFileIsRefused()
{
    QVERIFY(!readDatFile(m_folder->filePath("none.dat"), &m_dat, &m_problem));
    QVERIFY2(m_problem.startsWith(m_folder->filePath("none.dat: ")), qPrintable(m_problem));
}

void DatFileTest::folderIsRefused()
{
    QVERIFY(!readDatFile(m_folder->path(), &m_dat, &m_problem));
    QVERIFY2(m_problem.startsWith(m_folder->path() + ": "), qPrintable(m_problem));
}

void DatFileTest::hugeFileIsRefused()
{
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.resize(kLargestDatBytes + 1));
    QVERIFY(!readDatFile(m_path, &m_dat, &m_problem));
    QVERIFY2(m_problem.contains("larger than 64 MiB"), qPrintable(m_problem));
}

void DatFileTest::largeFileIsRead()
{
    QByteArray games;
    int count = 0;
    while (games.size() < 10 * 1024 * 1024) {
        const QByteArray number = QByteArray::number(++count);
        games += game("Game " + number, rom(number + ".gba", number.rightJustified(40, '0')));
    }
    QVERIFY2(read(datafile(games)), qPrintable(m_problem));
    QCOMPARE(m_dat.entries.size(), count);
    Sha1Digest last{};
    const QByteArray sha1 = QByteArray::fromHex(QByteArray::number(count).rightJustified(40, '0'));
    std::copy(sha1.begin(), sha1.end(), last.begin());
    QCOMPARE(findInDat(m_dat, 32768, last)->title, QString("Game %1").arg(count));
}

GBDRIVER_TEST(DatFileTest, none)
#include "dat_file_test.moc"
