// What the shells themselves complete with the scripts that the program prints.
#include "program_run.h"

#include "cli/command_table.h"
#include "cli/shell_completion.h"
#include "test_class.h"

#include <QDir>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

namespace
{

const QStringList kShells = {"bash", "zsh", "fish"};

QStringList sorted(QStringList words)
{
    words.sort();
    return words;
}

QStringList longOptions(const std::vector<const OptionRow *> &options)
{
    QStringList names;
    for (const OptionRow *option : options)
        names << QString("--") + option->name;
    return sorted(names);
}

QStringList zshWords(const QString &output)
{
    QStringList words;
    QRegularExpressionMatchIterator matches =
        QRegularExpression("<word:([^>]*)>").globalMatch(output);
    while (matches.hasNext())
        words << matches.next().captured(1);
    words.removeDuplicates(); // zsh looks for folders twice
    return words;
}

// fish puts a description behind a tab and a slash behind a folder.
QStringList fishWords(const QString &output)
{
    QStringList words;
    for (const QString &line : output.split('\n').filter(QRegularExpression(".")))
        words << line.section('\t', 0, 0).remove(QRegularExpression("/$"));
    return words;
}

} // namespace

class ShellCompletionTest : public QObject
{
    Q_OBJECT

private slots:
    // The shells run in a folder with one file and one folder, which is their home too.
    void initTestCase()
    {
        QVERIFY(m_home.isValid());
        qputenv("HOME", m_home.path().toLocal8Bit());
        qputenv("XDG_CONFIG_HOME", m_home.filePath(".config").toLocal8Bit());
        qputenv("XDG_DATA_HOME", m_home.filePath(".data").toLocal8Bit());
        for (const QString &shell : kShells) {
            QVERIFY2(!QStandardPaths::findExecutable(shell).isEmpty(),
                     qPrintable(shell + " is missing; tools/setup.sh installs it"));
            putFile(m_home.filePath("." + shell), completionScript(shell).toLatin1());
        }
        putFile(m_home.filePath("game.gb"), "game");
        QVERIFY(QDir(m_home.path()).mkdir("games"));
        QVERIFY(QDir::setCurrent(m_home.path()));
    }

    void cleanupTestCase() { QVERIFY(QDir::setCurrent("/")); }

    void shellsKnowTheScriptsLanguage_data() { addShells(); }
    void shellsKnowTheScriptsLanguage()
    {
        const QString shell = QTest::currentDataTag();
        const QString check = shell == "fish" ? "--no-execute" : "-n";
        const ProgramResult result = runProgram(shell, QStringList({check, "." + shell}));
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(result.err, QString());
    }

    void otherShellsHaveNoScript() { QCOMPARE(completionScript("csh"), QString()); }

    void commands_data() { addShells(); }
    void commands()
    {
        QCOMPARE(completed("gbdriver-cli "), sorted(commandNames()));
        QCOMPARE(completed("gbdriver-cli d"), QStringList({"drives", "dump"}));
        QCOMPARE(completed("gbdriver-cli help d"), QStringList({"drives", "dump"}));
    }

    void optionsBeforeTheCommand_data() { addShells(); }
    void optionsBeforeTheCommand()
    {
        QCOMPARE(completed("gbdriver-cli --"), longOptions(optionsByName()));
        QCOMPARE(completed("gbdriver-cli --quiet d"), QStringList({"drives", "dump"}));
        QCOMPARE(completed("gbdriver-cli --drive E d"), QStringList({"drives", "dump"}));
    }

    void optionsOfEveryCommand_data()
    {
        QTest::addColumn<QString>("shell");
        QTest::addColumn<QString>("command");
        for (const QString &shell : kShells) {
            for (const CommandRow &row : commandTable())
                QTest::newRow(qPrintable(shell + ' ' + row.name)) << shell << row.name;
        }
    }
    void optionsOfEveryCommand()
    {
        QFETCH(QString, shell);
        QFETCH(QString, command);
        QCOMPARE(completedBy(shell, "gbdriver-cli " + command + " --"),
                 longOptions(findCommand(command)->options));
    }

    void optionsBehindTheFile_data() { addShells(); }
    void optionsBehindTheFile()
    {
        QCOMPARE(completed("gbdriver-cli dump game.gb --over"), QStringList("--overwrite"));
        QCOMPARE(completed("gbdriver-cli --quiet dump game.gb --over"), QStringList("--overwrite"));
    }

