// What of the user's words contradicts the cartridge, for which task, and which reads write.
#include "trust/cartridge_contradiction.h"

#include "cart/setting_tables.h"
#include "test_class.h"

#include <QtTest>

Q_DECLARE_METATYPE(CartridgeValues)
Q_DECLARE_METATYPE(CartridgeTask)
Q_DECLARE_METATYPE(Contradiction)

namespace
{

constexpr CartridgeTask kTasks[] = {CartridgeTask::Dump, CartridgeTask::ReadSave,
                                    CartridgeTask::WriteSave, CartridgeTask::Flash};

// -1: not known.
CartridgeValues values(int mapper, int saveType, int ramSize)
{
    const auto known = [](int value) {
        return value < 0 ? std::optional<int>() : std::optional<int>(value);
    };
    CartridgeValues made;
    made.mapper = known(mapper);
    made.saveType = known(saveType);
    made.ramSize = known(ramSize);
    return made;
}

CartridgeJob reading(JobCode operate, const char *script, int saveType = 0, int ramSize = 8192)
{
    CartridgeJob job;
    job.operate = operate;
    job.scriptPath = QString("mapper/") + script;
    job.saveType = saveType;
    job.ramSize = ramSize;
    return job;
}

} // namespace

class CartridgeContradictionTest : public QObject
{
    Q_OBJECT

private slots:
    void contradictionNeedsTwoWords_data()
    {
        using C = Contradiction;
        QTest::addColumn<CartridgeValues>("said");
        QTest::addColumn<CartridgeValues>("named");
        QTest::addColumn<QVector<C>>("expected"); // for the tasks in their order
        const auto add = [](const char *name, const CartridgeValues &said,
                            const CartridgeValues &named, const QVector<C> &expected) {
            QTest::newRow(name) << said << named << expected;
        };
        const QVector<C> none(4, C::None);
        const QVector<C> mapper = {C::Mapper, C::Mapper, C::Mapper, C::None};
        const QVector<C> type = {C::None, C::SaveType, C::SaveType, C::None};
        const QVector<C> size = {C::None, C::None, C::SaveSize, C::None};
        add("nothing", {}, {}, none);
        add("same", values(1, 2, 8192), values(1, 2, 8192), none);
        add("only said", values(1, 2, 8192), {}, none);
        add("only named", {}, values(1, 2, 8192), none);
        add("mapper", values(6, -1, -1), values(4, -1, 8192), mapper);
        add("mapper none", values(0, -1, -1), values(4, -1, -1), mapper);
        add("type", values(-1, 0, 65536), values(-1, 1, 65536), type);
        add("type, size not said", values(-1, 0, -1), values(-1, 2, 512), type);
        add("size", values(-1, 2, 8192), values(-1, 2, 512), size);
        add("size, type not said", values(-1, -1, 8192), values(-1, 2, 512), size);
        add("GB size", values(4, -1, 8192), values(4, -1, 32768), size);
        add("type and size", values(-1, 0, 65536), values(-1, 2, 512),
            {C::None, C::SaveType, C::SaveType, C::None});
    }
    void contradictionNeedsTwoWords()
    {
        QFETCH(CartridgeValues, said);
        QFETCH(CartridgeValues, named);
        QFETCH(QVector<Contradiction>, expected);
        for (int task = 0; task < expected.size(); ++task)
            QCOMPARE(contradictionOf(kTasks[task], said, named), expected[task]);
    }

    void saveIsNamedByMapperOrTypeAndSize_data()
    {
        QTest::addColumn<CartridgeValues>("used");
        QTest::addColumn<CartridgeValues>("named");
        QTest::addColumn<bool>("isNamed");
        QTest::newRow("GB") << values(4, -1, 8192) << values(4, -1, 8192) << true;
        QTest::newRow("GBA") << values(-1, 1, 65536) << values(-1, 1, 65536) << true;
        QTest::newRow("other size") << values(4, -1, 8192) << values(4, -1, 32768) << false;
        QTest::newRow("other mapper") << values(1, -1, 8192) << values(4, -1, 8192) << false;
        QTest::newRow("other type") << values(-1, 0, 65536) << values(-1, 1, 65536) << false;
        QTest::newRow("no size named") << values(4, -1, 8192) << values(4, -1, -1) << false;
        QTest::newRow("no mapper named") << values(4, -1, 8192) << values(-1, -1, 8192) << false;
        QTest::newRow("nothing named") << values(-1, 0, 32768) << values(-1, -1, -1) << false;
        QTest::newRow("nothing at all") << CartridgeValues() << CartridgeValues() << false;
    }
    void saveIsNamedByMapperOrTypeAndSize()
    {
        QFETCH(CartridgeValues, used);
        QFETCH(CartridgeValues, named);
        QTEST(isNamedSave(used, named), "isNamed");
    }

    void readsThatWriteWhereSavesAre()
    {
        for (const MapperRow &row : kMappers) {
            const bool isTama5 = QString(row.script) == "gb_tama5.nut";
            QCOMPARE(writesWhereSavesAre(reading(GB_READ_ROM, row.script)), isTama5);
            QCOMPARE(writesWhereSavesAre(reading(GB_READ_RAM, row.script)), isTama5);
        }
        QVERIFY(!writesWhereSavesAre(reading(GBA_READ_ROM, kGbaScript, kSaveFlash, 128 * 1024)));
        for (const int type : {kSaveSram, kSaveFlash, kSaveEeprom}) {
            for (const int size : {512, 8192, 32768, 65536, 131072})
                QCOMPARE(writesWhereSavesAre(reading(GBA_READ_RAM, kGbaScript, type, size)),
                         type == kSaveFlash && size == 131072);
        }
    }
};

GBDRIVER_TEST(CartridgeContradictionTest, none)
#include "cartridge_contradiction_test.moc"
