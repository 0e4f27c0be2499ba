// The four file actions of the main tab, from the button over a real file dialog and a real worker
// thread to the virtual reader and back.
#include "file_dialog_answer.h"
#include "log_check.h"
#include "reader_fixture.h"

#include "script/erase_poll.h"
#include "test_class.h"
#include "ui/guarded_job.h"
#include "ui/settings.h"
#include "virtual/gb_cartridges.h"
#include "worker/famicom_thread.h"

#include <QDir>
#include <QProgressBar>
#include <QPushButton>
#include <QSemaphore>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace virtual_reader;

using ButtonMember = QPushButton *MainTab::*;
Q_DECLARE_METATYPE(ButtonMember)

namespace
{
constexpr int kJobTimeoutMs = 60000;
constexpr std::uint32_t kRomSize = 128 * 1024;

// An MBC5 cartridge, bank by bank.
constexpr char kMbc5Script[] = R"(
function cpu_dump(dev, size, max) {
    for (local bank = 0; bank * 0x4000 < size; bank += 1) {
        cpu_write(dev, 0x2000, bank & 0xFF, 0x3000, bank >> 8);
        cpu_read(dev, 0x4000, 0x4000);
    }
}
function eachRamBank(dev, size, move) {
    cpu_write(dev, 0x0000, 0x0A);
    for (local bank = 0; bank * 0x2000 < size; bank += 1) {
        cpu_write(dev, 0x4000, bank);
        move(dev, 0xA000, 0x2000);
    }
    cpu_write(dev, 0x0000, 0x00);
}
function save_dump(dev, size, max) { eachRamBank(dev, size, cpu_read); }
function save_write(dev, size, max) { eachRamBank(dev, size, ram_write); }
)";

const QStringList kScriptNames = {"gb_mbc1.nut", "gb_mbc5.nut", "gba.nut"};

// A cartridge whose first byte reads as erased flash, with room for a query's answer.
std::unique_ptr<Cartridge> makeFlashCartridge(std::uint8_t firstByte)
{
    ByteVector rom(32 * 1024, 0x11);
    rom[0] = firstByte;
    return std::make_unique<GbCartridge>(rom, 8192);
}

std::unique_ptr<Cartridge> makeWideFlashCartridge(std::uint8_t sizeCode)
{
    ByteVector rom(32 * 1024, 0xFF);
    rom[0x20] = 'Q';
    rom[0x22] = 'R';
    rom[0x24] = 'Y';
    rom[0x4E] = sizeCode;
    return std::make_unique<GbCartridge>(rom, 0);
}
} // namespace

class FileActionTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void dialogsAskForTheRightFile_data();
    void dialogsAskForTheRightFile();
    void cancelledDialogWithoutReader_data();
    void cancelledDialogWithoutReader();
    void readerMustHaveBeenFound();
    void missingScriptIsNamed_data();
    void missingScriptIsNamed();
    void missingScriptIsFoundBeforeTheCancelledDialog();
    void jobsTakeTheSettings_data();
    void jobsTakeTheSettings();
    void jobReleasesTheReaderOnce();

    void romIsDumpedByteForByte();
    void shippedScriptsDumpByteForByte_data();
    void shippedScriptsDumpByteForByte();
    void saveIsReadChangedAndWrittenBack();
    void existingFileIsReplaced();
    void actionsAreDisabledUntilTheJobEnds();
    void nextJobMayStartAtOnce();

    void flashChipIsProbed_data();
    void flashChipIsProbed();
    void gbaFlashIsNotProbed();

private:
    void use(std::unique_ptr<Cartridge> cartridge);
    void addScripts(const QByteArray &text);
    // Presses a button and answers its dialog; `path` empty cancels.
    void press(ButtonMember button, const QString &path);
    void pressAndWait(ButtonMember button, const QString &path);

    std::unique_ptr<ReaderFixture> m_fixture;
    std::unique_ptr<MainTab> m_tab;
};

void FileActionTest::use(std::unique_ptr<Cartridge> cartridge)
{
    m_fixture = std::make_unique<ReaderFixture>(std::move(cartridge));
    m_fixture->findReader();
    m_tab = std::make_unique<MainTab>();
    m_tab->guarded->guardsWrites = false; // the bare job; guarded_job_test has the guard
    m_tab->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_tab.get()));
}

void FileActionTest::cleanup()
{
    m_tab.reset();
    m_fixture.reset();
}

