#include "cli_cases.h"

#include <QDir>

namespace
{

// A cartridge without a mapper: 32 KiB of ROM, 8 KiB of RAM.
const QByteArray kGoodDump = "function cpu_dump(dev, size, _) { cpu_read(dev, 0, 0x8000); }\n";
const QByteArray kHalfDump = "function cpu_dump(dev, size, _) { cpu_read(dev, 0, 0x4000); }\n";

} // namespace

QVector<CliCase> scriptCases()
{
    QVector<CliCase> rows;
    rows.append({"scripts", "scripts", "", {}, ExitCode::Done, "script"});
    rows.append({"selftest",
                 "selftest",
                 "",
                 {},
                 ExitCode::Done,
                 "selftestSystem selftestScript selftestJob selftestTotal"});
    const QStringList shipped = QDir(SHIPPED_SCRIPTS).entryList({"gb*.nut"}, QDir::Files);
    if (shipped.isEmpty())
        qFatal("there are no scripts in %s", SHIPPED_SCRIPTS);
    for (const QString &script : shipped)
        rows.append({script,
                     "check-script " SHIPPED_SCRIPTS "/" + script,
                     "",
                     {},
                     ExitCode::Done,
                     "scriptTrial",
                     {begins("cpu_dump: right\n"), lacks("WRONG"), lacks("too few")},
                     {},
                     {},
                     {},
                     script == shipped.first()}); // the events are those of every trial

    const auto add = [&](const QString &name, const QByteArray &script, ExitCode code,
                         const Texts &answer) {
        rows.append({name,
                     "check-script DIR/gb_mbc0.nut",
                     "",
                     {{"gb_mbc0.nut", script}},
                     code,
                     "scriptTrial",
                     answer});
    };
    add("operations beside the least",
        "function cpu_dump(dev, size, _) {\n"
        "cpu_write(dev, 0x6000, 0); cpu_read(dev, 0, 0x4000);\n"
        "cpu_read(dev, 0x4000, 0x4000); }\n",
        ExitCode::Done,
        {holds("32768 of 32768 bytes moved\n"),
         holds("1 command files, 2 reads; the least are 0 and 1\n"),
         holds("save_dump: not defined\n")});
    add("wrong order",
        "function cpu_dump(dev, size, _) {\n"
        "cpu_read(dev, 0x4000, 0x4000);\n"
        "cpu_read(dev, 0, 0x4000); }\n",
        ExitCode::DataMismatch, {begins("cpu_dump: WRONG"), holds("32768 of 32768 bytes moved\n")});
    add("overrun",
        kGoodDump + "function save_dump(dev, size, _) {\n"
                    "cpu_read(dev, 0xA000, 0x2000); cpu_read(dev, 0xA000, 0x2000); }\n",
        ExitCode::ScriptError,
        {holds("save_dump: FAILED on the way:\n"),
         holds("cursor 8192, length 8192: outside the buffer of 8192 bytes")});
    add("does not compile", "function cpu_dump(dev {\n", ExitCode::ScriptError,
        {holds("cpu_dump: refused, nothing was sent:\n"), holds("line = (1)")});
    // What a script refuses is no fault as long as it sends nothing before.
    const QByteArray refusing =
        kGoodDump + "function save_dump(dev, size, _) { throw \"no such save\"; }\n";
    add("refusal", refusing, ExitCode::Done, {holds("save_dump: refused, nothing was sent:\n")});
    add("failure on the way",
        refusing + "function save_write(dev, size, _) {\n"
                   "cpu_write(dev, 0x0000, 0x0A); no_such_function(dev); }\n",
        ExitCode::ScriptError,
        {holds("save_write: FAILED on the way:\n"),
         holds("script error: the index 'no_such_function' does not exist (gb_mbc0.nut, line ")});
    add("shortfall, and more after it",
        kHalfDump + "function save_dump(dev, size, _) { cpu_read(dev, 0xA000, 0x2000); }\n",
        ExitCode::DataMismatch,
        {begins("cpu_dump: WRONG"), holds("16384 of 32768 bytes moved, 16384 bytes too few\n"),
         holds("save_dump: right\n"), holds("save_write: not defined\n")});
    // Nobody erases the chip, and nobody is there to press Cancel.
    const QByteArray flash = " }\nfunction cpu_flash(dev, size, _) { rom_write(dev, 0, size); }\n";
    add("erase refused", "function cpu_erase(dev, size, width) { throw \"no chip\";" + flash,
        ExitCode::TransferFailed,
        {holds("cpu_erase and cpu_flash: refused, nothing was sent:\n"),
         holds("The erase does not end.")});
    add("erase not started",
        "function cpu_erase(dev, size, width) { cpu_write(dev, 0x0000, 0xF0);" + flash,
        ExitCode::TransferFailed,
        {holds("cpu_erase and cpu_flash: FAILED on the way:\n"), holds("The erase does not end.")});
    add("top level that reaches for the cartridge", "cpu_write(0, 0x2000, 1);\n" + kGoodDump,
        ExitCode::TransferFailed,
        {holds("cpu_dump: refused, nothing was sent:\n"),
         holds("the top level of a script cannot use the cartridge")});

    const Files mine{{"mine.nut", kGoodDump}};
    rows.append({"kind not told",
                 "check-script DIR/mine.nut",
                 "",
                 mine,
                 ExitCode::Usage,
                 "",
                 {},
                 {holds("give --mapper")}});
    rows.append({"kind told", "check-script DIR/mine.nut --mapper none", "", mine, ExitCode::Done,
                 "scriptTrial"});
    const Files files{{"gb_mbc0.nut", "file(\"target\", \"wb\");\n" + kGoodDump}};
    rows.append({"files, closed",
                 "check-script DIR/gb_mbc0.nut",
                 "",
                 files,
                 ExitCode::TransferFailed,
                 "scriptTrial",
                 {holds("cpu_dump: refused, nothing was sent:"),
                  holds("| AN ERROR HAS OCCURED [scripts may not use files here]")},
                 {holds("try it with --allow-files.")}});
    rows.append({"no script",
                 "check-script DIR/none/gb_mbc5.nut",
                 "",
                 {},
                 ExitCode::FileError,
                 "",
                 {},
                 {holds("There is no such script file.")}});
    return rows;
}
