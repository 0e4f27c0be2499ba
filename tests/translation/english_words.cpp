#include "english_words.h"

#include <QRegularExpression>

QStringList englishWords(QString text, const QStringList &foreign)
{
    static const QStringList names{
        "Velora", "Driver",  "Series", "GB",   "GBC",  "GBA",    "ROM",   "RAM",   "SHA",
        "KB",     "KiB",     "MiB",    "QDX",  "PCB",  "FW",     "V",     "B",     "K",
        "FF",     "MBC",     "PC",     "Logo", "bank", "Mapper", "Flash", "FLASH", "SRAM",
        "TAMA",   "VIRTUAL", "x",      "E",    "CMD",  "DUMP",   "DMP",   "READER"};
    for (const QString &there : foreign)
        text.remove(there);
    text.remove(QRegularExpression("\\b[0-9a-f]{40}\\b|\\b0x[0-9A-Fa-f]+\\b|\\b[0-9A-F]{2}\\b"));
    static const QRegularExpression word("[A-Za-z]+");
    QStringList words;
    for (auto all = word.globalMatch(text); all.hasNext();) {
        const QString found = all.next().captured();
        if (!names.contains(found) && !words.contains(found))
            words << found;
    }
    return words;
}
