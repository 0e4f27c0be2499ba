// The real window on a real X server writes a game into a flash cartridge, through the virtual
// reader on a real mount, and dumps it again.
#include "cartridge_files.h"
#include "driven_window.h"
#include "test_class.h"

#include <QJsonArray>
#include <QtTest>

namespace
{

constexpr int kStepMs = 60000;
constexpr std::uint32_t kRomSize = 64 * 1024;

} // namespace

class WindowFlashOnMountTest : public QObject
{
    Q_OBJECT

private slots:
    void gameIsFlashedAndDumped_data()
    {
        QTest::addColumn<QString>("width");
        QTest::addColumn<int>("opcode");
        QTest::newRow("8-bit chip") << "8" << 14;
        QTest::newRow("16-bit chip") << "16" << 15;
    }

    void gameIsFlashedAndDumped()
    {
        QFETCH(QString, width);
        QFETCH(int, opcode);
        CartridgeFiles files;
        const QString old = files.addImage(0x19, kRomSize, 0, 1);
        const QString game = files.addImage(0x19, kRomSize, 0, 2);
        QVERIFY(contentOf(old) != contentOf(game));
        MountedReader reader;
        QCOMPARE(reader.start(old, QString(), {"--flash", width}), QString());
        DrivenWindow window;
        QCOMPARE(window.start(reader), QString());
        window.pressInSettings({"Tab", "Tab", "Tab", "Down"}); // ROM size: the second row, 64 KiB
        QCOMPARE(window.answerDialog(WindowButton::Flash, "Get ROM File.", game), QString());
        QTRY_COMPARE_WITH_TIMEOUT(programmedBytes(reader, opcode), static_cast<int>(kRomSize),
                                  kStepMs);
        QVERIFY(
            window.logWith("written: ").contains("\nwritten: 65536 bytes; nothing was read back"));
        const QList<QByteArray> backups = window.backups();
        QCOMPARE(backups.size(), 1);
        QVERIFY(backups[0] == contentOf(old));
        const QString dump = files.path("dump.gb");
        QCOMPARE(window.answerDialog(WindowButton::Dump, "Read ROM to...", dump), QString());
        QTRY_VERIFY_WITH_TIMEOUT(contentOf(dump) == contentOf(game), kStepMs);

        QCOMPARE(window.close(), QString());
        QVERIFY(programmedBytes(reader, opcode) > 0); // nothing was refused later on either
        QCOMPARE(reader.unmount(), QString());
    }

private:
    // Payload of the blocks that program a chip with this opcode; -1 if anything was refused.
    static int programmedBytes(const MountedReader &reader, int opcode)
    {
        int bytes = 0;
        for (const QJsonObject &operation : reader.operations()) {
            if (operation.contains("refused"))
                return -1;
            for (const QJsonValue &block : operation["blocks"].toArray()) {
                if (block["class"] == 2 && block["opcode"] == opcode)
                    bytes += block["length"].toInt();
            }
        }
        return bytes;
    }
};

GBDRIVER_TEST(WindowFlashOnMountTest, core)
#include "window_flash_on_mount_test.moc"
