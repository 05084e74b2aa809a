#include "doctor/conditions/value.h"

#include <array>

#include "texts/texts.h"

namespace doctor {

namespace {

struct Step
{
    double size;
    const char *unit;
};

constexpr std::array<Step, 4> sizeSteps{{
    {1099511627776.0, "TiB"},
    {1073741824.0, "GiB"},
    {1048576.0, "MiB"},
    {1024.0, "KiB"},
}};
constexpr std::array<Step, 4> ageSteps{{
    {365 * 86400.0, "years"},
    {86400.0, "days"},
    {3600.0, "h"},
    {60.0, "min"},
}};

template<std::size_t Count>
QString inUnits(double number, const std::array<Step, Count> &steps, const char *smallest)
{
    for (const Step &step : steps) {
        if (number >= step.size)
            return QString::number(number / step.size, 'f', number >= 10 * step.size ? 0 : 1) +
                   QLatin1Char(' ') + QLatin1String(step.unit);
    }
    return QString::number(number, 'f', 0) + QLatin1Char(' ') + QLatin1String(smallest);
}

QString sizeText(double bytes)
{
    if (bytes < sizeSteps.back().size)
        return bytes == 1 ? texts::tr("1 byte")
                          : texts::tr("%1 bytes").arg(QString::number(bytes, 'f', 0));
    return inUnits(bytes, sizeSteps, "");
}

} // namespace

QString Value::shown() const
{
    switch (type) {
    case ValueType::Text:
    case ValueType::Version:
        return text;
    case ValueType::Flag:
        return number > 0 ? QStringLiteral("true") : QStringLiteral("false");
    case ValueType::Size:
        return sizeText(number);
    case ValueType::Age:
        return inUnits(number, ageSteps, "s");
    case ValueType::Mode:
        return QString::number(static_cast<unsigned>(number), 8)
            .rightJustified(3, QLatin1Char('0'));
    case ValueType::Number:
        break;
    }
    return QString::number(number, 'g', 12);
}

} // namespace doctor
