#pragma once

#include <QString>

namespace helio {

/// The texts of PageNotice in one language. The pages have their own texts; these are for when no
/// page is shown.
struct NoticeTexts
{
    QString stoppedTitle;
    QString stoppedExplanation;
    QString notShownTitle;
    /// %1 is the name of the page.
    QString notShownExplanation;
    QString reload;
    QString close;

    /// The texts for a language such as "zh_CN"; English if there are none for it.
    static NoticeTexts of(const QString &language);
};

} // namespace helio
