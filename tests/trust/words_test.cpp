// Everything that can be found has words of its own.
#include "trust/words.h"

#include "test_class.h"

#include <QtTest>

namespace
{

// The texts of all values of an enumeration from `first` to `last`.
template <typename Enum, typename Text> QStringList textsOf(Enum first, Enum last, Text text)
{
    QStringList texts;
    for (int value = static_cast<int>(first); value <= static_cast<int>(last); ++value)
        texts << text(static_cast<Enum>(value));
    return texts;
}

// Not empty, each once.
bool areAllDifferent(const QStringList &texts)
{
    return !texts.contains(QString()) && QStringList(texts).removeDuplicates() == 0;
}

Outcome failed(JobEnd end)
{
    Outcome outcome;
    outcome.trouble = Trouble::JobFailed;
    outcome.job.end = end;
    outcome.detail = "/m/a.nut";
    return outcome;
}

} // namespace

class WordsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyStateHasASentence()
    {
        const QStringList texts =
            textsOf(CartridgeState::Untouched, CartridgeState::Written, stateText);
        QCOMPARE(texts, (QStringList{
                            "The cartridge was not touched.", "The cartridge was only looked at.",
                            "The cartridge was only read.",
                            "The cartridge was read, which also writes to its bus.",
                            "Nothing was read.", "Nothing was written; the cartridge is as it was.",
                            "The write was not begun; the cartridge was read, which also writes "
                            "to its bus.",
                            "The cartridge may be partly written.",
                            "What the chip held may be lost.", "The cartridge was written."}));
    }

    void phasesAndVerdictsHaveAWord()
    {
        QCOMPARE(textsOf(Phase::Read, Phase::Check, [](Phase phase) { return wordOf(phase); }),
                 (QStringList{"read", "compare", "backup", "write", "check"}));
        QCOMPARE(textsOf(VerdictKind::Verified, VerdictKind::Suspicious,
                         [](VerdictKind kind) { return wordOf(kind); }),
                 (QStringList{"verified", "consistent", "unverified", "unstable", "suspicious"}));
    }

    void everyReasonHasAClause()
    {
        const QStringList texts =
            textsOf(ReasonKind::NoBytes, ReasonKind::SaveRepeats, [](ReasonKind kind) {
                return reasonText({kind, 7, 9, "bank 1 of 2"});
            });
        QVERIFY2(areAllDifferent(texts), qPrintable(texts.join("\n")));
        for (const QString &text : texts)
            QVERIFY2(!text.endsWith('.') && !text.contains('%'), qPrintable(text));
    }

    void everyDangerAndDoubtIsExplained()
    {
        QCOMPARE(dangerText(Danger::None), QString());
        const QStringList dangers = textsOf(Danger::Mbc6Save, Danger::Tama5Save, dangerText);
        QVERIFY(areAllDifferent(dangers));
        const QStringList mappers = {"MBC6", "MBC7", "TAMA5"};
        for (int i = 0; i < mappers.size(); ++i)
            QVERIFY2(dangers[i].contains(mappers[i]), qPrintable(dangers[i]));
        const QStringList doubts = textsOf(Doubt::Tama5AsMbc5, Doubt::UnknownRomSize, doubtText);
        QVERIFY(areAllDifferent(doubts));
        for (const QString &text : doubts)
            QVERIFY2(!text.endsWith('.'), qPrintable(text));
        QVERIFY(doubts[0].contains("TAMA5"));
        QVERIFY(doubts[1].contains("MBC6"));
        QVERIFY(doubts[1].contains("no script can read"));
        QVERIFY(doubts[2].contains("32 KiB"));
    }

    void everyFlashFaultIsExplained()
    {
        QVERIFY(
            areAllDifferent(textsOf(FlashFault::GbaRom, FlashFault::BackupTooSmall,
                                    [](FlashFault fault) { return flashFaultText(fault, 1, 2); })));
    }

    void everyFileFaultIsTold()
    {
        QCOMPARE(fileTroubleText({}), QString());
        const QStringList texts =
            textsOf(FileFault::NameNotRepresentable, FileFault::NotRead, [](FileFault fault) {
                const bool isSentence = fault < FileFault::ReadsFolder;
                return fileTroubleText(
                    {fault, "a/b",
                     isSentence ? "Cannot write \"a/b\": full" : "no, said the system"});
            });
        QCOMPARE(texts,
                 (QStringList{"Cannot write a/b: the system cannot hold this name in its 8-bit "
                              "encoding.",
                              "Cannot write a/b: it is a folder.",
                              "Cannot write a/b: the folder does not exist.",
                              "Cannot write a/b: it exists already.", "Cannot write \"a/b\": full.",
                              "Cannot write \"a/b\": full.",
                              "a/b does not hold what was written to it; the disk is not to be "
                              "trusted.",
                              "Cannot write \"a/b\": full.", "Cannot read a/b: it is a folder.",
                              "Cannot read a/b: it is no ordinary file.",
                              "Cannot read a/b: it is too large for a cartridge.",
                              "Cannot read a/b: no, said the system."}));
    }

    void everyTroubleIsTold()
    {
        QCOMPARE(troubleText({}), QString());
        const QStringList texts =
            textsOf(Trouble::JobFailed, Trouble::Mismatch, [](Trouble trouble) {
                Outcome outcome;
                outcome.trouble = trouble;
                outcome.detail = "THE DETAIL";
                outcome.file = {FileFault::Exists, "THE DETAIL", {}};
                return troubleText(outcome);
            });
        QVERIFY2(areAllDifferent(texts), qPrintable(texts.join("\n")));
        const auto text = [&texts](Trouble trouble) { return texts[int(trouble) - 1]; };
        for (const Trouble trouble : {Trouble::ReadsDiffer, Trouble::NoFolder, Trouble::NoFile})
            QVERIFY2(text(trouble).contains("THE DETAIL"), qPrintable(text(trouble)));
        QVERIFY(text(Trouble::Stopped).startsWith("Asked to stop before two reads were compared."));
        QVERIFY(text(Trouble::ReadsDiffer)
                    .startsWith("Two reads of the cartridge differ (THE DETAIL)"));
        QVERIFY(text(Trouble::SaveIsBlank).startsWith("All bytes of the save are equal."));
    }

    void stopBeforeAWriteIsNoStoppedRead()
    {
        Outcome outcome;
        outcome.trouble = Trouble::Stopped;
        outcome.state = CartridgeState::NotWritten;
        QCOMPARE(troubleText(outcome), QString("Asked to stop before the write."));
    }

    void everyFailedJobIsTold()
    {
        for (int end = int(JobEnd::Done); end <= int(JobEnd::OutputNotWritten); ++end) {
            const QString text = troubleText(failed(static_cast<JobEnd>(end)));
            // A refusal is the script's own sentence.
            QCOMPARE(text.isEmpty(), end == int(JobEnd::Refused));
        }
        QVERIFY(troubleText(failed(JobEnd::NoScript)).contains("\"/m/a.nut\""));
        QCOMPARE(troubleText(failed(JobEnd::Done)), QString("The transfer failed."));
        QCOMPARE(troubleText(failed(JobEnd::ScriptFailed)), QString("The transfer failed."));
        QCOMPARE(troubleText(failed(JobEnd::Cancelled)),
                 QString("Stopped while the chip was being erased."));
    }

    void failureIsPutDownToItsCauses()
    {
        JobResult result;
        result.movedBytes = 512;
        result.wantedBytes = 1024;
        QCOMPARE(failureLines(result), QStringList{"Only 512 of 1024 bytes were transferred."});
        result.driveError = "the drive is full";
        QCOMPARE(failureLines(result),
                 (QStringList{"the drive is full", "Only 512 of 1024 bytes were transferred."}));
        result.failedOperation = "cpu_write: no";
        QCOMPARE(failureLines(result), (QStringList{"cpu_write: no", "the drive is full",
                                                    "Only 512 of 1024 bytes were transferred."}));
        // What ended the script stands in its log.
        result.end = JobEnd::ScriptFailed;
        QCOMPARE(failureLines(result).first(), QString("the drive is full"));
        result.end = JobEnd::Refused;
        result.scriptError = "MBC5: no.";
        QCOMPARE(failureLines(result), (QStringList{"MBC5: no.", "the drive is full"}));
        result.scriptError.clear();
        QCOMPARE(failureLines(result), QStringList{"the drive is full"});
    }

    void mismatchShowsItsPlaces()
    {
        WriteMismatch mismatch;
        mismatch.bytes.count = 2;
        mismatch.bytes.first = 5;
        mismatch.bytes.last = 0x12345;
        mismatch.size = 0x20000;
        mismatch.blocks = "banks 0, 9 of 16";
        mismatch.first = {{5, 0xFF, 0x0A}, {0x12345, 0x00, 0xAB}};
        const QStringList lines = mismatchText(mismatch).split('\n');
        QCOMPARE(lines.size(), 3);
        QVERIFY(lines[0].startsWith("The cartridge does not hold what was written: 2 of 131072"));
        QVERIFY(lines[0].endsWith(" differ (banks 0, 9 of 16)."));
        QCOMPARE(lines[1], QString("  0x0005: FF instead of 0A"));
        QCOMPARE(lines[2], QString("  0x12345: 00 instead of AB"));
    }
};

GBDRIVER_TEST(WordsTest, none)
#include "words_test.moc"
