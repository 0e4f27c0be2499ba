// The real window on a real X server, used with keyboard and mouse, against the virtual reader on a
// real mount: what a user does on a first evening with the program.
#include "cartridge_files.h"
#include "desktop.h"
#include "mounted_reader.h"

#include <QtTest>

namespace
{

constexpr int kStepMs = 60000;
constexpr std::uint32_t kRomSize = 8 * 1024 * 1024;
constexpr std::uint32_t kSaveSize = 32 * 1024;
const QString kTitle = "GB Driver 3.0 build";

// How often Tab is pressed from the log to reach a button.
enum Button { Info = 1, Dump = 2, Flash = 3, ReadRam = 4, WriteRam = 5 };

} // namespace

class WindowOnMountTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QString problem = m_desktop.start();
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
        m_image = m_files.addImage(0x1B, kRomSize, kSaveSize);
        m_chip = m_files.addNoise("chip.sav", kSaveSize, 5);
        m_oldSave = contentOf(m_chip);
        const QString mounted = m_reader.start(m_image, m_chip);
        QVERIFY2(mounted.isEmpty(), qPrintable(mounted));
        startProgram();
        m_window = m_desktop.focusWindow(kTitle);
        QVERIFY2(!m_window.isEmpty(), qPrintable(m_desktop.lastError()));
        chooseSizes();
    }

    void infoFindsTheReader()
    {
        press(Info);
        // The identity is the one read of K-DRIVER.DMP.
        QTRY_VERIFY_WITH_TIMEOUT(countReads(m_reader.operations(), "K-DRIVER.DMP") > 0, kStepMs);
    }

    void dumpIsTheImage()
    {
        const QString dump = m_files.path("dump.gb");
        answerDialog(Dump, "Read ROM to...", dump);
        QTRY_VERIFY_WITH_TIMEOUT(contentOf(dump) == contentOf(m_image), kStepMs);
    }

    void readRamIsTheSave()
    {
        const QString save = m_files.path("save.sav");
        answerDialog(ReadRam, "Read save to...", save);
        QTRY_VERIFY_WITH_TIMEOUT(contentOf(save) == m_oldSave, kStepMs);
    }

    void writeRamReachesTheChip()
    {
        const QString changed = m_files.addNoise("changed.sav", kSaveSize, 6);
        answerDialog(WriteRam, "Get Save File.", changed);
        QTRY_VERIFY_WITH_TIMEOUT(contentOf(m_chip) == contentOf(changed), kStepMs);

        const QString readBack = m_files.path("back.sav");
        answerDialog(ReadRam, "Read save to...", readBack);
        QTRY_VERIFY_WITH_TIMEOUT(contentOf(readBack) == contentOf(changed), kStepMs);
    }

    void programEndsQuietlyAndLeavesTheDriveFree()
    {
        m_desktop.focusWindow(kTitle);
        m_desktop.press({"Escape"});
        QVERIFY(m_program.waitForFinished(kStepMs));
        QCOMPARE(QString::fromLocal8Bit(m_program.readAllStandardError()), QString());
        QCOMPARE(m_program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_program.exitCode(), 0);
        for (const QJsonObject &operation : m_reader.operations())
            QVERIFY(!operation.contains("refused"));
        QCOMPARE(m_reader.unmount(), QString());
    }

    void cleanupTestCase()
    {
        m_program.kill();
        m_program.waitForFinished(kStepMs);
    }

private:
    void startProgram()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DISPLAY", m_desktop.display());
        environment.insert("QT_QPA_PLATFORM", "xcb");
        environment.insert("XDG_RUNTIME_DIR", m_runtimeFolder.path());
        environment.insert("GBDRIVER_DRIVES", m_reader.declaration());
        environment.remove("GBDRIVER_VIRTUAL_READER");
        m_program.setProcessEnvironment(environment);
        m_program.start(WINDOW_PROGRAM, QStringList());
    }

    // From the tab bar: system, mapper, ROM size (last row: 8 MiB), RAM size (third row: 32 KiB).
    void chooseSizes() { m_desktop.press({"Tab", "Tab", "Tab", "End", "Tab", "Down", "Down"}); }

    // The log is the one wide area in the lower half; from it Tab leads over the buttons.
    void press(Button button)
    {
        m_desktop.focusWindow(kTitle);
        m_desktop.clickAt(m_window, 40, 70);
        m_desktop.press(QVector<QString>(button, "Tab").toList() + QStringList{"space"});
    }

    // A button does nothing while a job runs, so it is pressed until its dialog comes.
    void answerDialog(Button button, const QString &caption, const QString &path)
    {
        QTRY_VERIFY_WITH_TIMEOUT(opened(button, caption), kStepMs);
        QVERIFY(!m_desktop.focusWindow(caption).isEmpty());
        m_desktop.type(path);
        m_desktop.press({"Return"});
        QVERIFY(m_desktop.waitUntilClosed(caption));
    }

    bool opened(Button button, const QString &caption)
    {
        press(button);
        return QTest::qWaitFor(
            [&] {
                return !m_desktop.xdotool({"search", "--onlyvisible", "--name", caption}).isEmpty();
            },
            2000);
    }

    CartridgeFiles m_files;
    QTemporaryDir m_runtimeFolder;
    MountedReader m_reader;
    Desktop m_desktop;
    QProcess m_program;
    QString m_window;
    QString m_image;
    QString m_chip;
    QByteArray m_oldSave;
};

QTEST_GUILESS_MAIN(WindowOnMountTest)
#include "window_on_mount_test.moc"
