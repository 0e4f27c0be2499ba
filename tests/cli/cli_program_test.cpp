// The built command-line program on the virtual reader in its own process: how it counts, and what
// files may be called.
#include "program_run.h"
#include "test_class.h"

#include <QOperatingSystemVersion>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace
{

constexpr std::uint32_t kRomSize = 512 * 1024;
constexpr std::uint32_t kRamSize = 32 * 1024;
const char kDumpOptions[] = "--system gb --mapper mbc5 --rom-size 512K";

} // namespace

class CliProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_image = mbc5Image(kRomSize, kRamSize);
        putFile(path("cart.gb"), m_image);
    }

    // Standard error is a pipe here: a line for 0 %, 10 %, ... 100 % of each of the two reads, and
    // nothing drawn over. The first transfer already brings 6 %.
    void progressHasALineForEveryTenth()
    {
        const ProgramResult result = runProgram(
            CLI_PROGRAM, QString("dump %1 %2").arg(path("dump.gb"), kDumpOptions), reader());
        const QStringList lines =
            result.errLines().filter(QRegularExpression("^(read|compare) +\\[[#.]{12}\\] "));
        QCOMPARE(lines.size(), 22);
        QVERIFY(!result.err.contains('\r'));
        QVERIFY(!result.err.contains('\033'));
    }

    void fileNamesCanHaveSpacesAndOtherLetters_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("Latin") << QString::fromUtf8("Jeu d'été.gb");
        // Of other alphabets on Windows tells tests/windows/code_page_test.cpp.
        if (QOperatingSystemVersion::currentType() != QOperatingSystemVersion::Windows)
            QTest::newRow("Japanese") << QString::fromUtf8("Jeu d'été 日本.gb");
    }
    void fileNamesCanHaveSpacesAndOtherLetters()
    {
        QFETCH(QString, name);
        const ProgramResult result = runProgram(
            CLI_PROGRAM, QStringList({"dump", path(name)}) + QString(kDumpOptions).split(' '),
            reader());
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QVERIFY(contentOf(path(name)) == m_image);
    }

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    ReaderChoice reader() const { return {"cart=" + path("cart.gb"), ""}; }

    std::unique_ptr<QTemporaryDir> m_folder;
    QByteArray m_image;
};

GBDRIVER_TEST(CliProgramTest, core)
#include "cli_program_test.moc"
