// A translator that has a translation for every text: "[Context]text". What a widget shows then
// tells whether a text was translated, and for which class.
//
// Thread: holds no state, so any thread may translate.
#pragma once

#include <QTranslator>

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
