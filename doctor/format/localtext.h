#pragma once

#include <QMap>
#include <QString>

namespace doctor {

/// A text in any number of languages, by codes such as "en", "zh" and "zh_CN".
struct LocalText
{
    QMap<QString, QString> byLanguage;

    bool isEmpty() const { return byLanguage.isEmpty(); }
    /// For a locale such as "zh_CN.UTF-8": the text for zh_CN, else for zh, else for another
    /// country's zh, else for en, else the first.
    QString inLanguage(const QString &locale) const;
};

} // namespace doctor
