// What natives refuse: too few arguments, arguments of the wrong type, and in which order they
// look.
#include "native_bench.h"
#include "test_class.h"

#include <QtTest>

namespace
{

struct CheckedNative {
    const char *name;
    int operate;
    int integers; // behind dev
};

// Every native that has arguments, for each of its implementations.
constexpr CheckedNative kNatives[] = {
    {"cpu_write", 0, 2}, {"cpu_read", 0, 2},  {"cpu_read", 4, 2},  {"ram_read", 6, 2},
    {"ram_write", 3, 2}, {"ram_write", 7, 2}, {"rom_write", 1, 2}, {"rom_flash_cfg", 1, 1},
    {"cpu_write", 1, 2}, {"cpu_write", 2, 2}, {"cpu_read", 2, 2},  {"cpu_write", 3, 2}};

// Everything but an integer, as a script writes it.
constexpr const char *kWrongValues[] = {"1.0", "1.5", "\"1\"", "null", "true",
                                        "{}",  "[]",  "dev",   "print"};

constexpr char kNumberError[] = "argument number error";
constexpr char kTypeError[] = "argument type error";

QByteArray call(const CheckedNative &native, const QList<QByteArray> &arguments)
{
    return QByteArray(native.name) + "(" + arguments.join(", ") + ");";
}

QList<QByteArray> goodArguments(const CheckedNative &native)
{
    QList<QByteArray> arguments = {"dev"};
    for (int i = 0; i < native.integers; ++i)
        arguments.append("16");
    return arguments;
}

void addCall(const CheckedNative &native, const QByteArray &statement, const char *message)
{
    const QByteArray row = "operation " + QByteArray::number(native.operate) + " " + statement;
    QTest::newRow(row.constData()) << native.operate << statement << QString(message);
}

} // namespace

class NativeArgumentsTest : public QObject
{
    Q_OBJECT

private slots:
    void rightArgumentsAreTaken_data();
    void rightArgumentsAreTaken();
    void wrongArgumentsAreRefused_data();
    void wrongArgumentsAreRefused();
    void batchIsCheckedToItsEnd_data();
    void batchIsCheckedToItsEnd();
    void errorCanBeCaught();
};

void NativeArgumentsTest::rightArgumentsAreTaken_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<QByteArray>("statement");
    QTest::addColumn<QString>("noMessage");
    for (const CheckedNative &native : kNatives) {
        QList<QByteArray> arguments = goodArguments(native);
        addCall(native, call(native, arguments), "");
        // One more is no pair, so that cpu_write ignores it as well.
        arguments.append("\"ignored\"");
        addCall(native, call(native, arguments), "");
    }
}

void NativeArgumentsTest::rightArgumentsAreTaken()
{
    QFETCH(int, operate);
    QFETCH(QByteArray, statement);
    NativeBench bench(operate);
    QVERIFY(bench.run("capture <- " + statement + " print(capture == null);"));
    QCOMPARE(bench.logs(), QStringList{"true"});
    const bool isTransfer = !statement.startsWith("rom_flash_cfg");
    QCOMPARE(bench.operations.size(), isTransfer ? 1 : 0);
}

void NativeArgumentsTest::wrongArgumentsAreRefused_data()
{
    QTest::addColumn<int>("operate");
    QTest::addColumn<QByteArray>("statement");
    QTest::addColumn<QString>("message");
    for (const CheckedNative &native : kNatives) {
        const QList<QByteArray> good = goodArguments(native);
        for (int count = 0; count < good.size(); ++count)
            addCall(native, call(native, good.mid(0, count)), kNumberError);
        for (int place = 1; place < good.size(); ++place) {
            for (const char *wrong : kWrongValues) {
                QList<QByteArray> arguments = good;
                arguments[place] = wrong;
                addCall(native, call(native, arguments), kTypeError);
            }
        }
        // The number counts first, then the types, and dev only last: with a wrong dev that was
        // looked at, the program would stop.
        if (native.integers == 2)
            addCall(native, call(native, {"null", "1.5"}), kNumberError);
        else
            addCall(native, call(native, {"null"}), kNumberError);
        QList<QByteArray> bothWrong = good;
        bothWrong.first() = "null";
        bothWrong.last() = "1.5";
        addCall(native, call(native, bothWrong), kTypeError);
    }
}

void NativeArgumentsTest::wrongArgumentsAreRefused()
{
    QFETCH(int, operate);
    QFETCH(QByteArray, statement);
    QFETCH(QString, message);
    NativeBench bench(operate);
    bench.job.cursor = 3;
    QVERIFY(!bench.run(statement));
    QCOMPARE(bench.errors(), QStringList{message});
    QCOMPARE(bench.operations, QStringList());
    QCOMPARE(bench.drive.calls, QStringList());
    QCOMPARE(bench.progress(), QStringList());
    QCOMPARE(bench.job.cursor, 3);
}

void NativeArgumentsTest::batchIsCheckedToItsEnd_data()
{
    QTest::addColumn<int>("pairs");
    QTest::addColumn<int>("place");
    for (int pairs = 1; pairs <= 8; ++pairs) {
        for (int place = 0; place < 2 * pairs; ++place)
            QTest::addRow("%d pairs, argument %d", pairs, place + 1) << pairs << place;
    }
}

// A wrong argument anywhere in the batch keeps back the good pairs before it as well.
void NativeArgumentsTest::batchIsCheckedToItsEnd()
{
    QFETCH(int, pairs);
    QFETCH(int, place);
    for (const char *wrong : kWrongValues) {
        NativeBench bench(0);
        QList<QByteArray> arguments = {"dev"};
        for (int i = 0; i < 2 * pairs; ++i)
            arguments.append(i == place ? QByteArray(wrong) : QByteArray::number(i));
        QVERIFY(!bench.run(call(kNatives[0], arguments)));
        QCOMPARE(bench.errors(), QStringList{kTypeError});
        QCOMPARE(bench.operations, QStringList());
    }
}

void NativeArgumentsTest::errorCanBeCaught()
{
    NativeBench bench(0);
    QVERIFY(bench.run("try { cpu_read(dev, 0x4000); } catch (message) { print(message); }"
                      "cpu_read(dev, 0x4000, 16);"));
    QCOMPARE(bench.logs(), QStringList{kNumberError});
    QCOMPARE(bench.operations, QStringList{"gbRead 4000 +16 @0"});
}

GBDRIVER_TEST(NativeArgumentsTest, core)
#include "native_arguments_test.moc"
