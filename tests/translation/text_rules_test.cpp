// Every rule for translations names what breaks it, and lets right ones pass.
#include "test_class.h"
#include "text_rules.h"

namespace
{

struct Case {
    const char *source;
    const char *translation;
    const char *fault; // that it is named for; nullptr: it is right
};

const Case kChinese[] = {
    {"GB Driver 3.0 build - ", "", "empty"},
    {"%1 of %2 bytes arrived", u8"共 %2 字节，已收到 %1 字节", nullptr},
    {"%1 of %2 bytes arrived", u8"已收到 %1 字节", "other placeholders"},
    {"%1 of %2 bytes arrived", u8"%1 %1 %2 字节", "other placeholders"},
    {"%1 bytes", u8"%12 字节", "a digit right behind a placeholder"},
    {"need <span style=\"color: #ffcc00;\">QDX</span> firmware.",
     u8"需要 <span style=\"color: #ffcc00;\">QDX</span> 固件。", nullptr},
    {"need <span style=\"color: #ffcc00;\">QDX</span> firmware.",
     u8"需要 <span style=\"color: #ffcc01;\">QDX</span> 固件。", "other markup"},
    {"less", u8"< 少", "a < that the log takes for markup"},
    {"both", u8"二 & 三", "an & that the English has not"},
    {"E&xit", u8"退出", "no accelerator in brackets"},
    {"E&xit", u8"退出(&X)", nullptr},
    {"Title: ", u8"标题：", nullptr},
    {"Title: ", u8"标题： ", "no full-width colon at the end"},
    {"Title: ", u8"标题: ", "no full-width colon at the end"},
    {"Flash chip size is :", u8"Flash 芯片容量：", nullptr},
    {"Read ", u8"已读取 ", nullptr},
    {"Read ", u8"已读取", "other blanks at the end"},
    {" Bytes", u8"字节", "other blanks at the beginning"},
    {"error\n", u8"出错。", "other blanks at the end"},
    {"set:\n- one\n  (two).\n", u8"套件：\n- 一\n  （二）。\n", nullptr},
    {"set:\n- one\n  (two).\n", u8"套件：\n- 一，（二）。\n", "other line breaks"},
    {"set:\n- one\n  (two).\n", u8"套件：\n- 一\n（二）。\n", "a line begins with other blanks"},
    {">Success!", u8">成功！", nullptr},
    {">Success!", u8"成功！", "another > at the beginning"},
    {">Success!", u8"> 成功！", "another > at the beginning"},
    {">Success!", u8"\uFF1E成功！", "a full-width letter, digit, < or >"},
    {"--Device information--", u8"--读写器信息--", nullptr},
    {"--Device information--", u8"——读写器信息——", "not -- on both sides as in the English"},
    {" 4.Try again.", u8" 4.重试", nullptr},
    {" 4.Try again.", u8" 4。重试", "another number at the beginning"},
    {"GBA Rom (*.gba)", "GBA ROM (*.gba)", nullptr},
    {"GBA Rom (*.gba)", u8"GBA ROM（*.gba）", "another file filter at the end"},
    {"All files (*)", u8"(*) 所有文件", "another file filter at the end"},
    {"Start dump rom...", u8"开始导出 ROM...", nullptr},
    {"Start dump rom...", u8"开始导出 ROM\u2026\u2026", "other dots"},
    {"Start dump rom...", u8"开始导出 ROM", "other dots"},
    {"Check a ROM file\u2026", u8"检查 ROM 文件\u2026", nullptr},
    {"Dump rom finish.", u8"ROM 导出完成...", "other dots"},
    {"switch power to 5V", u8"将电压切换到 5V", nullptr},
    {"switch power to 5V", u8"将电压切换到 3.3V", "the number 5 is missing"},
    {"/mapper/", "/mapper/", nullptr},
    {"/mapper/", u8"/脚本/", "not the same as the English"},
    {"\r\n", "\n", "not the same as the English"},
    {"Copyright (c) 2003", u8"版权 2003", "not the same as the English"},
    {"Read twice", u8"读取2次", "no blank between Latin letters or digits and the language's own"},
    {"two", u8"\uFF12 次", "a full-width letter, digit, < or >"},
    {"done", u8"完成 。", "a blank beside a full-width mark"},
    {"done", u8"完成,", "a half-width comma or semicolon"},
    {"done", u8"完成.", "a half-width full stop"},
    {"done", u8"已经  完成", "two blanks"},
    {"done?", u8"完成?", "a half-width colon, question or exclamation mark"},
    {"name (of it)", u8"名称 (它的)", "half-width brackets around Chinese"},
    {"name (NAME)", u8"名称（NAME）", "full-width brackets around Latin letters"},
    {"a name", u8"「名称」", "Japanese quotation marks"},
    {"Not enough memory.", u8"内存不足。", nullptr},
    {"save memory", u8"内存", u8"the word 内存"},
    {"directly on console", u8"在控制台上", u8"the word 控制台"},
    {"consistent: %1", u8"一致：%1", u8"not the word 无矛盾"},
    {"the cartridge", u8"卡匣", u8"the word 卡匣"},
    {"the cartridge", u8"它", u8"not the word 卡带"},
    {"TAMA5", u8"芯片 5", "without the name TAMA5"}};

const Case kJapanese[] = {
    {"Title: ", u8"タイトル: ", nullptr},
    {"Title: ", u8"タイトル:", "no colon like the English one at the end"},
    {"Title: ", u8"タイトル：", "no colon like the English one at the end"},
    {"SYS TYPE:", u8"機種:", nullptr},
    {"SYS TYPE:", u8"機種: ", "no colon like the English one at the end"},
    {"Flash chip size is :", u8"フラッシュチップの容量: ", nullptr},
    {">Success!", u8">正常に完了しました。", nullptr},
    {"done", u8"完了！",
     "a full-width colon, semicolon, comma, bracket, question or exclamation mark"},
    {"done", u8"ゲーム・ボーイ", "a middle dot"},
    {"done", u8"\uFF76\uFF84", "half-width kana"},
    {"done", u8"“完了”", "Chinese quotation marks"},
    {"done", u8"完了.", "a half-width full stop"},
    {"ROM dump", u8"ROMの吸い出し",
     "no blank between Latin letters or digits and the language's own"},
    {"directly on console", u8"コンソールで", u8"the word コンソール"},
    {"flash cart", u8"マジコン", u8"the word マジコン"},
    {"a folder", u8"フォルダ", u8"the word フォルダ(?!ー)"},
    {"a folder", u8"フォルダー", nullptr},
    {"Erase finish", u8"削除の完了", u8"the word 削除"},
    {"the reader", u8"リーダー", nullptr},
    {"the reader", u8"装置", u8"not the word リーダー"}};

TsEntry entryOf(const char *source, const char *translation, const char *context = "Context")
{
    return {context, QString::fromUtf8(source), QString::fromUtf8(translation), {}};
}

void addRows(const char *language, bool isChinese, const Case *begin, const Case *end)
{
    for (const Case *row = begin; row != end; ++row)
        QTest::addRow("%s %d", language, static_cast<int>(row - begin))
            << entryOf(row->source, row->translation) << isChinese
            << QString::fromUtf8(row->fault == nullptr ? "" : row->fault);
}

} // namespace

