// What a cartridge cannot have or do is refused before anything is sent to it.
#include "mapper_fixture.h"

#include "cart/setting_tables.h"
#include "test_class.h"

#include <QtTest>

#include <algorithm>

namespace
{

constexpr int kKiB = 1024;
constexpr int kMiB = 1024 * kKiB;
// Save files for the tests are no larger.
constexpr int kLargestSave = kMiB;

// What a script takes: all that the kinds have that select it.
struct ScriptRow {
    const char *script;
    MapperKind kind; // of the cartridge in the slot
    int smallestRom; // bytes
    int largestRom;
    QVector<int> saves;
    const char *saveReason; // of refusals
};

const QVector<ScriptRow> &scripts()
{
    using Kind = MapperKind;
    static const QVector<ScriptRow> rows = {
        {"gb_mbc0.nut", Kind::None, 32 * kKiB, 2 * kMiB, {0x2000, 0x8000}, "has 8192 or 32768"},
        {"gb_mbc1.nut", Kind::Mbc1, 32 * kKiB, 2 * kMiB, {0x2000, 0x8000}, "has 8192 or 32768"},
        {"gb_mbc2.nut", Kind::Mbc2, 32 * kKiB, 256 * kKiB, {512}, "has 512 bytes"},
        {"gb_mbc3.nut", Kind::Mbc3, 32 * kKiB, 4 * kMiB, {0x2000, 0x8000, 0x10000}, "or 65536"},
        {"gb_mbc5.nut",
         Kind::Mbc5,
         32 * kKiB,
         8 * kMiB,
         {0x2000, 0x8000, 0x10000, 0x20000},
         "or 131072"},
        {"gb_mbc7.nut", Kind::Mbc7, 32 * kKiB, 2 * kMiB, {}, "serial EEPROM"},
        {"gb_tama5.nut", Kind::Huc1, 32 * kKiB, kMiB, {0x2000, 0x8000}, ""},
    };
    return rows;
}

// All sizes that a user can choose, and some that nobody has.
QVector<int> sizesToTry()
{
    QVector<int> sizes = {0, 1, 100, 2048, 8191, 8193, 48 * kKiB, 32767, 32769, 16 * kKiB};
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

bool takesRom(const ScriptRow &row, int size)
{
    return size >= row.smallestRom && size <= row.largestRom && (size & (size - 1)) == 0;
}

template <class Takes> void addRows(int largest, Takes takes)
{
    QTest::addColumn<int>("script");
    QTest::addColumn<int>("size");
    for (int i = 0; i < scripts().size(); ++i) {
        for (const int size : sizesToTry()) {
            if (size <= largest && !takes(scripts()[i], size))
                QTest::newRow(qPrintable(QString("%1 %2 bytes").arg(scripts()[i].script).arg(size)))
                    << i << size;
        }
    }
}

void addSaveRows(int largest)
{
    addRows(largest, [](const ScriptRow &row, int size) { return row.saves.contains(size); });
}

} // namespace

class MapperRefusalTest : public QObject
{
    Q_OBJECT

private slots:
    void romSizesThatTheMapperCanNotHave_data() { addRows(64 * kMiB, takesRom); }
    void romSizesThatTheMapperCanNotHave()
    {
        QFETCH(int, size);
        refuses(GB_READ_ROM, {QString("cannot read a ROM of %1 bytes, because").arg(size), "KiB"});
    }

    void saveSizesThatTheMapperCanNotRead_data() { addSaveRows(64 * kMiB); }
    void saveSizesThatTheMapperCanNotRead() { refuses(GB_READ_RAM, saveReasons()); }

    void saveSizesThatTheMapperCanNotWrite_data() { addSaveRows(kLargestSave); }
    void saveSizesThatTheMapperCanNotWrite() { refuses(GB_WRITE_RAM, saveReasons()); }

    // The collection must lose power to show another part.
    void romsThatAnMmm01CanNotShowInOnePiece_data()
    {
        QTest::addColumn<int>("script");
        QTest::addColumn<int>("size");
        for (const int size : {4 * kMiB, 8 * kMiB})
            QTest::newRow(qPrintable(QString::number(size))) << 0 << size;
    }
    void romsThatAnMmm01CanNotShowInOnePiece()
    {
        refuses(GB_READ_ROM, {"no more than 2 MiB until it loses power"});
    }

    // Bytes of a save would be commands to a TAMA5. Its script and the one that unknown headers
    // select must both keep away from it.
    void tama5NeverGetsASave_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<int>("size");
        for (const char *script : {"gb_tama5.nut", "gb_mbc5.nut"}) {
            for (const int size : {32, 64, 512})
                QTest::newRow(qPrintable(QString("%1 %2 bytes").arg(script).arg(size)))
                    << script << size;
        }
    }
    void tama5NeverGetsASave()
    {
        QFETCH(QString, script);
        QFETCH(int, size);
        MapperFixture fixture(factsOf(MapperKind::Tama5), 512 * kKiB, 0);
        const JobRun outcome = fixture.run(scriptJob(script, GB_WRITE_RAM, size), noise(size, 1));
        QVERIFY2(!outcome.succeeded(), qPrintable(outcome.text()));
        QVERIFY(fixture.nothingWasSent());
    }

private:
    static QStringList saveReasons()
    {
        QFETCH(int, script);
        QFETCH(int, size);
        const QString name = scripts()[script].script;
        if (name == "gb_tama5.nut")
            return {size < 0x2000 ? "keeps its 32 bytes behind registers" : "has 8192 or 32768"};
        return {scripts()[script].saveReason};
    }

    void refuses(JobCode operate, const QStringList &parts)
    {
        QFETCH(int, script);
        QFETCH(int, size);
        const ScriptRow &row = scripts()[script];
        const MapperFacts &facts = factsOf(row.kind);
        const int ramSize = facts.ramSizes.isEmpty() ? 0 : facts.ramSizes.first();
        MapperFixture fixture(facts, facts.romSizes.first(), ramSize);
        const QByteArray input = operate == GB_WRITE_RAM ? noise(size, 5) : QByteArray();
        const JobRun outcome = fixture.run(scriptJob(row.script, operate, size), input);
        QVERIFY(!outcome.succeeded());
        const QString reason = outcome.result.scriptError;
        for (const QString &part : parts + QStringList({"cannot read", "because", kNothingSent}))
            QVERIFY2(reason.contains(part), qPrintable(outcome.text()));
        QVERIFY(fixture.nothingWasSent());
        QCOMPARE(trafficOf(fixture.reader().counters()).reads, kJobTraffic.reads);
        QCOMPARE(fixture.cartridge().saveChanges(), std::uint64_t{0});
    }
};

GBDRIVER_TEST(MapperRefusalTest, core)
#include "mapper_refusal_test.moc"