    void valuesOfOptions_data()
    {
        QTest::addColumn<QString>("shell");
        QTest::addColumn<QString>("words");
        QTest::addColumn<QStringList>("values");
        for (const QString &shell : kShells) {
            for (const CommandRow &row : commandTable()) {
                for (const OptionRow *option : row.options) {
                    const QStringList values = valueChoices(option->kind);
                    const QString words = QString("%1 --%2 ").arg(row.name, option->name);
                    if (!values.isEmpty())
                        QTest::newRow(qPrintable(shell + ' ' + words)) << shell << words << values;
                }
            }
        }
    }
    void valuesOfOptions()
    {
        QFETCH(QString, shell);
        QFETCH(QString, words);
        QFETCH(QStringList, values);
        QCOMPARE(completedBy(shell, "gbdriver-cli " + words), sorted(values));
    }

    void shells_data() { addShells(); }
    void shells() { QCOMPARE(completed("gbdriver-cli completion "), sorted(kShells)); }

    // Readline makes words of its own of what stands around the sign.
    void bashCompletesBehindTheSign()
    {
        const QStringList line = {"gbdriver-cli", "dump", "--mapper", "="};
        QCOMPARE(bash(line).size(), 7);
        QCOMPARE(bash(line + QStringList("t")), QStringList("tama5"));
        QCOMPARE(bash(line + QStringList({"mbc1", "--over"})), QStringList("--overwrite"));
    }

    void namesOnDisk_data()
    {
        QTest::addColumn<QString>("shell");
        QTest::addColumn<QString>("words");
        QTest::addColumn<QStringList>("names");
        const QStringList both = {"game.gb", "games"};
        const QStringList folder = {"games"};
        for (const QString &shell : kShells) {
            const auto add = [&shell](const char *words, const QStringList &names) {
                QTest::newRow(qPrintable(shell + ' ' + words)) << shell << words << names;
            };
            add("dump gam", both);
            add("dump --overwrite gam", both);
            add("--quiet dump --overwrite gam", both);
            add("dump --mapper mbc5 gam", both);
            add("dump --dat gam", both);
            add("check-script gam", both);
            add("backup gam", folder);
            add("write-ram --backup gam", folder);
            add("info gam", {});
            add("dump --rom-size gam", {});
        }
    }
    void namesOnDisk()
    {
        QFETCH(QString, shell);
        QFETCH(QString, words);
        QFETCH(QStringList, names);
        const QStringList got = completedBy(shell, "gbdriver-cli " + words);
        if (shell == "bash") // readline completes them
            QCOMPARE(got, names.size() == 2 ? QStringList("default")
                                            : QStringList(names.isEmpty() ? "" : "dirnames")
                                                  .filter(QRegularExpression(".")));
        else
            QCOMPARE(got, names);
    }

    void bashOffersOneFileOnly()
    {
        QCOMPARE(bash({"gbdriver-cli", "dump", "game.gb", "gam"}), QStringList());
        QCOMPARE(bash({"gbdriver-cli", "dump", "--", "--ga"}), QStringList("default"));
    }

private:
    static void addShells()
    {
        QTest::addColumn<QString>("shell");
        for (const QString &shell : kShells)
            QTest::newRow(qPrintable(shell)) << shell;
    }

    // What the shell of this row completes at the end of `line`.
    static QStringList completed(const QString &line)
    {
        return completedBy(QTest::currentDataTag(), line);
    }

    static QStringList completedBy(const QString &shell, const QString &line)
    {
        if (shell == "bash")
            return bash(line.split(' '));
        const QString driver = QString(TEST_FOLDER "/complete.") + shell;
        QStringList arguments = {driver, "." + shell, line};
        if (shell == "zsh")
            arguments.prepend("-f");
        const ProgramResult result = runProgram(shell, arguments);
        return sorted(shell == "zsh" ? zshWords(result.out) : fishWords(result.out));
    }

    static QStringList bash(const QStringList &words)
    {
        const ProgramResult result =
            runProgram("bash", QStringList({TEST_FOLDER "/complete.bash", ".bash"}) + words);
        return sorted((result.out + result.err).split('\n').filter(QRegularExpression(".")));
    }

    QTemporaryDir m_home;
};

GBDRIVER_TEST(ShellCompletionTest, core)
#include "shell_completion_test.moc"
