// The tables of commands and options, and the help that is made from them.
#include "cli/help_text.h"

#include "cli/command_table.h"
#include "test_class.h"

#include <QFile>
#include <QRegularExpression>
#include <QtTest>

namespace
{

bool isPlainText(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar character) {
        return character == '\n' || (character >= ' ' && character <= '~');
    });
}

// The first line that is too long, or ends with a blank; empty if there is none.
QString badLine(const QString &text)
{
    for (const QString &line : text.split('\n')) {
        if (line.size() > kHelpColumns || line.endsWith(' '))
            return line;
    }
    return {};
}

// Texts are broken into lines anywhere.
QString onOneLine(const QString &text)
{
    return text.simplified();
}

} // namespace

class HelpTextTest : public QObject
{
    Q_OBJECT

private slots:
    void overviewFitsTheTerminal()
    {
        QVERIFY(kHelpColumns < 80);
        QCOMPARE(badLine(overviewHelp()), QString());
        QVERIFY(isPlainText(overviewHelp()));
    }

    void overviewNamesEveryCommandAndExitCode()
    {
        const QString help = onOneLine(overviewHelp());
        for (const CommandRow &row : commandTable())
            QVERIFY2(help.contains(commandUsage(row) + ' ' + row.summary), row.name);
        for (const ExitCodeRow &row : kExitCodes)
            QVERIFY2(
                help.contains(QString("%1 %2").arg(static_cast<int>(row.code)).arg(row.meaning)),
                row.word);
    }

    void commandHelpSaysAll_data() { addCommands(); }
    void commandHelpSaysAll()
    {
        const CommandRow &row = command();
        const QString lines = commandHelp(row);
        const QString help = onOneLine(lines);
        QCOMPARE(badLine(lines), QString());
        QVERIFY(isPlainText(lines));
        QVERIFY(help.startsWith("Usage: gbdriver-cli " + commandUsage(row) + " [options] "));
        QVERIFY(help.contains(row.summary));
        for (const char *paragraph : row.description)
            QVERIFY2(help.contains(paragraph), paragraph);
        for (const OptionRow *option : row.options)
            QVERIFY2(help.contains(optionUsage(*option) + ' ' + optionText(*option)), option->name);
        for (const CommandExample &example : row.examples)
            QVERIFY2(lines.contains(QString("  gbdriver-cli %1\n").arg(example.words)),
                     example.words);
        for (const ExitCode code : row.exitCodes)
            QVERIFY2(help.contains(rowOf(code).meaning), rowOf(code).word);
    }

    void commandsAreComplete_data() { addCommands(); }
    void commandsAreComplete()
    {
        const CommandRow &row = command();
        QVERIFY(findCommand(row.name) == &row); // no name twice
        QVERIFY(QString(row.summary).endsWith('.') && !row.description.empty());
        QVERIFY(!row.options.empty() && row.options.back() == &kHelpOption);
        QVERIFY(!row.examples.empty());
        QVERIFY(std::is_sorted(row.exitCodes.begin(), row.exitCodes.end()));
        QVERIFY(row.exitCodes.size() >= 2 && row.exitCodes.front() == ExitCode::Done);
        for (const OptionRow *option : row.options)
            QVERIFY2(findOption(row, option->name) == option, option->name);
    }

    // What an example shows must be taken; what it writes into is none of the program's business.
    void examplesAreRight_data() { addCommands(); }
    void examplesAreRight()
    {
        for (const CommandExample &example : command().examples) {
            QStringList words = QString(example.words).split(' ');
            const int redirection = words.indexOf(QRegularExpression(">>?"));
            if (redirection >= 0)
                words = words.mid(0, redirection);
            const CliOptions options = parseCliOptions(QStringList("gbdriver-cli") + words);
            QVERIFY2(options.request == command().request, qPrintable(options.text));
        }
    }

    void documentNamesEverything()
    {
        QFile file(DOCS_FOLDER "/command-line.md");
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString document = QString::fromUtf8(file.readAll());
        for (const CommandRow &row : commandTable())
            QVERIFY2(document.contains("| `" + commandUsage(row) + "` |"), row.name);
        for (const OptionRow *option : optionsByName())
            QVERIFY2(document.contains(QString("`--%1`").arg(option->name)), option->name);
    }

    void jobsStandInTheTable()
    {
        for (const char *name : {"dump", "read-ram", "write-ram", "flash"}) {
            QVERIFY2(findCommand(name) != nullptr, name);
            QVERIFY2(taskOf(findCommand(name)->request), name);
        }
    }

    void optionsAreComplete()
    {
        for (const OptionRow *option : allOptions()) {
            QVERIFY2(QString(option->description).endsWith('.'), option->name);
            for (const OptionRow *other : allOptions()) {
                const bool isNamesake = QString(option->name) == other->name;
                QVERIFY2(!isNamesake || option->kind == other->kind, option->name);
                if (option->excludes != nullptr && QString(option->excludes) == other->name &&
                    other->excludes != nullptr)
                    QCOMPARE(QString(other->excludes), QString(option->name));
            }
        }
    }

    void optionTextNamesChoicesAndDefault()
    {
        QCOMPARE(optionText(kSaveTypeOption),
                 QString("The save memory of a GBA cartridge. One of sram, flash, eep."));
        QVERIFY(optionText(kSaveReadsOption).endsWith(" Default: 2."));
        QVERIFY(optionText(kRamSizeOption).endsWith(" In bytes, or with suffix K or M."));
        QCOMPARE(optionUsage(kHelpOption), QString("-h, --help"));
        QCOMPARE(optionUsage(kDatOption), QString("--dat FILE"));
    }

private:
    static void addCommands()
    {
        QTest::addColumn<QString>("command");
        for (const CommandRow &row : commandTable())
            QTest::newRow(row.name) << row.name;
    }

    static const CommandRow &command()
    {
        for (const CommandRow &row : commandTable()) {
            if (QString(row.name) == QTest::currentDataTag())
                return row;
        }
        qFatal("no command %s", QTest::currentDataTag());
    }
};

GBDRIVER_TEST(HelpTextTest, core)
#include "help_text_test.moc"
