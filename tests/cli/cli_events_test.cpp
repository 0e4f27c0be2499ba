// What holds the events of every case against the documented schema finds lines that are spoiled.
#include "cli_case.h"

#include "test_class.h"

#include <QtTest>

namespace
{

const QByteArray kEnd =
    "{\"event\":\"end\",\"exitCode\":0,\"status\":\"done\",\"meaning\":\"x\"}\n";

} // namespace

class CliEventsTest : public QObject
{
    Q_OBJECT

private slots:
    void spoiledLinesAreRefused();
    void otherEventsAreNoticed();
};

void CliEventsTest::spoiledLinesAreRefused()
{
    QStringList names;
    QVector<QByteArray> runs;
    QVector<bool> expected;
    const auto add = [&](const char *name, const QByteArray &lines, bool isValid) {
        names << name;
        runs << lines;
        expected << isValid;
    };
    const QByteArray log = "{\"event\":\"log\",\"level\":\"info\",\"line\":\"x\"}\n";
    add("right", log + kEnd, true);
    add("end alone", kEnd, true);
    add("nothing", QByteArray(), false);
    add("no end", log, false);
    add("end before the end", kEnd + log, false);
    add("two ends", kEnd + kEnd, false);
    add("line break missing", kEnd.trimmed(), false);
    add("no JSON", "Start dump rom...\n" + kEnd, false);
    add("no object", "[]\n" + kEnd, false);
    add("empty line", "\n" + kEnd, false);
    add("unknown event", QByteArray(log).replace("\"log\"", "\"lag\"") + kEnd, false);
    add("unknown word", QByteArray(log).replace("\"info\"", "\"loud\"") + kEnd, false);
    add("unknown key", QByteArray(log).replace("\"line\"", "\"more\":1,\"line\"") + kEnd, false);
    add("key missing", QByteArray(log).replace("\"level\":\"info\",", "") + kEnd, false);
    add("wrong type", QByteArray(log).replace("\"x\"", "7") + kEnd, false);
    add("word of another exit code", QByteArray(kEnd).replace("\"done\"", "\"usage\""), false);
    add("unknown exit code", QByteArray(kEnd).replace(":0,", ":11,"), false);
    add("unknown what", QByteArray("{\"event\":\"detected\",\"what\":\"cat\"}\n") + kEnd, false);
    const QVector<Validation> results = validate(runs);
    QCOMPARE(results.size(), runs.size());
    for (int at = 0; at < runs.size(); ++at)
        QVERIFY2(results[at].problem.isEmpty() == expected[at], qPrintable(names[at]));
}

void CliEventsTest::otherEventsAreNoticed()
{
    const QByteArray log = "{\"event\":\"log\",\"level\":\"info\",\"line\":\"x\"}\n";
    QStringList seen;
    const QStringList problems =
        problemsOfEvents({{"right", "", log + kEnd}, {"other", "written", log + kEnd}}, &seen);
    QCOMPARE(problems, QStringList{"other: the events are \"\", not \"written\""});
    QCOMPARE(seen, (QStringList{"log", "end", "log", "end"}));
}

GBDRIVER_TEST(CliEventsTest, core)
#include "cli_events_test.moc"
