// Reads from the window: what the judgement behind the rule says of them, and what becomes of the
// file that a read replaces.
#include "drive_faults.h"
#include "job_window.h"
#include "known_game.h"
#include "log_check.h"
#include "test_class.h"

#include "cart/setting_tables.h"
#include "ui/guarded_job.h"
#include "worker/famicom_thread.h"

#include <QPushButton>
#include <QtTest>

#include <functional>

using namespace virtual_reader;

namespace
{

constexpr int kKiB = 1024;
constexpr int kMiB = 1024 * kKiB;
constexpr int kTama5Row = 6;
const QByteArray kOldFile = "what was here before";

struct ReadCase {
    std::function<std::unique_ptr<Cartridge>()> cartridge; // none: an empty slot
    bool isGba = false;
    int romSize = 64 * kKiB;
    int ramSize = 32 * kKiB;
    ActionButton button = &MainTab::dumpButton;
    bool readsTwice = false;
};

ByteVector gbGame()
{
    return gbImage({0x1B, 64 * kKiB, 32 * kKiB, "VIRTUAL", 1});
}

ReadCase dumpOf(const ByteVector &image, std::optional<std::uint32_t> flakyBank = {})
{
    ReadCase row;
    row.cartridge = [=] {
        CartridgeOptions options;
        options.flakyBank = flakyBank;
        return cartridgeOf(image, options);
    };
    return row;
}

ReadCase gbSave(const QByteArray &save)
{
    ReadCase row;
    row.button = &MainTab::readRamButton;
    row.cartridge = [save] {
        auto cartridge = makeMbc5Cartridge(64 * kKiB);
        putSave(cartridge.get(), save);
        return cartridge;
    };
    return row;
}

ReadCase gbaGameCase(ActionButton button)
{
    ReadCase row;
    row.isGba = true;
    row.romSize = kMiB;
    row.button = button;
    row.cartridge = [] {
        CartridgeOptions options;
        options.saveType = GbaSaveType::Sram;
        auto cartridge = cartridgeOf(gbaGame("ZVRE", kMiB), options);
        putSave(cartridge.get(), noise(32 * kKiB, 1));
        return cartridge;
    };
    return row;
}

ReadCase twice(ReadCase row)
{
    row.readsTwice = true;
    return row;
}

ReadCase withRomSize(ReadCase row, int size)
{
    row.romSize = size;
    return row;
}

std::unique_ptr<JobWindow> windowFor(const ReadCase &row)
{
    auto window = std::make_unique<JobWindow>(row.cartridge ? row.cartridge() : nullptr);
    if (row.isGba)
        window->selectGba(row.romSize, kSaveSram, row.ramSize);
    else
        window->selectGb(kMapperMbc5Row, row.romSize, row.ramSize);
    window->tab().guarded->readsUnknownTwice = row.readsTwice;
    return window;
}

// Passes the call on that it is set to, and presses Cancel first.
DriveFault pressing(QPushButton *button, unsigned after)
{
    DriveFault fault = dumpReadFault(after);
    fault.code = DriveErrorCode::None;
    fault.bytes = DriveFault::kAllBytes;
    fault.happens = [button] {
        QMetaObject::invokeMethod(
            button, [button] { button->click(); }, Qt::BlockingQueuedConnection);
    };
    return fault;
}

} // namespace

Q_DECLARE_METATYPE(ReadCase)

class GuardedReadTest : public QObject
{
    Q_OBJECT

private slots:
    void readIsJudged_data();
    void readIsJudged();
    void judgementStandsBehindTheRule();
    void flakyBankReadOnceIsNeverCalledGood();
    void oldFileIsKeptUntilTheNewOneIsGood_data();
    void oldFileIsKeptUntilTheNewOneIsGood();
    void emptySlotLeavesTheOldGoodFile();
    void readerPulledOutLeavesTheOldSave();
    void failedBankSwitchIsNoGoodDump();
    void halfOfASaveIsSaidToBeOne();
    void cancelledSecondReadLeavesTheFirst();
    void romBeyondTheBusIsRefusedInOneSentence();
    void readThatWritesWhereSavesAreAsksTheHeader_data();
    void readThatWritesWhereSavesAreAsksTheHeader();
    void secondReadAsksTheHeaderToo();
    void oldFileThatCannotBeKeptStopsTheRead();
    void plainReadIsTheBareJob_data();
    void plainReadIsTheBareJob();
};

