#include "helio/ctl/suite/suitetext.h"

#include <QLocale>
#include <QStringList>

#include "helio/doctor/doctorwords.h"
#include "helio/suite/statejson.h"
#include "texts/texts.h"

namespace ctl {

namespace {

constexpr int labelWidth = 14;

QString stateText(const suites::State &state)
{
    const QString name = helio::stateName(state);
    if (name == QLatin1String("running"))
        return texts::tr("running (process %1)").arg(state.processes.first());
    if (name == QLatin1String("locked"))
        return texts::tr("its profile is locked, but it is not running");
    return name == QLatin1String("unused") ? texts::tr("not used yet") : texts::tr("not running");
}

QString sizeText(qint64 bytes)
{
    if (bytes < 1024)
        return bytes == 1 ? texts::tr("1 byte") : texts::tr("%1 bytes").arg(bytes);
    return QLocale::c().formattedDataSize(bytes, 1);
}

QString line(const QString &label, const QString &value)
{
    return label.leftJustified(labelWidth) + QLatin1Char(' ') + helio::visible(value) +
           QLatin1Char('\n');
}

QString partLines(const suites::Profile &profile)
{
    QString text;
    for (const suites::PartSize &part : profile.parts)
        text += line(QStringLiteral("  ") + part.part, sizeText(part.bytes));
    return text;
}

} // namespace

QString suiteText(const suites::State &state)
{
    const suites::Installation &installation = state.installation;
    const suites::Profile &profile = state.profile;
    const QString separator = QStringLiteral(", ");
    QString text = line(installation.name,
                        QStringLiteral("%1 (%2) %3")
                            .arg(installation.version, installation.source, installation.folder)) +
                   line(texts::tr("State"), stateText(state)) +
                   line(texts::tr("Components"), installation.components.join(separator)) +
                   line(texts::tr("Languages"), installation.languages.join(separator)) +
                   line(texts::tr("Windows"), state.graphics.plugin) +
                   line(texts::tr("Profile"), profile.path) + partLines(profile);
    if (profile.goodCopies > 0)
        text += line(texts::tr("Last copy"), profile.lastCopy.toString(Qt::ISODate));
    if (!profile.earlier.isEmpty())
        text += line(texts::tr("Before a reset"), profile.earlier);
    for (const suites::Addon &addon : state.extensions) {
        text += line(texts::tr("Extension"), addon.name + QLatin1Char(' ') + addon.version);
        for (const QString &fault : addon.faults)
            text += line(QString(), fault);
    }
    return text;
}

QString startTimesText(const helio::StartTimes &times)
{
    const auto seconds = [](int ms) { return texts::tr("%1 s").arg(ms / 1000.0, 0, 'f', 2); };
    QString text = line(texts::tr("Your profile"), seconds(times.own)) +
                   line(texts::tr("A clean one"), seconds(times.clean)) +
                   texts::tr("Your profile costs %1. What leaving out a part saves:")
                       .arg(seconds(qMax(0, times.own - times.clean))) +
                   QLatin1Char('\n');
    for (const helio::StartTimes::Part &one : times.parts)
        text += line(QStringLiteral("  ") + one.part, seconds(one.saved));
    return text;
}

} // namespace ctl
