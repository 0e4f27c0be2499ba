// What a dump or a save is worth: every verdict and every reason, from what is known of the bytes.
#include "trust/verdict.h"

#include "samples.h"
#include "test_class.h"
#include "trust/known_titles.h"
#include "trust/words.h"

#include <QtTest>

namespace
{

constexpr std::uint32_t kSize = 65536;

// A GB ROM in which everything is right, read twice, in no table.
RomEvidence gbEvidence()
{
    RomEvidence evidence;
    evidence.checks.system = DumpSystem::Gb;
    evidence.checks.logoIsRight = true;
    evidence.checks.headerChecksumIsRight = true;
    evidence.checks.globalChecksumIsRight = true;
    evidence.checks.headerSize = kSize;
    evidence.checks.contentSize = kSize;
    evidence.size = kSize;
    evidence.reads = 2;
    return evidence;
}

// The same of a GBA ROM, which has no checksum over all of it and names no size.
RomEvidence gbaEvidence()
{
    RomEvidence evidence = gbEvidence();
    evidence.checks.system = DumpSystem::Gba;
    evidence.checks.globalChecksumIsRight.reset();
    evidence.checks.headerSize.reset();
    return evidence;
}

SaveEvidence saveEvidence()
{
    SaveEvidence evidence;
    evidence.size = 32768;
    evidence.contentSize = 32768;
    evidence.reads = 2;
    return evidence;
}

void addColumns()
{
    QTest::addColumn<QString>("summary");
    QTest::addColumn<VerdictKind>("kind");
}

template <typename Evidence>
void addRow(const char *name, const Evidence &evidence, const char *summary, VerdictKind kind)
{
    QTest::newRow(name) << evidence << summary << kind;
}

// One thing more is wrong or missing.
template <typename Evidence, typename Change> Evidence with(Evidence evidence, Change change)
{
    change(evidence);
    return evidence;
}

} // namespace

Q_DECLARE_METATYPE(VerdictKind)
Q_DECLARE_METATYPE(RomEvidence)
Q_DECLARE_METATYPE(SaveEvidence)

class VerdictTest : public QObject
{
    Q_OBJECT

private slots:
    void romIsJudged_data();
    void romIsJudged();
    void swappedBanksLookRight();
    void severalFaultsAreAllNamed();
    void saveIsJudged_data();
    void saveIsJudged();
    void saveBytesAreDescribed_data();
    void saveBytesAreDescribed();
};