void GuardedReadTest::readIsJudged_data()
{
    QTest::addColumn<ReadCase>("row");
    QTest::addColumn<QString>("judgement");
    const auto add = [](const char *name, const ReadCase &row, const char *judgement) {
        QTest::newRow(name) << row << QString(judgement);
    };
    const QByteArray save = noise(32 * kKiB, 1);
    add("known", dumpOf(knownGame()), "verified: A Game (World) (known dumps)");
    add("known, flaky", twice(dumpOf(knownGame(), 3)), "verified: A Game (World) (known dumps)");
    add("not known, read once", dumpOf(gbGame()), "unverified: not a known dump; read only once");
    add("not known, read twice", twice(dumpOf(gbGame())),
        "consistent: logo, header checksum and checksum over the whole ROM are right; 2 equal "
        "reads; not a known dump; the checksum is a sum and does not see swapped banks");
    add("flaky bank", twice(dumpOf(gbGame(), 3)), "unstable: reads differ in bank 3 of 4");
    add("empty slot", ReadCase(), "suspicious: all bytes are equal: an empty slot or no contact");
    add("twice the size", withRomSize(dumpOf(gbGame()), 128 * kKiB),
        "suspicious: everything from byte 65536 repeats what is before; the header speaks of "
        "65536 bytes, these are 131072");
    add("GBA", gbaGameCase(&MainTab::dumpButton),
        "unverified: not a known dump; such a ROM has no checksum over all of its bytes; read "
        "only once");
    add("save, read once", gbSave(save), "unverified: read only once");
    add("save, read twice", twice(gbSave(save)), "consistent: 2 equal reads");
    add("blank save", gbSave(QByteArray(32 * kKiB, '\xFF')),
        "suspicious: all bytes are equal: an empty save, no contact, or the wrong kind of save "
        "memory");
    add("GBA save, read twice", twice(gbaGameCase(&MainTab::readRamButton)),
        "consistent: 2 equal reads");
}

void GuardedReadTest::readIsJudged()
{
    QFETCH(ReadCase, row);
    QFETCH(QString, judgement);
    const auto window = windowFor(row);
    window->run(row.button, window->bench().path("new"));
    QCOMPARE(window->judgement(), judgement);
    QVERIFY(window->log().contains(">Success!"));
    QVERIFY(window->backups().isEmpty());
    const QByteArray file = window->bench().fileBytes("new");
    QVERIFY(window->judgements().contains(QString("%1 bytes, SHA-1 ").arg(file.size())));
}

// And nothing between the action's line and the rule is different with a second read.
void GuardedReadTest::judgementStandsBehindTheRule()
{
    for (const ReadCase &row : {dumpOf(gbGame()), twice(dumpOf(gbGame()))}) {
        const auto window = windowFor(row);
        const QString path = window->bench().addFile("new", kOldFile);
        window->run(row.button, path);
        COMPARE_LOG(window->tab(),
                    (QStringList{"Reading data from ROM to file:\n" + path, "Start dump rom...",
                                 "Dump rom finish.", ">Success!", "<hr><br>"}));
        QVERIFY(window->bench().fileBytes("new") == toByteArray(gbGame()));
    }
}

void GuardedReadTest::flakyBankReadOnceIsNeverCalledGood()
{
    const ReadCase row = dumpOf(gbGame(), 3);
    const auto window = windowFor(row);
    window->run(row.button, window->bench().path("first"));
    window->run(row.button, window->bench().path("second"));
    QVERIFY(window->bench().fileBytes("first") != window->bench().fileBytes("second"));
    const QStringList judgements =
        judgementsOf(window->tab()).filter(QRegularExpression("^\\w+: "));
    QCOMPARE(judgements, (QStringList{"unverified: not a known dump; read only once",
                                      "suspicious: the checksum over the whole ROM is wrong"}));
}

