#pragma once

class QJsonObject;

namespace OfficeAssiant {

/// The page that is shown the findings of an environment check.
class CheckPage
{
public:
    virtual ~CheckPage() = default;

    /// Whether there is such a page now. Called from the checking thread.
    virtual bool isOpen() = 0;

    /// Passes a check's findings to the page; they are lost if it has closed meanwhile. Called from
    /// the checking thread.
    virtual void show(const QJsonObject &findings) = 0;

protected:
    CheckPage() = default;
    CheckPage(const CheckPage &) = default;
    CheckPage &operator=(const CheckPage &) = default;
};

} // namespace OfficeAssiant
