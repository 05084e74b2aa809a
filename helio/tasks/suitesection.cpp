#include "helio/tasks/suitesection.h"

#include <QJsonArray>
#include <QJsonObject>

#include "helio/suite/statejson.h"
#include "texts/texts.h"

namespace helio {

namespace {

constexpr char lineEnd[] = "\r\n";

QString textOf(const QJsonValue &value)
{
    return value.toVariant().toString().simplified();
}

/// A line for each value, after the names that lead to it. A list of values is one line.
QString linesOf(const QString &name, const QJsonValue &value)
{
    const QString inner = name.isEmpty() ? QString() : name + QLatin1Char('.');
    QString lines;
    const QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member)
        lines += linesOf(inner + member.key(), member.value());
    QStringList texts;
    int number = 0;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &one : array) {
        if (one.isObject())
            lines += linesOf(inner + QString::number(++number), one);
        else
            texts.append(textOf(one));
    }
    const bool isLine = !value.isObject() && lines.isEmpty();
    if (isLine)
        lines = QStringLiteral("%1=%2").arg(name, value.isArray() ? texts.join(QStringLiteral(", "))
                                                                  : textOf(value)) +
                QLatin1String(lineEnd);
    return lines;
}

} // namespace

QByteArray suiteSection(const doctor::Machine &machine)
{
    // As the rest of the report, which is for those who help.
    const texts::InLanguage english(QStringLiteral("en"));
    const QString edge = QStringLiteral("************suite-%1***********\r\n");
    return (edge.arg(QStringLiteral("begin")) + linesOf({}, suiteDescription(machine)) +
            edge.arg(QStringLiteral("end")))
        .toUtf8();
}

} // namespace helio
