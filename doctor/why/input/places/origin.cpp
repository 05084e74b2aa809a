#include "doctor/why/input/places/origin.h"

#include <algorithm>

namespace doctor {

namespace {

bool isSameLine(const Setting &one, const Setting &other)
{
    return one.path == other.path && one.line == other.line;
}

void addOnce(QVector<Setting> &lines, const Setting &line)
{
    const auto known = std::find_if(lines.begin(), lines.end(),
                                    [&line](const Setting &one) { return isSameLine(one, line); });
    if (known == lines.end())
        lines.append(line);
    else if (line.isSure)
        *known = line;
}

/// Whether the value can come from this line; one that computes its value may give any.
bool couldGive(const Setting &setting, const std::optional<QByteArray> &value)
{
    if (setting.isRemoved)
        return !value.has_value();
    return setting.value ? setting.value == value : value.has_value();
}

/// Goes back from the last line that takes effect to the first that must have.
Origin lookBack(const QVector<Setting> &settings, const std::optional<QByteArray> &value)
{
    Origin origin;
    for (auto one = settings.crbegin(); one != settings.crend(); ++one) {
        if (couldGive(*one, value)) {
            addOnce(origin.lines, *one);
        } else if (one->isSure) {
            origin.contradiction = *one;
            return origin;
        }
        if (one->isSure)
            break;
    }
    const bool isOne = origin.lines.size() == 1 && origin.lines.constFirst().isSure;
    if (isOne && origin.lines.constFirst().value.has_value() == value.has_value())
        origin.state = Origin::State::Line;
    return origin;
}

QVector<Setting> ofVariable(const QVector<Setting> &settings, const QByteArray &variable)
{
    QVector<Setting> found;
    for (const Setting &setting : settings) {
        if (setting.variable == variable)
            found.append(setting);
    }
    return found;
}

/// Plasma takes environment.d in after the login shell, other sessions before.
QVector<Setting> inOtherOrder(const QVector<Setting> &settings)
{
    QVector<Setting> before;
    QVector<Setting> middle;
    QVector<Setting> after;
    for (const Setting &one : settings) {
        if (one.stage == Stage::EnvironmentD)
            middle.append(one);
        else if (one.stage == Stage::Launcher)
            after.append(one);
        else
            before.append(one);
    }
    return before + middle + after;
}

bool isExplained(const Origin &origin)
{
    return !origin.contradiction || !origin.lines.isEmpty();
}

/// Of both orders; where they differ the one that explains the value counts.
Origin ofEitherOrder(const QVector<Setting> &settings, const std::optional<QByteArray> &value)
{
    Origin usual = lookBack(settings, value);
    Origin other = lookBack(inOtherOrder(settings), value);
    if (!isExplained(usual))
        return other;
    if (!isExplained(other))
        return usual;
    Origin both = usual;
    for (const Setting &line : other.lines)
        addOnce(both.lines, line);
    if (both.lines.size() > 1)
        both.state = Origin::State::Undecided;
    return both;
}

} // namespace

Origin originOf(const QByteArray &variable, const QVector<Setting> &settings,
                const SessionKind &session, const Evidence &evidence)
{
    QVector<Setting> own = ofVariable(settings, variable);
    if (evidence.isOfLaunch)
        own.erase(std::remove_if(own.begin(), own.end(),
                                 [](const Setting &one) { return one.stage != Stage::Launcher; }),
                  own.end());
    Origin origin =
        session.isGnome ? lookBack(own, evidence.value) : ofEitherOrder(own, evidence.value);
    if (!evidence.value) {
        if (!origin.contradiction && origin.lines.size() <= 1)
            origin.state = Origin::State::Unset;
        return origin;
    }
    const bool isFromManager =
        session.isManaged && !evidence.isOfLaunch && evidence.managerValue == evidence.value;
    if (origin.state != Origin::State::Line && origin.lines.isEmpty() && isFromManager)
        origin.state = Origin::State::Manager;
    return origin;
}

} // namespace doctor
