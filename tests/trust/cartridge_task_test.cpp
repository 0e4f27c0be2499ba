// From what is known of a cartridge to a job: every field, and what is missing.
#include "trust/cartridge_task.h"

#include "cart/setting_tables.h"
#include "test_class.h"

#include <QtTest>

Q_DECLARE_METATYPE(CartridgeTask)
Q_DECLARE_METATYPE(CartridgeValues)
Q_DECLARE_METATYPE(MissingValue)

namespace
{

const CartridgeValues kGb = {kSystemGb, 4, 65536, 8192, {}};
const CartridgeValues kGba = {kSystemGba, {}, 4194304, 512, kSaveEeprom};

template <typename Change> CartridgeValues with(CartridgeValues values, Change change)
{
    change(values);
    return values;
}

// "0 gb_mbc5.nut rom 65536 ram 0 type 0"
QString textOf(const CartridgeJob &job)
{
    return QString("%1 %2 rom %3 ram %4 type %5")
        .arg(job.operate)
        .arg(QFileInfo(job.scriptPath).fileName())
        .arg(job.romSize)
        .arg(job.ramSize)
        .arg(job.saveType);
}

} // namespace

class CartridgeTaskTest : public QObject
{
    Q_OBJECT

private slots:
    void valuesMakeAJob_data()
    {
        QTest::addColumn<CartridgeTask>("task");
        QTest::addColumn<CartridgeValues>("values");
        QTest::addColumn<QString>("job");
        const auto add = [](const char *name, CartridgeTask task, const CartridgeValues &values,
                            const char *job) { QTest::newRow(name) << task << values << job; };
        using Values = CartridgeValues;
        using Task = CartridgeTask;
        add("GB dump", Task::Dump, kGb, "0 gb_mbc5.nut rom 65536 ram 0 type 0");
        add("GB flash", Task::Flash, kGb, "1 gb_mbc5.nut rom 0 ram 0 type 0");
        add("GB read", Task::ReadSave, kGb, "2 gb_mbc5.nut rom 0 ram 8192 type 0");
        add("GB write", Task::WriteSave, kGb, "3 gb_mbc5.nut rom 0 ram 8192 type 0");
        add("GBA dump", Task::Dump, kGba, "4 gba.nut rom 4194304 ram 0 type 0");
        add("GBA flash", Task::Flash, kGba, "5 gba.nut rom 0 ram 0 type 0");
        add("GBA read", Task::ReadSave, kGba, "6 gba.nut rom 0 ram 512 type 2");
        add("GBA write", Task::WriteSave, kGba, "7 gba.nut rom 0 ram 512 type 2");
        add("flash without sizes", Task::Flash, {kSystemGb, 1, {}, {}, {}},
            "1 gb_mbc1.nut rom 0 ram 0 type 0");
        add("GB dump without a save", Task::Dump, with(kGb, [](Values &v) { v.ramSize.reset(); }),
            "0 gb_mbc5.nut rom 65536 ram 0 type 0");
        add("GB save without a ROM", Task::ReadSave,
            with(kGb, [](Values &v) { v.romSize.reset(); }), "2 gb_mbc5.nut rom 0 ram 8192 type 0");
        add("GBA dump without a save type", Task::Dump,
            with(kGba, [](Values &v) { v.saveType.reset(); }),
            "4 gba.nut rom 4194304 ram 0 type 0");
    }
    void valuesMakeAJob()
    {
        QFETCH(CartridgeTask, task);
        QFETCH(CartridgeValues, values);
        CartridgeJob job;
        QCOMPARE(makeJob(task, values, &job), MissingValue::None);
        QTEST(textOf(job), "job");
        QCOMPARE(QFileInfo(job.scriptPath).path(), mapperFolder());
        QCOMPARE(job.flashWidth, 0);
    }

    void everyMapperHasItsScript()
    {
        for (const MapperRow &row : kMappers) {
            CartridgeJob job;
            QCOMPARE(makeJob(CartridgeTask::Dump, {kSystemGb, row.value, 32768, {}, {}}, &job),
                     MissingValue::None);
            QCOMPARE(job.scriptPath, mapperFolder() + "/" + row.script);
        }
    }