void FileActionTest::addScripts(const QByteArray &text)
{
    for (const QString &name : kScriptNames)
        ReaderFixture::addScript(name, text);
}

void FileActionTest::press(ButtonMember button, const QString &path)
{
    FileDialogAnswer answer(path);
    QTest::mouseClick(m_tab.get()->*button, Qt::LeftButton);
    QVERIFY(answer.wasAsked);
}

void FileActionTest::pressAndWait(ButtonMember button, const QString &path)
{
    press(button, path);
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(*m_tab), kJobTimeoutMs);
}

void FileActionTest::dialogsAskForTheRightFile_data()
{
    QTest::addColumn<ButtonMember>("button");
    QTest::addColumn<int>("system");
    QTest::addColumn<bool>("saves");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("filter");
    const ButtonMember dump = &MainTab::dumpButton;
    const ButtonMember readRam = &MainTab::readRamButton;
    const ButtonMember flash = &MainTab::flashButton;
    const ButtonMember writeRam = &MainTab::writeRamButton;
    QTest::newRow("GB dump") << dump << 0 << true << "Read ROM to..."
                             << "GB/GBC Rom (*.gb *.gbc)";
    QTest::newRow("GB read RAM") << readRam << 0 << true << "Read save to..."
                                 << "GB/GBC save (*.sav)";
    QTest::newRow("GB flash") << flash << 0 << false << "Get ROM File."
                              << "GB/GBC ROM (*.gb *.gbc)";
    QTest::newRow("GB write RAM") << writeRam << 0 << false << "Get Save File."
                                  << "GB/GBC save (*.sav)";
    QTest::newRow("GBA dump") << dump << 1 << true << "Read ROM to..."
                              << "GBA Rom (*.gba)";
    QTest::newRow("GBA read RAM") << readRam << 1 << true << "Read save to..."
                                  << "GBA save (*.sav)";
    QTest::newRow("GBA flash") << flash << 1 << false << "Get ROM File."
                               << "GBA ROM (*.gba)";
    QTest::newRow("GBA write RAM") << writeRam << 1 << false << "Get Save File."
                                   << "GBA save (*.sav)";
}