void GuardedReadTest::oldFileIsKeptUntilTheNewOneIsGood_data()
{
    QTest::addColumn<ReadCase>("row");
    QTest::addColumn<QByteArray>("old");
    QTest::addColumn<bool>("isKept");
    QTest::newRow("verified") << dumpOf(knownGame()) << kOldFile << false;
    QTest::newRow("consistent") << twice(dumpOf(gbGame())) << kOldFile << false;
    QTest::newRow("equal") << dumpOf(gbGame()) << toByteArray(gbGame()) << false;
    QTest::newRow("empty file") << dumpOf(gbGame()) << QByteArray() << false;
    QTest::newRow("unverified") << dumpOf(gbGame()) << kOldFile << true;
    QTest::newRow("unstable") << twice(dumpOf(gbGame(), 3)) << kOldFile << true;
    QTest::newRow("unverified save") << gbSave(noise(32 * kKiB, 1)) << kOldFile << true;
    QTest::newRow("consistent save") << twice(gbSave(noise(32 * kKiB, 1))) << kOldFile << true;
}

void GuardedReadTest::oldFileIsKeptUntilTheNewOneIsGood()
{
    QFETCH(ReadCase, row);
    QFETCH(QByteArray, old);
    QFETCH(bool, isKept);
    const auto window = windowFor(row);
    window->run(row.button, window->bench().addFile("game.gb", old));
    QVERIFY(window->log().contains(">Success!"));
    QCOMPARE(window->backups().size(), isKept ? 1 : 0);
    if (isKept)
        QCOMPARE(onlyBackup(*window), old);
    const QString note = "The file that was there before is in ";
    QCOMPARE(window->judgements().contains(note), isKept);
    if (isKept)
        QVERIFY(window->judgements().contains(note + window->backups().firstKey()));
}

void GuardedReadTest::emptySlotLeavesTheOldGoodFile()
{
    const ReadCase row;
    const QByteArray good = toByteArray(gbGame());
    const auto window = windowFor(row);
    window->run(row.button, window->bench().addFile("game.gb", good));
    QCOMPARE(window->judgement(),
             QString("suspicious: all bytes are equal: an empty slot or no contact"));
    QVERIFY(onlyBackup(*window) == good);
    QVERIFY(window->backups().firstKey().contains("/game "));
    QVERIFY(window->judgements().contains(window->backups().firstKey()));
}

// The good save is where it was, or in the one file that the judgement names.
void GuardedReadTest::readerPulledOutLeavesTheOldSave()
{
    const ReadCase row = gbaGameCase(&MainTab::readRamButton);
    const QByteArray good = noise(32 * kKiB, 9);
    const auto window = windowFor(row);
    DriveFault pulled;
    pulled.after = 4; // the scan for the reader, and three pieces of the save
    pulled.driveVanishes = true;
    window->bench().drive().addFault(pulled);
    window->run(row.button, window->bench().addFile("game.sav", good));

    QVERIFY(window->bench().drive().gone());
    const QString judgement = window->judgement();
    QVERIFY2(judgement.startsWith("incomplete: ") || judgement.startsWith("failed: "),
             qPrintable(judgement));
    QVERIFY2(judgement.contains("injected fault"), qPrintable(judgement));
    const bool isInPlace = window->bench().fileBytes("game.sav") == good;
    const bool isNamed = onlyBackup(*window) == good &&
                         window->judgements().contains("The file that was there before is in " +
                                                       window->backups().firstKey());
    QVERIFY2(isInPlace || isNamed, qPrintable(window->judgements()));
}

void GuardedReadTest::failedBankSwitchIsNoGoodDump()
{
    const ReadCase row =
        withRomSize(dumpOf(gbImage({0x1B, 128 * kKiB, 32 * kKiB, "VIRTUAL", 1})), 128 * kKiB);
    const auto window = windowFor(row);
    window->bench().drive().addFault(commandFault(8)); // two modes and four banks go well
    window->run(row.button, window->bench().addFile("game.gb", kOldFile));
    const QString judgement = window->judgement();
    QVERIFY2(judgement.startsWith("incomplete: ") || judgement.startsWith("failed: "),
             qPrintable(judgement));
    QVERIFY2(judgement.contains("injected fault"), qPrintable(judgement));
    QVERIFY(window->bench().fileBytes("game.gb") == kOldFile || onlyBackup(*window) == kOldFile);
}

