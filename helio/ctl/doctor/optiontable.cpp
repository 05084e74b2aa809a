#include "helio/ctl/doctor/optiontable.h"

namespace ctl {

namespace {

constexpr int nameWidth = 17;

} // namespace

QString optionTable(const QList<QCommandLineOption> &options)
{
    QString table;
    for (const QCommandLineOption &option : options) {
        QString name = QStringLiteral("--") + option.names().constFirst();
        if (!option.valueName().isEmpty())
            name += QLatin1Char(' ') + option.valueName();
        table += QStringLiteral("  ") + name.leftJustified(nameWidth) + option.description() +
                 QLatin1Char('\n');
    }
    return table;
}

} // namespace ctl