// Cancelling says nothing, but the reader has been put on its bus, and is free again.
void FileActionTest::dialogsAskForTheRightFile()
{
    QFETCH(ButtonMember, button);
    QFETCH(int, system);
    QFETCH(bool, saves);
    QFETCH(QString, caption);
    QFETCH(QString, filter);
    use(makeMbc5Cartridge(kRomSize));
    addScripts(kIdleScript);
    m_tab->settings->selectSysType(system);

    FileDialogAnswer answer{QString()};
    QTest::mouseClick(m_tab.get()->*button, Qt::LeftButton);
    QVERIFY(answer.wasAsked);
    QCOMPARE(answer.caption, caption);
    QCOMPARE(answer.filters, QStringList{filter});
    QCOMPARE(answer.folder, QDir::currentPath());
    QCOMPARE(answer.acceptMode, saves ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    QCOMPARE(answer.fileMode, saves ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    QCOMPARE(answer.parent, m_tab.get());

    COMPARE_LOG(*m_tab, QStringList());
    QVERIFY(isIdle(*m_tab));
    QCOMPARE(m_fixture->traffic(),
             system == 1 ? (QStringList{"F0/03", "03/01"}) : (QStringList{"F0/02", "02/01"}));
    QCOMPARE(m_fixture->releases(), 1);
    QCOMPARE(m_tab->worker->file_name, QString());
    QCOMPARE(m_tab->worker->script_name, QString());
}

void FileActionTest::cancelledDialogWithoutReader_data()
{
    QTest::addColumn<ButtonMember>("button");
    QTest::addColumn<int>("system");
    for (const int system : {0, 1}) {
        const auto row = [&](const char *name, ButtonMember button) {
            QTest::addRow("%s, system %d", name, system) << button << system;
        };
        row("dump", &MainTab::dumpButton);
        row("read RAM", &MainTab::readRamButton);
        row("flash", &MainTab::flashButton);
        row("write RAM", &MainTab::writeRamButton);
    }
}

void FileActionTest::cancelledDialogWithoutReader()
{
    QFETCH(ButtonMember, button);
    QFETCH(int, system);
    use(makeMbc5Cartridge(kRomSize));
    addScripts(kIdleScript);
    m_fixture->drive().setGone(true);
    m_tab->settings->selectSysType(system);
    press(button, QString());
    COMPARE_LOG(*m_tab, QStringList{"Initialize device error."});
    QVERIFY(isIdle(*m_tab));
    QCOMPARE(m_fixture->releases(), 1);
}

void FileActionTest::readerMustHaveBeenFound()
{
    m_fixture = std::make_unique<ReaderFixture>(makeMbc5Cartridge(kRomSize));
    addScripts(kMbc5Script);
    m_tab = std::make_unique<MainTab>();
    m_tab->settings->selectItem2(kRomSize);
    const QString path = m_fixture->path("dump.gb");
    press(&MainTab::dumpButton, path);
    COMPARE_LOG(*m_tab, QStringList{"Initialize device error."});
    QVERIFY(isIdle(*m_tab));
    QVERIFY(m_fixture->reader().operations().empty());

    // The information action looks for the reader; after that the dump goes through.
    QTest::mouseClick(m_tab->infoButton, Qt::LeftButton);
    pressAndWait(&MainTab::dumpButton, path);
    QCOMPARE(m_fixture->fileBytes("dump.gb"), m_fixture->rom());
}

void FileActionTest::missingScriptIsNamed_data()
{
    cancelledDialogWithoutReader_data();
}

void FileActionTest::missingScriptIsNamed()
{
    QFETCH(ButtonMember, button);
    QFETCH(int, system);
    use(makeMbc5Cartridge(kRomSize));
    m_tab->settings->selectSysType(system);
    press(button, m_fixture->addFile("user.gb.gba.sav", "bytes"));
    const QString script = QCoreApplication::applicationDirPath() +
                           (system == 1 ? "/mapper/gba.nut" : "/mapper/gb_mbc5.nut");
    COMPARE_LOG(*m_tab, (QStringList{"Not exists script file :", script, "<hr><br>"}));
    QVERIFY(isIdle(*m_tab));
    QCOMPARE(m_fixture->traffic().size(), 2); // the bus was selected before the script was missed
    QCOMPARE(m_fixture->releases(), 1);
    QCOMPARE(m_fixture->fileBytes("user.gb.gba.sav"), QByteArray("bytes"));
}

void FileActionTest::missingScriptIsFoundBeforeTheCancelledDialog()
{
    use(makeMbc5Cartridge(kRomSize));
    m_tab->settings->selectItem1(6);
    press(&MainTab::dumpButton, QString());
    COMPARE_LOG(*m_tab, (QStringList{"Not exists script file :",
                                     ReaderFixture::scriptPath("gb_tama5.nut"), "<hr><br>"}));
}

void FileActionTest::jobsTakeTheSettings_data()
{
    QTest::addColumn<ButtonMember>("button");
    QTest::addColumn<int>("system");
    QTest::addColumn<int>("operate");
    QTest::addColumn<QString>("logText");
    QTest::addColumn<QStringList>("before"); // lines above the action's own
    QTest::addColumn<QStringList>("after");  // and below, "%1" being the file

    const ButtonMember dump = &MainTab::dumpButton;
    const ButtonMember readRam = &MainTab::readRamButton;
    const ButtonMember flash = &MainTab::flashButton;
    const ButtonMember writeRam = &MainTab::writeRamButton;
    const QString dumpText = "Reading data from ROM to file:";
    const QString readText = "Reading data from save to file:";
    const QString flashText = "Writing rom to cartridge from file:";
    const QString writeText = "Writing save to cartridge from file:";
    const QStringList none;
    const QStringList dumpLines = {"Start dump rom...", "Dump rom finish.", ">Success!",
                                   "<hr><br>"};
    const QStringList readLines = {"Start dump save...", "Dump save finish.", ">Success!",
                                   "<hr><br>"};
    const QStringList writeLines = {"Read file :%1",      "Read 8192 Bytes", "Start write save...",
                                    "Write save finish.", ">Success!",       "<hr><br>"};
    const QStringList flashLines = {"Read file :%1",
                                    "Read 9000 Bytes",
                                    "Start erase flash chip...",
                                    "Erase flash chip finish.",
                                    "Start flash ROM...",
                                    "Flash ROM finish.",
                                    ">Success!",
                                    "<hr><br>"};
    const QStringList refusedLines = {"Read file :%1", "Read 9000 Bytes", "Unknow operate!",
                                      ">Operation failure.", "<hr><br>"};
    const QStringList narrow = {"Flash chip is 8bit width"};
    QTest::newRow("GB dump") << dump << 0 << 0 << dumpText << none << dumpLines;
    QTest::newRow("GB flash") << flash << 0 << 1 << flashText << narrow << flashLines;
    QTest::newRow("GB read RAM") << readRam << 0 << 2 << readText << none << readLines;
    QTest::newRow("GB write RAM") << writeRam << 0 << 3 << writeText << none << writeLines;
    QTest::newRow("GBA dump") << dump << 1 << 4 << dumpText << none << dumpLines;
    QTest::newRow("GBA flash") << flash << 1 << 5 << flashText << none << refusedLines;
    QTest::newRow("GBA read RAM") << readRam << 1 << 6 << readText << none << readLines;
    QTest::newRow("GBA write RAM") << writeRam << 1 << 7 << writeText << none << writeLines;
}

void FileActionTest::jobsTakeTheSettings()
{
    QFETCH(ButtonMember, button);
    QFETCH(int, system);
    QFETCH(int, operate);
    QFETCH(QString, logText);
    QFETCH(QStringList, before);
    QFETCH(QStringList, after);
    use(makeFlashCartridge(0xFF));
    addScripts(kIdleScript);
    m_tab->worker->save_type = 77;
    m_tab->worker->flash_width = 77;
    m_tab->settings->selectSysType(system);
    m_tab->settings->selectItem1(system == 1 ? 2097152 : 1); // or MBC1
    m_tab->settings->selectItem2(system == 1 ? 2 : 65536);   // EEP
    m_tab->settings->selectItem3(8192);
    m_tab->settings->setCheck(Qt::Checked);
    const bool isFlash = operate == 1 || operate == 5;
    const QString path =
        (operate & 1) == 0 ? m_fixture->path("new.file")
                           : m_fixture->addFile("old.file", QByteArray(isFlash ? 9000 : 8192, 'x'));
    pressAndWait(button, path);

    QStringList expected = before;
    expected << logText + "\n" + path;
    for (const QString &line : after)
        expected << (line.contains("%1") ? line.arg(path) : line);
    COMPARE_LOG(*m_tab, expected);

    const FamicomThread &job = *m_tab->worker;
    QCOMPARE(job.operate, operate);
    QCOMPARE(job.file_name, path);
    QCOMPARE(job.script_name, ReaderFixture::scriptPath(system == 1 ? "gba.nut" : "gb_mbc1.nut"));
    // The worker itself takes the size of a ROM file to be flashed.
    QCOMPARE(job.rom_size, isFlash ? 9000 : (system == 1 ? 2097152 : 65536));
    QCOMPARE(job.ram_size, 8192);
    QCOMPARE(job.save_type, system == 1 ? 2 : 77);
    QCOMPARE(job.flash_width, operate == 1 ? 0 : 77);
    QCOMPARE(job.verify, true);
    QCOMPARE(m_tab->progress->value(), 0);
    QCOMPARE(m_tab->progress->maximum(), 1);
}

// The tab must leave the drive alone while the worker uses it.
void FileActionTest::jobReleasesTheReaderOnce()
{
    use(makeMbc5Cartridge(kRomSize));
    addScripts(kMbc5Script);
    pressAndWait(&MainTab::dumpButton, m_fixture->path("dump.gb"));
    QCOMPARE(m_fixture->releases(), 1);
}

void FileActionTest::romIsDumpedByteForByte()
{
    use(makeMbc5Cartridge(kRomSize));
    addScripts(kMbc5Script);
    m_tab->settings->selectItem2(kRomSize);
    const QSignalSpy progress(m_tab->worker, SIGNAL(set_progress(int, int)));
    const QString path = m_fixture->path("dump.gb");
    pressAndWait(&MainTab::dumpButton, path);

    COMPARE_LOG(*m_tab, (QStringList{"Reading data from ROM to file:\n" + path, "Start dump rom...",
                                     "Dump rom finish.", ">Success!", "<hr><br>"}));
    QCOMPARE(m_fixture->fileBytes("dump.gb"), m_fixture->rom());
    // One step for each of the 8 banks, and the last one for the whole job.
    QCOMPARE(progress.count(), 9);
    for (int bank = 0; bank < 8; ++bank)
        QCOMPARE(progress.at(bank), (QList<QVariant>{(bank + 1) * 0x4000, int(kRomSize)}));
    QCOMPARE(progress.at(8), (QList<QVariant>{1, 1}));
}

void FileActionTest::shippedScriptsDumpByteForByte_data()
{
    QTest::addColumn<int>("type"); // of the image's header
    QTest::addColumn<int>("mapper");
    QTest::addColumn<int>("romSize");
    QTest::addColumn<int>("ramSize");
    QTest::newRow("no mapper, 32 KiB") << 0x00 << 0 << 32768 << 0;
    QTest::newRow("MBC1, 2 MiB") << 0x03 << 1 << 2097152 << 8192;
    QTest::newRow("MBC5, 8 MiB") << 0x1B << 4 << 8388608 << 131072;
}

void FileActionTest::shippedScriptsDumpByteForByte()
{
    QFETCH(int, type);
    QFETCH(int, mapper);
    QFETCH(int, romSize);
    QFETCH(int, ramSize);
    use(makeGbCartridge(static_cast<std::uint8_t>(type), static_cast<std::uint32_t>(romSize),
                        static_cast<std::uint32_t>(ramSize)));
    m_tab->settings->selectItem1(mapper);
    m_tab->settings->selectItem2(romSize);
    m_tab->settings->selectItem3(ramSize);
    ReaderFixture::addShippedScripts();

    pressAndWait(&MainTab::dumpButton, m_fixture->path("dump.gb"));
    QVERIFY2(m_tab->console->toPlainText().contains(">Success!"),
             qPrintable(m_tab->console->toPlainText()));
    QVERIFY(m_fixture->fileBytes("dump.gb") == m_fixture->rom());
    if (ramSize > 0) {
        pressAndWait(&MainTab::readRamButton, m_fixture->path("dump.sav"));
        QCOMPARE(m_fixture->fileBytes("dump.sav"), m_fixture->save());
    }
}

void FileActionTest::saveIsReadChangedAndWrittenBack()
{
    use(makeMbc5Cartridge(kRomSize));
    addScripts(kMbc5Script);
    m_tab->settings->selectItem3(32768);
    const QByteArray original = m_fixture->save();
    QCOMPARE(original.size(), 32768);
    pressAndWait(&MainTab::readRamButton, m_fixture->path("first.sav"));
    QCOMPARE(m_fixture->fileBytes("first.sav"), original);

    QByteArray changed = original;
    for (char &byte : changed)
        byte = static_cast<char>(~byte);
    const QString path = m_fixture->addFile("changed.sav", changed);
    pressAndWait(&MainTab::writeRamButton, path);
    QCOMPARE(m_fixture->save(), changed);

    pressAndWait(&MainTab::readRamButton, m_fixture->path("second.sav"));
    QCOMPARE(m_fixture->fileBytes("second.sav"), changed);
    QCOMPARE(m_fixture->reader().counters().refusedBlocks, 0U);
}

void FileActionTest::existingFileIsReplaced()
{
    use(makeMbc5Cartridge(kRomSize));
    addScripts(kMbc5Script);
    const QString path = m_fixture->addFile("dump.gb", QByteArray(100000, 'x'));
    pressAndWait(&MainTab::dumpButton, path);
    QCOMPARE(m_fixture->fileBytes("dump.gb"), m_fixture->rom().left(32768));
}

void FileActionTest::actionsAreDisabledUntilTheJobEnds()
{
    use(makeFlashCartridge(0x11)); // never reads as erased
    setPollWaiter(nullptr);        // or the wait were given up before Cancel is pressed
    addScripts(kIdleScript);
    const QString path = m_fixture->addFile("rom.gb", "rom");
    press(&MainTab::flashButton, path);
    QVERIFY(isBusy(*m_tab));
    QTRY_VERIFY(m_tab->console->toPlainText().contains("Start erase flash chip..."));
    QVERIFY(isBusy(*m_tab));

    QTest::mouseClick(m_tab->cancelButton, Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(isIdle(*m_tab), kJobTimeoutMs);
    COMPARE_LOG(
        *m_tab,
        (QStringList{"Flash chip is 8bit width", "Writing rom to cartridge from file:\n" + path,
                     "Read file :" + path, "Read 3 Bytes", "Start erase flash chip...",
                     ">Operation failure.", "<hr><br>"}));
}

// The actions come back when the job has been judged. Pressing one in that moment must start a job,
// although the threads of the job before may still be on their way out.
void FileActionTest::nextJobMayStartAtOnce()
{
    use(makeMbc5Cartridge(kRomSize));
    addScripts(kIdleScript);
    constexpr int kJobs = 3;
    constexpr int kLingerMs = 50;
    QSemaphore tabIsIdle;
    int ended = 0;
    connect(m_tab->guarded, &GuardedJob::changed, m_tab.get(), [&] {
        if (m_tab->guarded->isBusy())
            return;
        QVERIFY(isIdle(*m_tab));
        tabIsIdle.release();
        if (++ended < kJobs)
            press(&MainTab::readRamButton, m_fixture->path(QString("%1.sav").arg(ended)));
    });
    // Lingers behind its last signal; longer than the tab only if that waits, as it should.
    connect(
        m_tab->worker, &FamicomThread::error, m_tab->worker,
        [&] { tabIsIdle.tryAcquire(1, kLingerMs); }, Qt::DirectConnection);
    press(&MainTab::readRamButton, m_fixture->path("0.sav"));
    QTRY_COMPARE_WITH_TIMEOUT(ended, kJobs, kJobTimeoutMs);
    m_tab.reset(); // before what its connections refer to
    for (int i = 0; i < kJobs; ++i)
        QCOMPARE(m_fixture->fileBytes(QString("%1.sav").arg(i)).size(), 512);
}

void FileActionTest::flashChipIsProbed_data()
{
    QTest::addColumn<int>("sizeCode");
    QTest::addColumn<QString>("sizeLine");
    QTest::newRow("1 MiB") << 20 << "Flash chip size is :1024KB";
    QTest::newRow("2 MiB") << 21 << "Flash chip size is :2048KB";
    QTest::newRow("4 MiB") << 22 << "Flash chip size is :4096KB";
    QTest::newRow("8 MiB") << 23 << "Flash chip size is :8192KB";
    QTest::newRow("16 MiB") << 24 << "Flash chip size is :16384KB";
    QTest::newRow("32 MiB") << 25 << "Flash chip size is :32768KB";
    QTest::newRow("64 MiB") << 26 << "Flash chip size is :65536KB";
    QTest::newRow("128 MiB") << 27 << "Flash chip size is :131072KB";
    QTest::newRow("unknown code below") << 19 << "Flash chip size is :0KB";
    QTest::newRow("unknown code above") << 28 << "Flash chip size is :0KB";
}

void FileActionTest::flashChipIsProbed()
{
    QFETCH(int, sizeCode);
    QFETCH(QString, sizeLine);
    use(makeWideFlashCartridge(static_cast<std::uint8_t>(sizeCode)));
    addScripts("not a script"); // the job ends before it waits for an erase
    const QString path = m_fixture->addFile("rom.gb", "rom");
    pressAndWait(&MainTab::flashButton, path);

    const QStringList expected =
        greetingLines() + QStringList{"Flash chip is 16bit width", sizeLine,
                                      "Writing rom to cartridge from file:\n" + path,
                                      "Read file :" + path, "Read 3 Bytes"};
    const QString shown = m_tab->console->toPlainText();
    QCOMPARE(shown.left(plainLog(expected).size()), plainLog(expected));
    QCOMPARE(m_tab->worker->flash_width, 1);
    const QString kibibytes = sizeLine.section(':', 1).remove("KB");
    QCOMPARE(m_tab->worker->job().chipSize, kibibytes.toInt() * 1024);
    QCOMPARE(m_tab->worker->operate, 1);
    // Query, answer, back to read mode; a short read is a transfer of 1024 bytes.
    QCOMPARE(m_fixture->traffic().mid(0, 5),
             (QStringList{"F0/02", "02/01", "AA<-98", "DUMP 0+1024", "00<-F0"}));
}

void FileActionTest::gbaFlashIsNotProbed()
{
    use(makeWideFlashCartridge(22));
    addScripts(kIdleScript);
    m_tab->settings->selectSysType(1);
    pressAndWait(&MainTab::flashButton, m_fixture->addFile("rom.gba", "rom"));
    QVERIFY(!m_tab->console->toPlainText().contains("Flash chip"));
    QVERIFY(!m_fixture->traffic().contains("AA<-98"));
}

GBDRIVER_TEST(FileActionTest, gui)
#include "file_action_test.moc"
