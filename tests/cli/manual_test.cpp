// The manual pages: complete, and right in the eyes of the program that shows them.
#include "cli/manual.h"

#include "cli/command_table.h"
#include "program_run.h"
#include "test_class.h"
#include "virtual/fuse/program_options.h"

#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

using namespace virtual_reader;

namespace
{

// A page as it is read, without line breaks and the blanks that fill lines.
QString shown(const QString &path)
{
    return runProgram("mandoc", QStringList({"-T", "ascii", path}))
        .out.remove(QRegularExpression(".\b"))
        .simplified();
}

} // namespace

class ManualTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_folder.isValid());
        QVERIFY2(!QStandardPaths::findExecutable("mandoc").isEmpty(),
                 "mandoc is missing; tools/setup.sh installs it");
        m_page = m_folder.filePath("gbdriver-cli.1");
        putFile(m_page, manualPage().toLatin1());
    }

    // The pages have no date: the version says how old they are.
    void pagesAreRight_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("command line") << m_page;
        QTest::newRow("window") << PAGES_FOLDER "/gbdriver.1";
        QTest::newRow("virtual reader") << PAGES_FOLDER "/gbdriver-virtual-reader.1";
    }
    void pagesAreRight()
    {
        QFETCH(QString, path);
        const ProgramResult result =
            runProgram("mandoc", QStringList({"-T", "lint", "-W", "warning", path}));
        const QStringList remarks =
            (result.out + result.err).split('\n').filter(QRegularExpression("."));
        QCOMPARE(remarks.size(), 1);
        QVERIFY2(remarks[0].contains("missing date"), qPrintable(remarks[0]));
    }

    void pageSaysAll()
    {
        const QString page = shown(m_page);
        for (const CommandRow &row : commandTable()) {
            QVERIFY2(page.contains("gbdriver-cli " + commandUsage(row) + " [options]"), row.name);
            QVERIFY2(page.contains(commandUsage(row) + ' ' + row.summary), row.name);
            for (const char *paragraph : row.description)
                QVERIFY2(page.contains(paragraph), paragraph);
            for (const CommandExample &example : row.examples)
                QVERIFY2(page.contains(
                             QString("gbdriver-cli %1 %2").arg(example.words, example.meaning)),
                         example.words);
        }
        for (const OptionRow *option : allOptions())
            QVERIFY2(page.contains(optionUsage(*option) + ' ' + optionText(*option)), option->name);
        for (const ExitCodeRow &row : kExitCodes)
            QVERIFY2(
                page.contains(QString("%1 %2").arg(static_cast<int>(row.code)).arg(row.meaning)),
                row.word);
        for (const char *name : {"GBDRIVER_DRIVES", "GBDRIVER_VIRTUAL_READER", "NO_COLOR",
                                 "~/.local/share/gbdriver/backups", GBDRIVER_VERSION})
            QVERIFY2(page.contains(name), name);
    }

    // An option that differs from command to command says whose it is.
    void optionsNameTheirCommands()
    {
        const QString page = shown(m_page);
        QVERIFY(page.contains("Default: 2. Commands: read-ram."));
        QVERIFY(page.contains("How much of the cartridge to back up. In bytes, or with suffix K or "
                              "M. Commands: flash."));
    }

    // The page is written by hand; the program's help is the measure.
    void virtualReadersPageHasItsOptions()
    {
        const QString page = shown(PAGES_FOLDER "/gbdriver-virtual-reader.1");
        const QString usage = QString::fromStdString(programUsage());
        QRegularExpressionMatchIterator matches =
            QRegularExpression("^  (--[a-z-]+)( (?! )\\S+)?", QRegularExpression::MultilineOption)
                .globalMatch(usage);
        int count = 0;
        for (; matches.hasNext(); ++count) {
            const QRegularExpressionMatch match = matches.next();
            const QString option = match.captured(1) + match.captured(2);
            QVERIFY2(page.contains(option + ' '), qPrintable(option));
        }
        QVERIFY(count > 20);
    }

private:
    QTemporaryDir m_folder;
    QString m_page;
};

GBDRIVER_TEST(ManualTest, core)
#include "manual_test.moc"
