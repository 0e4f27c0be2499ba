#include "device/system_encoding.h"

#include <QTextCodec>

#include <windows.h>

void useSystemEncoding()
{
    if (GetACP() == CP_UTF8)
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}
