#include "programs/checktool/machine/shellword.h"

namespace programs {

QString shellWord(const QString &text)
{
    QString word = text;
    word.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QLatin1Char('\'') + word + QLatin1Char('\'');
}

} // namespace programs