Q_DECLARE_METATYPE(TsEntry)

class TextRulesTest : public QObject
{
    Q_OBJECT

private slots:
    void everyFaultIsNamed_data();
    void everyFaultIsNamed();
    void unfinishedEntriesAreNamed();
    void entriesAreComparedWithEachOther_data();
    void entriesAreComparedWithEachOther();
};

void TextRulesTest::everyFaultIsNamed_data()
{
    QTest::addColumn<TsEntry>("entry");
    QTest::addColumn<bool>("isChinese");
    QTest::addColumn<QString>("fault");
    addRows("Chinese", true, std::begin(kChinese), std::end(kChinese));
    addRows("Japanese", false, std::begin(kJapanese), std::end(kJapanese));
}

void TextRulesTest::everyFaultIsNamed()
{
    QFETCH(TsEntry, entry);
    QFETCH(bool, isChinese);
    QFETCH(QString, fault);
    const QStringList faults = faultsOf(entry, isChinese ? Language::Chinese : Language::Japanese);
    if (fault.isEmpty())
        QCOMPARE(faults, QStringList());
    else
        QVERIFY2(faults.contains(fault), qPrintable(entry.source + ": " + faults.join("; ")));
}

void TextRulesTest::unfinishedEntriesAreNamed()
{
    for (const char *type : {"unfinished", "vanished", "obsolete"}) {
        TsEntry entry = entryOf("Title: ", u8"标题：");
        entry.type = type;
        QCOMPARE(faultsOf(entry, Language::Chinese), QStringList(type));
    }
}

void TextRulesTest::entriesAreComparedWithEachOther_data()
{
    QTest::addColumn<TsEntry>("first");
    QTest::addColumn<TsEntry>("second");
    QTest::addColumn<QStringList>("faults");
    QTest::newRow("same English, same translation")
        << entryOf("Info", u8"卡带信息") << entryOf("Info", u8"卡带信息", "Other") << QStringList();
    QTest::newRow("same English, other translation")
        << entryOf("Info", u8"卡带信息") << entryOf("Info", u8"信息", "Other")
        << QStringList{"Other: Info: translated differently elsewhere"};
    QTest::newRow("other English, same translation")
        << entryOf("Erase", u8"擦除") << entryOf("Delete", u8"擦除")
        << QStringList{"Context: Delete: translated like Erase"};
    QTest::newRow("the same in another context")
        << entryOf("Erase", u8"擦除") << entryOf("Delete", u8"擦除", "Other") << QStringList();
    QTest::newRow("Rom and ROM") << entryOf("GBA Rom (*.gba)", "GBA ROM (*.gba)")
                                 << entryOf("GBA ROM (*.gba)", "GBA ROM (*.gba)") << QStringList();
    QTest::newRow("one and several") << entryOf("bank %1 of %2", "bank %1/%2")
                                     << entryOf("banks %1 of %2", "bank %1/%2") << QStringList();
    QTest::newRow("a button's name")
        << entryOf("Go", u8"开始") << entryOf("Press \"Go\".", u8"请按“开始”。") << QStringList();
    QTest::newRow("a button's other name")
        << entryOf("Go", u8"开始") << entryOf("Press \"Go\".", u8"请按“启动”。")
        << QStringList{u8"Context: Press \"Go\".: does not name “开始”"};
    QTest::newRow("what is no button")
        << entryOf("Go", u8"开始") << entryOf("Say \"lsblk\".", u8"lsblk。") << QStringList();
}

void TextRulesTest::entriesAreComparedWithEachOther()
{
    QFETCH(TsEntry, first);
    QFETCH(TsEntry, second);
    QFETCH(QStringList, faults);
    QCOMPARE(faultsAmong({first, second}, Language::Chinese), faults);
}

GBDRIVER_TEST(TextRulesTest, none)
#include "text_rules_test.moc"
