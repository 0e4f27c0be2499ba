// Foreign text on its way to a terminal or into the log.
#include "worker/shown_text.h"

#include "test_class.h"

#include <QtTest>

class ShownTextTest : public QObject
{
    Q_OBJECT

private slots:
    void harmlessTextStaysAsItIs_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text : {"", "GAME", "two\nlines\r\n", "tab\there", "100% <b> \\x1B",
                                 "\u30dd\u30b1 \u00e9 \U0001F600", "\u05d0\u05d1 right to left"})
            QTest::newRow(text) << QString::fromUtf8(text);
    }
    void harmlessTextStaysAsItIs()
    {
        QFETCH(QString, text);
        QCOMPARE(shownText(text), text);
    }

    void everyOtherControlIsEscaped()
    {
        for (ushort code = 0; code < 0x2100; ++code) {
            const QChar letter(code);
            const bool isEndOfLine = code == '\n' || code == '\r';
            const bool isNoText = letter.category() == QChar::Other_Control ||
                                  letter.category() == QChar::Separator_Line ||
                                  letter.category() == QChar::Separator_Paragraph;
            if (!isNoText || isEndOfLine || code == '\t')
                continue;
            const QString expected =
                QString::asprintf(code < 0x100 ? "a\\x%02Xb" : "a\\u%04Xb", code);
            QCOMPARE(shownText('a' + QString(letter) + 'b'), expected);
            QCOMPARE(shownValue('a' + QString(letter) + 'b'), expected);
        }
    }

    // Unicode's list of characters that turn the rest of a line around (property Bidi_Control).
    void directionCannotBeChanged()
    {
        const ushort codes[] = {0x061C, 0x200E, 0x200F, 0x202A, 0x202B, 0x202C,
                                0x202D, 0x202E, 0x2066, 0x2067, 0x2068, 0x2069};
        for (const ushort code : codes)
            QCOMPARE(shownText(QString(QChar(code))), QString::asprintf("\\u%04X", code));
    }

    void returnAloneEndsTheLine()
    {
        QCOMPARE(shownText("verified\rsuspicious"), QString("verified\nsuspicious"));
        QCOMPARE(shownText("end\r"), QString("end\n"));
        QCOMPARE(shownText("\r\r\n"), QString("\n\r\n"));
    }

    void valueIsOneLine()
    {
        QCOMPARE(shownValue("GAME\nverified: X\r\t"), QString("GAME\\x0Averified: X\\x0D\\x09"));
    }

    void halfPairsAreReplaced()
    {
        const QString high = QChar(0xD83D);
        const QString low = QChar(0xDE00);
        const QString lost = QChar(QChar::ReplacementCharacter);
        QCOMPARE(shownText(high), lost);
        QCOMPARE(shownText(low), lost);
        QCOMPARE(shownText(low + high), lost + lost);
        QCOMPARE(shownText(high + 'x' + low), lost + 'x' + lost);
        QCOMPARE(shownText(high + low), high + low);
    }
};

GBDRIVER_TEST(ShownTextTest, none)
#include "shown_text_test.moc"