void VerdictTest::romIsJudged_data()
{
    QTest::addColumn<RomEvidence>("evidence");
    addColumns();
    using Rom = RomEvidence;
    const auto known = [](Rom &rom) { rom.known = KnownTitle{"A Game (World)", "known dumps"}; };

    addRow("known", with(gbEvidence(), known), "verified: A Game (World) (known dumps)",
           VerdictKind::Verified);
    addRow("known, read once",
           with(gbEvidence(),
                [&](Rom &rom) {
                    known(rom);
                    rom.reads = 1;
                }),
           "verified: A Game (World) (known dumps)", VerdictKind::Verified);
    // A catalogue has dumps of cartridges whose own checksums are wrong.
    addRow("known, checksum wrong",
           with(gbEvidence(),
                [&](Rom &rom) {
                    known(rom);
                    rom.checks.globalChecksumIsRight = false;
                }),
           "verified: A Game (World) (known dumps)", VerdictKind::Verified);
    addRow("known, GBA", with(gbaEvidence(), known), "verified: A Game (World) (known dumps)",
           VerdictKind::Verified);

    addRow("two equal reads", gbEvidence(),
           "consistent: logo, header checksum and checksum over the whole ROM are right; 2 equal "
           "reads; not a known dump; the checksum is a sum and does not see swapped banks",
           VerdictKind::Consistent);
    addRow("five equal reads", with(gbEvidence(), [](Rom &rom) { rom.reads = 5; }),
           "consistent: logo, header checksum and checksum over the whole ROM are right; 5 equal "
           "reads; not a known dump; the checksum is a sum and does not see swapped banks",
           VerdictKind::Consistent);
    addRow("header without a known size",
           with(gbEvidence(), [](Rom &rom) { rom.checks.headerSize.reset(); }),
           "consistent: logo, header checksum and checksum over the whole ROM are right; 2 equal "
           "reads; not a known dump; the checksum is a sum and does not see swapped banks",
           VerdictKind::Consistent);

    addRow("read once", with(gbEvidence(), [](Rom &rom) { rom.reads = 1; }),
           "unverified: not a known dump; read only once", VerdictKind::Unverified);
    addRow("file", with(gbEvidence(), [](Rom &rom) { rom.reads = 0; }),
           "unverified: not a known dump; nobody saw it read twice", VerdictKind::Unverified);
    addRow("GBA", gbaEvidence(),
           "unverified: not a known dump; such a ROM has no checksum over all of its bytes",
           VerdictKind::Unverified);
    addRow("GBA, read once", with(gbaEvidence(), [](Rom &rom) { rom.reads = 1; }),
           "unverified: not a known dump; such a ROM has no checksum over all of its bytes; read "
           "only once",
           VerdictKind::Unverified);

    addRow("reads differ", with(gbEvidence(), [](Rom &rom) { rom.differences = "bank 3 of 4"; }),
           "unstable: reads differ in bank 3 of 4", VerdictKind::Unstable);
    // The one that is in the table may be the one that was not kept.
    addRow("reads differ, one is known",
           with(gbEvidence(),
                [&](Rom &rom) {
                    known(rom);
                    rom.differences = "bank 3 of 4";
                }),
           "unstable: reads differ in bank 3 of 4", VerdictKind::Unstable);

    addRow("no bytes", with(gbEvidence(), [](Rom &rom) { rom.size = 0; }),
           "suspicious: there are no bytes", VerdictKind::Suspicious);
    addRow("all bytes equal",
           with(gbEvidence(),
                [](Rom &rom) {
                    rom.checks.allBytesEqual = true;
                    rom.checks.logoIsRight = false;
                }),
           "suspicious: all bytes are equal: an empty slot or no contact", VerdictKind::Suspicious);
    addRow("no logo",
           with(gbEvidence(),
                [](Rom &rom) {
                    rom.checks.logoIsRight = false;
                    rom.checks.headerChecksumIsRight = false;
                    rom.checks.globalChecksumIsRight = false;
                }),
           "suspicious: there is no boot logo in the header", VerdictKind::Suspicious);
    addRow("header checksum",
           with(gbEvidence(), [](Rom &rom) { rom.checks.headerChecksumIsRight = false; }),
           "suspicious: the header's checksum is wrong", VerdictKind::Suspicious);
    addRow("complement check of a GBA",
           with(gbaEvidence(), [](Rom &rom) { rom.checks.headerChecksumIsRight = false; }),
           "suspicious: the header's checksum is wrong", VerdictKind::Suspicious);
    addRow("global checksum",
           with(gbEvidence(), [](Rom &rom) { rom.checks.globalChecksumIsRight = false; }),
           "suspicious: the checksum over the whole ROM is wrong", VerdictKind::Suspicious);
    addRow("mirrored",
           with(gbEvidence(),
                [](Rom &rom) {
                    rom.checks.tail = DumpTail::Mirrored;
                    rom.checks.contentSize = kSize / 2;
                }),
           "suspicious: everything from byte 32768 repeats what is before",
           VerdictKind::Suspicious);
    addRow("open bus",
           with(gbaEvidence(),
                [](Rom &rom) {
                    rom.checks.tail = DumpTail::OpenBus;
                    rom.checks.contentSize = kSize / 2;
                }),
           "suspicious: from byte 32768 no memory answers", VerdictKind::Suspicious);
    addRow("another size", with(gbEvidence(), [](Rom &rom) { rom.checks.headerSize = 2 * kSize; }),
           "suspicious: the header speaks of 131072 bytes, these are 65536",
           VerdictKind::Suspicious);
}

void VerdictTest::romIsJudged()
{
    QFETCH(RomEvidence, evidence);
    const Verdict verdict = judgeRom(evidence);
    QTEST(summaryOf(verdict), "summary");
    QTEST(verdict.kind, "kind");
    QCOMPARE(verdict.reasons.isEmpty(), verdict.kind == VerdictKind::Verified);
}

