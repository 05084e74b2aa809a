#pragma once

#include <QJsonObject>
#include <QList>

#include <atomic>
#include <functional>
#include <mutex>

#include "envcheck/checkpage.h"

/// A page that records what it is shown.
class RecordingCheckPage : public OfficeAssiant::CheckPage
{
public:
    bool isOpen() override
    {
        const bool open = m_isOpen;
        if (whenAsked)
            whenAsked();
        return open;
    }

    void show(const QJsonObject &findings) override
    {
        const std::lock_guard<std::mutex> locker(m_guard);
        m_shown.append(findings);
    }

    QList<QJsonObject> shown() const
    {
        const std::lock_guard<std::mutex> locker(m_guard);
        return m_shown;
    }

    void setOpen(bool open) { m_isOpen = open; }

    std::function<void()> whenAsked;

private:
    std::atomic<bool> m_isOpen{true};
    mutable std::mutex m_guard;
    QList<QJsonObject> m_shown;
};