    void missingValueIsNamed_data()
    {
        QTest::addColumn<QVector<CartridgeTask>>("tasks");
        QTest::addColumn<CartridgeValues>("values");
        QTest::addColumn<MissingValue>("missing");
        using Values = CartridgeValues;
        const QVector<CartridgeTask> all = {CartridgeTask::Dump, CartridgeTask::ReadSave,
                                            CartridgeTask::WriteSave, CartridgeTask::Flash};
        const QVector<CartridgeTask> saves = {CartridgeTask::ReadSave, CartridgeTask::WriteSave};
        const QVector<CartridgeTask> dump = {CartridgeTask::Dump};
        QTest::newRow("nothing known") << all << Values() << MissingValue::System;
        QTest::newRow("no system")
            << all << with(kGb, [](Values &v) { v.system.reset(); }) << MissingValue::System;
        QTest::newRow("no mapper")
            << all << with(kGb, [](Values &v) { v.mapper.reset(); }) << MissingValue::Mapper;
        QTest::newRow("no ROM size")
            << dump << with(kGb, [](Values &v) { v.romSize.reset(); }) << MissingValue::RomSize;
        QTest::newRow("no save size")
            << saves << with(kGb, [](Values &v) { v.ramSize.reset(); }) << MissingValue::SaveSize;
        QTest::newRow("GBA, no ROM size")
            << dump << with(kGba, [](Values &v) { v.romSize.reset(); }) << MissingValue::RomSize;
        QTest::newRow("GBA, no save type")
            << saves << with(kGba, [](Values &v) { v.saveType.reset(); }) << MissingValue::SaveType;
        QTest::newRow("GBA, no save size")
            << saves << with(kGba, [](Values &v) { v.ramSize.reset(); }) << MissingValue::SaveSize;
        QTest::newRow("GBA, nothing of the save")
            << saves << Values{kSystemGba, {}, {}, {}, {}} << MissingValue::SaveType;
        QTest::newRow("EEPROM of 64 KiB")
            << saves << with(kGba, [](Values &v) { v.ramSize = 65536; }) << MissingValue::SavePair;
        QTest::newRow("FLASH of 512 bytes")
            << saves << with(kGba, [](Values &v) { v.saveType = kSaveFlash; })
            << MissingValue::SavePair;
    }
    void missingValueIsNamed()
    {
        QFETCH(QVector<CartridgeTask>, tasks);
        QFETCH(CartridgeValues, values);
        QFETCH(MissingValue, missing);
        for (const CartridgeTask task : tasks) {
            CartridgeJob job;
            QCOMPARE(makeJob(task, values, &job), missing);
        }
    }

    void offeredPairsOfASaveAreJobs()
    {
        const QVector<QPair<int, int>> pairs = {{kSaveSram, 32768},  {kSaveSram, 65536},
                                                {kSaveFlash, 65536}, {kSaveFlash, 131072},
                                                {kSaveEeprom, 512},  {kSaveEeprom, 8192}};
        for (const auto &type : kGbaSaveTypes) {
            for (const int size : {512, 8192, 32768, 65536, 131072}) {
                CartridgeJob job;
                QCOMPARE(
                    makeJob(CartridgeTask::ReadSave, {kSystemGba, {}, {}, size, type.value}, &job),
                    pairs.contains({type.value, size}) ? MissingValue::None
                                                       : MissingValue::SavePair);
            }
        }
    }

    void readingJobIsThatOfTheSameMemory()
    {
        CartridgeJob job;
        QCOMPARE(makeJob(CartridgeTask::WriteSave, kGb, &job), MissingValue::None);
        QCOMPARE(textOf(saveReadingJob(job)), QString("2 gb_mbc5.nut rom 0 ram 8192 type 0"));
        QCOMPARE(makeJob(CartridgeTask::WriteSave, kGba, &job), MissingValue::None);
        QCOMPARE(textOf(saveReadingJob(job)), QString("6 gba.nut rom 0 ram 512 type 2"));
        QCOMPARE(makeJob(CartridgeTask::Flash, kGb, &job), MissingValue::None);
        QCOMPARE(textOf(romReadingJob(job, 131072)),
                 QString("0 gb_mbc5.nut rom 131072 ram 0 type 0"));
    }
};

GBDRIVER_TEST(CartridgeTaskTest, core)
#include "cartridge_task_test.moc"
