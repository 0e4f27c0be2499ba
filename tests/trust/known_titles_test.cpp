// Which table names a ROM, and what its bytes say beside that.
#include "trust/known_titles.h"

#include "samples.h"
#include "test_class.h"

#include <QtTest>

namespace
{

struct Dump {
    const char *title;
    int size; // bytes
    const char *sha1;
};

// Rows of the built-in table.
constexpr Dump kGood = {"Caesars Palace (Japan)", 131072,
                        "2cf0e21f7be55e3246d615550c8459a3659094ef"};
constexpr Dump kDoubted = {"Survival Kids - Kotou no Boukensha (Japan, bad dump?)", 1048576,
                           "091afc2743425e1846cfe356cf8cb0f3c4e14ed7"};

QByteArray digestOf(const Dump &dump)
{
    return QByteArray::fromHex(dump.sha1);
}

// A table of the user's that has this dump under a title of its own.
DatFile tableWith(const Dump &dump, const QString &name, const QString &title)
{
    DatEntry entry;
    entry.title = title;
    entry.size = static_cast<quint64>(dump.size);
    const QByteArray digest = digestOf(dump);
    std::copy(digest.begin(), digest.end(), entry.sha1.begin());
    return {name, {entry}, 0};
}

// "Title (table)" of a ROM of that size with the dump's SHA-1.
QString namedBy(const Dump &dump, const QVector<DatFile> &tables, int size)
{
    const RomEvidence evidence = evidenceOf(QByteArray(size, '\0'), digestOf(dump), tables);
    return evidence.known ? QString("%1 (%2)").arg(evidence.known->title, evidence.known->source)
                          : QString();
}

QString namedBy(const Dump &dump, const QVector<DatFile> &tables = {})
{
    return namedBy(dump, tables, dump.size);
}

} // namespace

class KnownTitlesTest : public QObject
{
    Q_OBJECT

private slots:
    void builtInTableComesFirst()
    {
        QCOMPARE(namedBy(kGood), QString("Caesars Palace (Japan) (known dumps)"));
        QCOMPARE(namedBy(kGood, {tableWith(kGood, "mine", "My Title")}),
                 QString("Caesars Palace (Japan) (known dumps)"));
    }

    // The user's table may know better.
    void doubtedDumpProvesNothing()
    {
        QCOMPARE(namedBy(kDoubted), QString());
        QCOMPARE(namedBy(kDoubted, {tableWith(kDoubted, "mine", "My Title")}),
                 QString("My Title (mine)"));
    }

    void tablesAreAskedInTheirOrder()
    {
        const Dump own = {"", 32768, "00112233445566778899aabbccddeeff00112233"};
        const DatFile other = tableWith(kGood, "other", "Other Title");
        const DatFile first = tableWith(own, "first", "First Title");
        const DatFile second = tableWith(own, "second", "Second Title");
        QCOMPARE(namedBy(own, {other}), QString());
        QCOMPARE(namedBy(own, {other, first, second}), QString("First Title (first)"));
        QCOMPARE(namedBy(own, {second, first}), QString("Second Title (second)"));
    }

    void sizeHasToAgree()
    {
        const Dump own = {"", 32768, "00112233445566778899aabbccddeeff00112233"};
        QCOMPARE(namedBy(kGood, {}, kGood.size / 2), QString());
        QCOMPARE(namedBy(own, {tableWith(own, "mine", "My Title")}, own.size + 1), QString());
    }

    void contentIsChecked()
    {
        const QByteArray image = toByteArray(gbImage());
        const QByteArray twice = image + image;
        const RomEvidence whole = evidenceOf(image, digestOf(kGood), {});
        QCOMPARE(whole.size, std::uint32_t(image.size()));
        QVERIFY(whole.checks.logoIsRight && whole.checks.globalChecksumIsRight.value_or(false));
        QVERIFY(whole.checks.tail == DumpTail::None);
        QVERIFY(!whole.known);
        QCOMPARE(whole.reads, 0);
        const RomEvidence repeated = evidenceOf(twice, digestOf(kGood), {});
        QVERIFY(repeated.checks.tail == DumpTail::Mirrored);
        QCOMPARE(repeated.checks.contentSize, std::uint32_t(image.size()));
    }
};

GBDRIVER_TEST(KnownTitlesTest, none)
#include "known_titles_test.moc"
