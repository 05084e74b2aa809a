#include "texts/encoding.h"

#include <QTextCodec>

#include <clocale>
#include <cstring>

#include <langinfo.h>

void texts::assumeUtf8WithoutLocale()
{
    std::setlocale(LC_ALL, "");
    if (std::strcmp(::nl_langinfo(CODESET), "ANSI_X3.4-1968") == 0)
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}
