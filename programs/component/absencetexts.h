#pragma once

#include <QString>

namespace standin {

/// What somebody reads who clicks a shortcut of the suite where the suite is not installed.
struct AbsenceTexts
{
    QString title;
    QString what;
    QString advice;
    QString close;

    /// In Chinese for a language that starts with "zh", else in English. @p program is the
    /// suite's program that the shortcut stands for.
    static AbsenceTexts of(const QString &language, const QString &program);
};

} // namespace standin
