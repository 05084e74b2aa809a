#include "texts/encoding.h"

#include <clocale>
#include <cstring>

#include <langinfo.h>

#include "qtversion/qtversion.h"

void texts::assumeUtf8WithoutLocale()
{
    std::setlocale(LC_ALL, "");
    if (std::strcmp(::nl_langinfo(CODESET), "ANSI_X3.4-1968") == 0)
        qtversion::useUtf8ForLocale();
}
