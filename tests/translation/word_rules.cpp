#include "word_rules.h"

#include <QRegularExpression>

#include <algorithm>

namespace
{

// A pattern of a word that is wrong wherever the English matches.
struct WrongWord {
    const char *word;
    const char *english = ""; // empty: everywhere
    const char *right = "";   // where the English matches this, the word is right
};

// The words of a thing: where the English has it, one of them has to be there.
struct WantedWord {
    const char *english;
    const char *chinese;
    const char *japanese;
};

const char kComputerMemory[] = "[Nn]ot enough memory|MiB of memory";

const QVector<WrongWord> kWrongChinese{{u8"内存", "", kComputerMemory},
                                       {u8"控制台"}, // console: the game machine
                                       {u8"闪存"},
                                       {u8"闪光"},
                                       {u8"转储"},
                                       {u8"倾倒"},
                                       {u8"卡匣"},
                                       {u8"墨盒"},
                                       {u8"时隙"},
                                       {u8"读卡器"},
                                       {u8"阅读器"},
                                       {u8"烧录器"},
                                       {u8"设备"}, // device: the reader
                                       {u8"韧体"},
                                       {u8"黑色"}, // of a cartridge that does not answer
                                       {u8"家酿"},
                                       {u8"银行"},
                                       {u8"映射器"},
                                       {u8"地图"},
                                       {u8"商标"},
                                       {u8"检验码"},
                                       {u8"编程"},
                                       {u8"抹掉"},
                                       {u8"删除", "[Ee]ras"},
                                       {u8"医生"},
                                       {u8"判决"},
                                       {u8"资讯"},
                                       {u8"情报"},
                                       {u8"档案"},
                                       {u8"目录"},
                                       {u8"设定"},
                                       {u8"暂停"},
                                       {u8"千字节"},
                                       {u8"兆"},
                                       {u8"你"},
                                       {u8"放弃", "[Cc]ancel"},
                                       {u8"工作", "\\b[Jj]ob\\b"},
                                       {u8"操作系统", "SYS TYPE"},
                                       {u8"读取存档", "Read RAM"},
                                       {u8"一致|持续|一贯", "consistent"},
                                       {u8"驱动程序", "[Dd]river label"}};

const QVector<WrongWord> kWrongJapanese{{u8"コンソール"},
                                        {u8"マジコン"},
                                        {u8"黒い"},
                                        {u8"カセット"},
                                        {u8"カードリーダー"},
                                        {u8"ダンプボード"},
                                        {u8"デバイス"}, // device: the reader
                                        {u8"メモリー"},
                                        {u8"メモリ", "\\bRAM (SIZE|TYPE|Size)"},
                                        {u8"ファームウェアー|ファームウエア"},
                                        {u8"フォルダ(?!ー)"},
                                        {u8"リーダ(?!ー)"},
                                        {u8"ヘッダ(?!ー)"},
                                        {u8"ドライバ(?!ー)"},
                                        {u8"ディレクトリ"},
                                        {u8"フラッシュする|フラッシュ ROM|焼く"},
                                        {u8"プログラムする"},
                                        {u8"コアダンプ"},
                                        {u8"自家製"},
                                        {u8"見出し"},
                                        {u8"題名"},
                                        {u8"検査合計"},
                                        {u8"間違い"},
                                        {u8"ロム"},
                                        {u8"ウィルス"},
                                        {u8"体験版"},
                                        {u8"ドクター|医者"},
                                        {u8"ジョブ"},
                                        {u8"取り消"},
                                        {u8"一時停止|中断"},
                                        {u8"検証失敗"},
                                        {u8"切替|吸出|書込|読込|読出"},
                                        {u8"削除", "[Ee]ras"},
                                        {u8"一致|一貫", "consistent"},
                                        {u8"キロバイト|兆"},
                                        {u8"あなた|いたします"}};

const QVector<WantedWord> kWanted{{"\\b[Cc]artridges?\\b", u8"卡带", u8"カートリッジ"},
                                  {"\\b[Rr]eader\\b", u8"读写器", u8"リーダー"},
                                  {"\\b[Ff]irmware\\b", u8"固件", u8"ファームウェア"},
                                  {"\\bchecksum\\b", u8"校验和", u8"チェックサム"},
                                  {"\\bheader\\b", u8"卡带头", u8"ヘッダー"},
                                  {"\\bcontacts\\b", u8"触点", u8"端子"},
                                  {"\\bfolder\\b", u8"文件夹", u8"フォルダー"},
                                  {"\\bbackup\\b", u8"备份", u8"バックアップ"},
                                  {"\\bknown dumps?\\b", u8"已收录|未收录", u8"既知のダンプ"},
                                  {"\\bdemo reader\\b", u8"演示读写器", u8"デモ用リーダー"},
                                  {"^verified:", u8"已验证", u8"検証済み"},
                                  {"^consistent:", u8"无矛盾", u8"矛盾なし"},
                                  {"^unverified:", u8"未验证", u8"未検証"},
                                  {"^unstable:", u8"不稳定", u8"不安定"},
                                  {"^suspicious:", u8"可疑", u8"疑わしい"},
                                  {"^written:", u8"已写入", u8"書き込み済み"},
                                  {"^incomplete:", u8"不完整", u8"不完全"},
                                  {"^failed:", u8"失败", u8"失敗"},
                                  {"^refused:", u8"拒绝执行", u8"実行拒否"},
                                  {"^stopped:", u8"已停止", u8"中止"}};

// Names and units that no language changes.
const QStringList kNames{"Velora",
                         "GB/GBC",
                         "GBA",
                         "MBC6",
                         "MBC7",
                         "TAMA5",
                         "MMM01",
                         "CMD.CMD",
                         "DUMP.ROM",
                         "K-DRIVER.DMP",
                         "lsblk",
                         "udisksctl mount -b /dev/sdX1",
                         "GBDRIVER_DRIVES",
                         "gbdriver-cli tidy",
                         "SHA-1",
                         "MiB",
                         "KiB",
                         "128 K",
                         "256 Mb",
                         "uid="};

bool matches(const char *pattern, const QString &text)
{
    return QRegularExpression(QString::fromUtf8(pattern)).match(text).hasMatch();
}

bool isWrong(const WrongWord &word, const QString &source, const QString &translation)
{
    const bool isRight = *word.right != '\0' && matches(word.right, source);
    return !isRight && matches(word.english, source) && matches(word.word, translation);
}

} // namespace

QStringList wordFaults(const QString &source, const QString &translation, Language language)
{
    const bool isChinese = language == Language::Chinese;
    QStringList faults;
    for (const WrongWord &word : isChinese ? kWrongChinese : kWrongJapanese) {
        if (isWrong(word, source, translation))
            faults << QString("the word %1").arg(QString::fromUtf8(word.word));
    }
    for (const WantedWord &word : kWanted) {
        const char *wanted = isChinese ? word.chinese : word.japanese;
        if (matches(word.english, source) && !matches(wanted, translation))
            faults << QString("not the word %1").arg(QString::fromUtf8(wanted));
    }
    for (const QString &name : kNames) {
        if (source.contains(name) && !translation.contains(name))
            faults << QString("without the name %1").arg(name);
    }
    return faults;
}
