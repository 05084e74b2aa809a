#pragma once

#include <QString>

namespace helio {

/// The texts of PageNotice in one language. The pages bring their own; these are needed when no
/// page is there.
struct NoticeTexts
{
    QString stoppedTitle;
    QString stoppedExplanation;
    QString notShownTitle;
    /// With the name of the page as %1.
    QString notShownExplanation;
    QString reload;
    QString close;

    /// The texts for a language like "zh_CN"; English for one that has none of its own.
    static NoticeTexts of(const QString &language);
};

} // namespace helio
