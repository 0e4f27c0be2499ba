// Translators that show what is translated, and for which class.
#pragma once

#include <QStringList>
#include <QTranslator>

// Has a translation for every text: "[Context]text".
//
// Thread: holds no state, so any thread may translate.
class MarkingTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *text, const char * /*disambiguation*/,
                      int /*n*/) const override
    {
        return QString("[%1]").arg(context) + QString::fromUtf8(text);
    }
    bool isEmpty() const override { return false; }
};

// Translates nothing and remembers what it was asked for, as "Context: text".
class RecordingTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *text, const char *disambiguation,
                      int /*n*/) const override
    {
        asked << QString("%1: %2").arg(context, text);
        if (disambiguation != nullptr && *disambiguation != '\0')
            disambiguated << asked.last();
        return QString();
    }
    bool isEmpty() const override { return false; }

    mutable QStringList asked;
    mutable QStringList disambiguated;
};
