// The system's 8-bit encoding, as a test chooses it. With Qt 6 it is UTF-8 on every system but
// Windows, and cannot be chosen.
#pragma once

#include <QString>
#include <QTextCodec>
#include <QVector>

// The encodings that can be chosen. Not every Qt knows the last one.
inline QVector<const char *> localeCodecs()
{
    QVector<const char *> codecs{"UTF-8"};
    if (qVersion()[0] == '5')
        codecs << "ISO-8859-1";
    if (qVersion()[0] == '5' && QTextCodec::codecForName("US-ASCII") != nullptr)
        codecs << "US-ASCII";
    return codecs;
}

// A text that the encoding does not hold: of UTF-8 half a character.
inline QString unfitText(const char *codec)
{
    return qstrcmp(codec, "UTF-8") == 0 ? QString(QChar(0xD83C))
                                        : QString::fromUtf8("\u65E5\u672C");
}

// The system's encoding for as long as it lives.
class LocaleCodec
{
public:
    explicit LocaleCodec(const char *name) : m_usual(QTextCodec::codecForLocale())
    {
        QTextCodec::setCodecForLocale(QTextCodec::codecForName(name));
    }
    ~LocaleCodec() { QTextCodec::setCodecForLocale(m_usual); }
    LocaleCodec(const LocaleCodec &) = delete;
    LocaleCodec &operator=(const LocaleCodec &) = delete;

private:
    QTextCodec *m_usual;
};