// The file is what the first read brought, and nothing else can be said of it.
// The settings' table takes the header's code for half of what such a cartridge has.
void GuardedReadTest::halfOfASaveIsSaidToBeOne()
{
    JobWindow window(makeGbCartridge(0x1B, 64 * kKiB, 128 * kKiB));
    window.tab().push_info();
    window.run(&MainTab::readRamButton, window.bench().path("half.sav"));
    QVERIFY2(window.judgements().contains("has 131072 bytes of save memory, and only 65536"),
             qPrintable(window.judgements()));

    window.selectGb(kMapperMbc5Row, 64 * kKiB, 128 * kKiB);
    window.run(&MainTab::readRamButton, window.bench().path("whole.sav"));
    QCOMPARE(window.judgements().count("of save memory"), 1);
    QVERIFY(window.bench().fileBytes("whole.sav") == window.bench().save());
}

void GuardedReadTest::cancelledSecondReadLeavesTheFirst()
{
    const ReadCase row = twice(dumpOf(gbGame()));
    const auto window = windowFor(row);
    window->bench().drive().addFault(pressing(window->tab().cancelButton, 4));
    window->run(row.button, window->bench().path("new"));
    QVERIFY(window->bench().fileBytes("new") == toByteArray(gbGame()));
    QVERIFY2(!window->judgements().contains("not kept"), qPrintable(window->judgements()));
    QCOMPARE(window->judgement(), QString("unverified: not a known dump; read only once"));
}

// RAM without a gate, which the script of the TAMA5 writes over. Without the guard it does.
void GuardedReadTest::readThatWritesWhereSavesAreAsksTheHeader_data()
{
    QTest::addColumn<int>("type"); // of the header; -1: a GBA game with an EEPROM
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("isRefused");
    QTest::newRow("dump, RAM without a gate") << 0x09 << 0 << true;
    QTest::newRow("save, RAM without a gate") << 0x09 << 1 << true;
    QTest::newRow("dump, MBC5") << 0x1B << 0 << true;
    QTest::newRow("dump, HuC1") << 0xFF << 0 << false;
    QTest::newRow("save, HuC1") << 0xFF << 1 << false;
    QTest::newRow("dump, a type that nobody knows") << 0x99 << 0 << false;
    QTest::newRow("save as FLASH, EEPROM in the table") << -1 << 1 << true;
}

void GuardedReadTest::readThatWritesWhereSavesAreAsksTheHeader()
{
    QFETCH(int, type);
    QFETCH(int, button);
    QFETCH(bool, isRefused);
    const ActionButton action = button == 0 ? &MainTab::dumpButton : &MainTab::readRamButton;
    CartridgeOptions eeprom;
    eeprom.saveType = GbaSaveType::Eeprom;
    auto cartridge = type < 0
                         ? cartridgeOf(gbaGame("ALXP"), eeprom)
                         : makeGbCartridge(static_cast<std::uint8_t>(type), 32 * kKiB, 8 * kKiB);
    putSave(cartridge.get(), noise(static_cast<int>(cartridge->saveImage().size()), 1));
    JobWindow window(std::move(cartridge));
    if (type < 0)
        window.selectGba(kMiB, kSaveFlash, 128 * kKiB);
    else
        window.selectGb(kTama5Row, 32 * kKiB, 8 * kKiB);
    const QByteArray save = window.bench().save();
    window.run(action, window.bench().addFile("file", kOldFile));
    QVERIFY(window.bench().save() == save);
    QCOMPARE(window.judgement() == "refused: Nothing was read.", isRefused);
    QCOMPARE(window.log().contains(" than was chosen; "), isRefused);
    QCOMPARE(window.bench().fileBytes("file") == kOldFile, isRefused);
    QCOMPARE(window.log().contains("Press Info"), isRefused);
    if (type != 0x09)
        return;
    window.tab().guarded->guardsWrites = false;
    window.run(action, window.bench().path("file"));
    QVERIFY(window.bench().save() != save);
}

