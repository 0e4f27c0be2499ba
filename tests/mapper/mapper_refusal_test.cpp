// Sizes that a mapper cannot have are refused before anything is sent to the cartridge.
#include "mapper_fixture.h"

#include "cart/setting_tables.h"

#include <QtTest>

#include <algorithm>
#include <limits>

namespace
{

// Largest of the tested sizes for which a file is made: save files are no larger.
constexpr int kLargestSave = 1024 * 1024;

// All sizes that a user can choose, and some that nobody has.
QVector<int> sizesToTry()
{
    QVector<int> sizes = {0, 1, 100, 2048, 8191, 8193, 48 * 1024, 32767, 32769, 16 * 1024};
    const auto add = [&](const auto &table) {
        for (const SettingRow &row : table)
            sizes << row.value;
    };
    add(kGbRomSizes);
    add(kGbRamSizes);
    add(kGbaRomSizes);
    add(kGbaSaveSizes);
    std::sort(sizes.begin(), sizes.end());
    sizes.erase(std::unique(sizes.begin(), sizes.end()), sizes.end());
    return sizes;
}

void addRefusedRows(QVector<int> MapperFacts::*allowed, int largest)
{
    QTest::addColumn<int>("mapper");
    QTest::addColumn<int>("size");
    for (int i = 0; i < mapperFacts().size(); ++i) {
        for (const int size : sizesToTry()) {
            if (size <= largest && !(mapperFacts()[i].*allowed).contains(size))
                QTest::newRow(
                    qPrintable(QString("%1 %2 bytes").arg(mapperFacts()[i].name).arg(size)))
                    << i << size;
        }
    }
}

// The selection of the bus, which comes before every job, is all that the reader was sent.
bool nothingWasSent(VirtualReader &reader)
{
    const Traffic sent = trafficOf(reader.counters());
    return sent.commandRuns == 2 && sent.blocks == 2 && sent.reads == 1;
}

} // namespace

class MapperRefusalTest : public QObject
{
    Q_OBJECT

private slots:
    void romSizesThatTheMapperCanNotHave_data()
    {
        addRefusedRows(&MapperFacts::romSizes, std::numeric_limits<int>::max());
    }
    void romSizesThatTheMapperCanNotHave() { refuses(GB_READ_ROM, "ROM"); }

    void saveSizesThatTheMapperCanNotRead_data()
    {
        addRefusedRows(&MapperFacts::ramSizes, std::numeric_limits<int>::max());
    }
    void saveSizesThatTheMapperCanNotRead() { refuses(GB_READ_RAM, "save"); }

    void saveSizesThatTheMapperCanNotWrite_data()
    {
        addRefusedRows(&MapperFacts::ramSizes, kLargestSave);
    }
    void saveSizesThatTheMapperCanNotWrite() { refuses(GB_WRITE_RAM, "save"); }

private:
    void refuses(JobCode operate, const QString &what)
    {
        QFETCH(int, mapper);
        QFETCH(int, size);
        const MapperFacts &facts = mapperFacts()[mapper];
        MapperFixture fixture(facts, facts.romSizes.first(), facts.ramSizes.first());
        const QTemporaryDir folder;
        const QString path = folder.filePath("file.bin");
        const QByteArray before = noise(operate == GB_WRITE_RAM ? size : 1000, 5);
        QVERIFY(writeFile(path, before));
        const QByteArray save = fixture.save();

        const JobOutcome outcome = fixture.run(operate, size, path);
        QVERIFY(outcome.failed());
        const QString reason = outcome.log.filter(kScriptError).join("");
        for (const QString &part : {what, QString("of %1 bytes").arg(size), QString("Choose"),
                                    QString("Nothing was sent to the cartridge.")})
            QVERIFY2(reason.contains(part), qPrintable(outcome.text()));
        QVERIFY(nothingWasSent(fixture.reader()));
        QVERIFY(fileBytes(path) == before);
        QVERIFY(fixture.save() == save);
    }
};

QTEST_GUILESS_MAIN(MapperRefusalTest)
#include "mapper_refusal_test.moc"