// Why the reasons say it: everything that can be checked is right, and the ROM is not.
void VerdictTest::swappedBanksLookRight()
{
    constexpr int kBank = 16 * 1024;
    QByteArray rom = toByteArray(gbImage({0x19, 4 * kBank, 0, "VIRTUAL", 1}));
    const QByteArray third = rom.mid(2 * kBank, kBank);
    QVERIFY(third != rom.mid(3 * kBank));
    rom.replace(2 * kBank, kBank, rom.mid(3 * kBank));
    rom.replace(3 * kBank, kBank, third);
    RomEvidence evidence = evidenceOf(rom, {}, {});
    evidence.reads = 2;
    const Verdict verdict = judgeRom(evidence);
    QCOMPARE(verdict.kind, VerdictKind::Consistent);
    QVERIFY(reasonTexts(verdict).contains("the checksum is a sum and does not see swapped banks"));
}

void VerdictTest::severalFaultsAreAllNamed()
{
    RomEvidence evidence = gbEvidence();
    evidence.checks.headerChecksumIsRight = false;
    evidence.checks.globalChecksumIsRight = false;
    evidence.checks.tail = DumpTail::Mirrored;
    evidence.checks.contentSize = 16384;
    evidence.checks.headerSize = 32768;
    QCOMPARE(
        reasonTexts(judgeRom(evidence)),
        (QStringList{"the header's checksum is wrong", "the checksum over the whole ROM is wrong",
                     "everything from byte 16384 repeats what is before",
                     "the header speaks of 32768 bytes, these are 65536"}));
}

void VerdictTest::saveIsJudged_data()
{
    QTest::addColumn<SaveEvidence>("evidence");
    addColumns();
    using Save = SaveEvidence;
    addRow("two equal reads", saveEvidence(), "consistent: 2 equal reads", VerdictKind::Consistent);
    addRow("nine equal reads", with(saveEvidence(), [](Save &save) { save.reads = 9; }),
           "consistent: 9 equal reads", VerdictKind::Consistent);
    addRow("read once", with(saveEvidence(), [](Save &save) { save.reads = 1; }),
           "unverified: read only once", VerdictKind::Unverified);
    // Two copies of a save, a chip that is smaller, or one whose bank switch does not work.
    addRow("repeated", with(saveEvidence(), [](Save &save) { save.contentSize = 8192; }),
           "unverified: everything from byte 8192 repeats what is before: two copies, or a smaller "
           "save memory",
           VerdictKind::Unverified);
    addRow("repeated, read once",
           with(saveEvidence(),
                [](Save &save) {
                    save.contentSize = 8192;
                    save.reads = 1;
                }),
           "unverified: read only once; everything from byte 8192 repeats what is before: two "
           "copies, or a smaller save memory",
           VerdictKind::Unverified);
    addRow("all bytes equal", with(saveEvidence(), [](Save &save) { save.allBytesEqual = true; }),
           "suspicious: all bytes are equal: an empty save, no contact, or the wrong kind of save "
           "memory",
           VerdictKind::Suspicious);
    addRow("reads differ",
           with(saveEvidence(), [](Save &save) { save.differences = "bank 1 of 4"; }),
           "unstable: reads differ in bank 1 of 4", VerdictKind::Unstable);
}

void VerdictTest::saveIsJudged()
{
    QFETCH(SaveEvidence, evidence);
    const Verdict verdict = judgeSave(evidence);
    QTEST(summaryOf(verdict), "summary");
    QTEST(verdict.kind, "kind");
}

void VerdictTest::saveBytesAreDescribed_data()
{
    QTest::addColumn<QByteArray>("save");
    QTest::addColumn<bool>("allEqual");
    QTest::addColumn<int>("contentSize");
    QByteArray counting(8192, '\0');
    for (int i = 0; i < counting.size(); ++i)
        counting[i] = static_cast<char>(i * 7 + i / 256);
    QTest::newRow("empty") << QByteArray() << false << 0;
    QTest::newRow("erased") << QByteArray(8192, '\xFF') << true << 8192;
    QTest::newRow("all different") << counting << false << 8192;
    QTest::newRow("twice") << counting + counting << false << 8192;
    QTest::newRow("four times") << counting + counting + counting + counting << false << 8192;
}

void VerdictTest::saveBytesAreDescribed()
{
    QFETCH(QByteArray, save);
    SaveEvidence evidence;
    describeSave(save, &evidence);
    QCOMPARE(evidence.size, save.size());
    QTEST(evidence.allBytesEqual, "allEqual");
    QTEST(evidence.contentSize, "contentSize");
}

GBDRIVER_TEST(VerdictTest, core)
#include "verdict_test.moc"