void GuardedReadTest::secondReadAsksTheHeaderToo()
{
    JobWindow window(makeGbCartridge(0xFF, 32 * kKiB, 8 * kKiB));
    window.selectGb(kTama5Row, 32 * kKiB, 8 * kKiB);
    window.run(&MainTab::dumpButton, window.bench().path("file"));
    QVERIFY(window.tab().guarded->canReadAgain());
    auto other = makeGbCartridge(0x09, 32 * kKiB, 8 * kKiB);
    putSave(other.get(), noise(8 * kKiB, 1));
    window.bench().reader().insertCartridge(std::move(other));
    window.tab().guarded->readAgain();
    QTRY_VERIFY(!window.tab().guarded->isBusy());
    QVERIFY2(window.log().contains("The header names another mapper than was chosen"),
             qPrintable(window.log()));
    QVERIFY(window.bench().save() == noise(8 * kKiB, 1));
}

void GuardedReadTest::romBeyondTheBusIsRefusedInOneSentence()
{
    const ReadCase row = withRomSize(gbaGameCase(&MainTab::dumpButton), 64 * kMiB);
    const auto window = windowFor(row);
    const QString path = window->bench().addFile("game.gba", kOldFile);
    window->run(row.button, path);
    COMPARE_LOG(window->tab(),
                (QStringList{"Reading data from ROM to file:\n" + path,
                             "The cartridge bus reaches 32 MiB (256 Mb); no more of a GBA ROM can "
                             "be read.",
                             "<hr><br>"}));
    QCOMPARE(judgementsOf(window->tab()), QStringList("refused: Nothing was read."));
    QCOMPARE(window->bench().traffic(), (QStringList{"F0/03", "03/01"}));
    QCOMPARE(window->bench().fileBytes("game.gba"), kOldFile);
    QCOMPARE(window->bench().releases(), 1);
}

void GuardedReadTest::oldFileThatCannotBeKeptStopsTheRead()
{
    const ReadCase row = dumpOf(gbGame());
    const auto window = windowFor(row);
    window->bench().addFile("backups", "a file");
    window->run(row.button, window->bench().addFile("game.gb", kOldFile));
    QCOMPARE(window->judgement(), QString("refused: Nothing was read."));
    QVERIFY(window->log().contains("Cannot make the folder " + window->bench().path("backups")));
    QVERIFY(window->judgements().contains("turn \"Guard writes\" off"));
    QCOMPARE(window->bench().fileBytes("game.gb"), kOldFile);
}

void GuardedReadTest::plainReadIsTheBareJob_data()
{
    QTest::addColumn<ReadCase>("row");
    QTest::newRow("GB dump") << dumpOf(gbGame());
    QTest::newRow("GB save") << gbSave(noise(32 * kKiB, 1));
    QTest::newRow("GBA dump") << gbaGameCase(&MainTab::dumpButton);
    QTest::newRow("GBA save") << gbaGameCase(&MainTab::readRamButton);
}

// The judgement costs no device operation; nor does what is kept of an old file.
void GuardedReadTest::plainReadIsTheBareJob()
{
    QFETCH(ReadCase, row);
    const UserFolder folder;
    for (const char *name : {"new", "old"}) {
        if (QByteArray("old") == name)
            folder.addFile(name, kOldFile);
        auto window = windowFor(row);
        window->run(row.button, folder.path(name));
        QVERIFY(window->judgement().startsWith("unverified: "));
        const QStringList traffic = window->bench().traffic();
        const CartridgeJob job = window->tab().worker->job();
        window.reset();
        QCOMPARE(traffic, bareTraffic(row.cartridge(), job, folder.path(name)));
    }
}

GBDRIVER_TEST(GuardedReadTest, gui)
#include "guarded_read_test.moc"
