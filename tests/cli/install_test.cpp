// An installed copy of the build: complete, and working from where it stands.
#include "program_run.h"
#include "test_class.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

namespace
{

constexpr std::uint32_t kRomSize = 128 * 1024;
constexpr std::uint32_t kRamSize = 8 * 1024;

} // namespace

class InstallTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_prefix.isValid());
        QVERIFY(m_files.isValid());
        const ProgramResult result = runProgram(
            CMAKE_PROGRAM, QStringList({"--install", BUILD_FOLDER, "--prefix", m_prefix.path()}));
        QVERIFY2(result.exitCode == 0, qPrintable(result.out + result.err));
        m_image = mbc5Image(kRomSize, kRamSize);
        putFile(m_files.filePath("cart.gb"), m_image);
    }

    void everyMapperScriptStandsBesideTheProgram()
    {
        const QStringList scripts = QDir(MAPPER_FOLDER).entryList({"*.nut"}, QDir::Files);
        const QDir installed(m_prefix.filePath(PROGRAM_FOLDER "/mapper"));
        QVERIFY(!scripts.isEmpty());
        QCOMPARE(installed.entryList(QDir::Files), scripts);
        for (const QString &script : scripts)
            QVERIFY2(contentOf(installed.filePath(script)) ==
                         contentOf(QDir(MAPPER_FOLDER).filePath(script)),
                     qPrintable(script));
    }

    void installedProgramsExist_data()
    {
        QTest::addColumn<QString>("path");
        for (const char *path :
             {PROGRAM_FOLDER "/gbdriver", PROGRAM_FOLDER "/gbdriver-cli", LINK_FOLDER "/gbdriver",
              LINK_FOLDER "/gbdriver-cli", LINK_FOLDER "/gbdriver-virtual-reader"})
            QTest::newRow(path) << path;
    }
    void installedProgramsExist()
    {
        QFETCH(QString, path);
        const QFileInfo program(m_prefix.filePath(path));
        QVERIFY2(program.isFile() && program.isExecutable(), qPrintable(program.filePath()));
    }

    // Pages and completions that the program prints are installed as it prints them.
    void printedFilesAreTheProgramsOwn_data()
    {
        QTest::addColumn<QString>("words");
        QTest::newRow(MAN_FOLDER "/man1/gbdriver-cli.1") << "manual";
        QTest::newRow(DATA_FOLDER "/bash-completion/completions/gbdriver-cli") << "completion bash";
        QTest::newRow(DATA_FOLDER "/zsh/site-functions/_gbdriver-cli") << "completion zsh";
        QTest::newRow(DATA_FOLDER "/fish/vendor_completions.d/gbdriver-cli.fish")
            << "completion fish";
    }
    void printedFilesAreTheProgramsOwn()
    {
        QFETCH(QString, words);
        const ProgramResult result =
            runProgram(m_prefix.filePath(LINK_FOLDER "/gbdriver-cli"), words);
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QVERIFY(!result.out.isEmpty());
        QCOMPARE(QString::fromLatin1(contentOf(m_prefix.filePath(QTest::currentDataTag()))),
                 result.out);
    }

    void writtenPagesAreInstalled_data()
    {
        QTest::addColumn<QString>("page");
        for (const char *page : {"gbdriver.1", "gbdriver-virtual-reader.1"})
            QTest::newRow(page) << page;
    }
    void writtenPagesAreInstalled()
    {
        QFETCH(QString, page);
        const QByteArray written = contentOf(PAGES_FOLDER "/" + page);
        QVERIFY(!written.isEmpty());
        QCOMPARE(contentOf(m_prefix.filePath(MAN_FOLDER "/man1/" + page)), written);
    }

    void desktopFindsTheWindow_data()
    {
        QTest::addColumn<QString>("validator");
        QTest::newRow(DATA_FOLDER "/applications/gbdriver.desktop") << "desktop-file-validate";
        QTest::newRow(DATA_FOLDER "/metainfo/local.velora.gbdriver.metainfo.xml")
            << "appstreamcli validate --no-net --pedantic";
    }
    void desktopFindsTheWindow()
    {
        QFETCH(QString, validator);
        QStringList words = validator.split(' ');
        const QString program = QStandardPaths::findExecutable(words.takeFirst());
        QVERIFY2(!program.isEmpty(), "the validator is missing; tools/setup.sh installs it");
        const ProgramResult result =
            runProgram(program, words << m_prefix.filePath(QTest::currentDataTag()));
        QVERIFY2(result.exitCode == 0, qPrintable(result.out + result.err));
    }

    void iconIsThereInEverySize()
    {
        const QDir icons(m_prefix.filePath(DATA_FOLDER "/icons/hicolor"));
        QVERIFY(QFileInfo::exists(icons.filePath("scalable/apps/gbdriver.svg")));
        for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
            const QString folder = QStringLiteral("%1x%1").arg(size);
            const QByteArray picture = contentOf(icons.filePath(folder + "/apps/gbdriver.png"));
            QVERIFY2(picture.startsWith("\x89PNG") && picture.size() > 24, qPrintable(folder));
            // A PNG begins with 16 bytes of which none is its own, then come its width and height.
            QCOMPARE(qFromBigEndian<qint32>(picture.constData() + 16), size);
            QCOMPARE(qFromBigEndian<qint32>(picture.constData() + 20), size);
        }
    }

    // The link on the user's path must lead to the scripts as well.
    void installedProgramDumps_data()
    {
        QTest::addColumn<QString>("program");
        QTest::newRow("program") << PROGRAM_FOLDER "/gbdriver-cli";
        QTest::newRow("link") << LINK_FOLDER "/gbdriver-cli";
    }
    void installedProgramDumps()
    {
        QFETCH(QString, program);
        const QString dump = m_files.filePath("dump.gb");
        QFile::remove(dump);
        const ProgramResult result =
            runProgram(m_prefix.filePath(program),
                       "dump " + dump + " --system gb --mapper mbc5 --rom-size 128K",
                       {"cart=" + m_files.filePath("cart.gb"), ""});
        QVERIFY2(result.exitCode == 0, qPrintable(result.err));
        QVERIFY(contentOf(dump) == m_image);
    }

private:
    QTemporaryDir m_prefix;
    QTemporaryDir m_files;
    QByteArray m_image;
};

GBDRIVER_TEST(InstallTest, core)
#include "install_test.moc"
