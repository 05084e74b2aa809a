#pragma once

#include <QObject>

#include <memory>

#include "tests/helio/runtime/search/searchplace.h"

namespace testsupport {

/// Base of tests with the real plocate and updatedb. Each function gets its own place.
class SearchPlaceTest : public QObject
{
protected:
    void setUp()
    {
        // First, because its destructor restores the environment that the new one changes.
        m_place.reset();
        m_place = std::make_unique<SearchPlace>();
    }

    std::unique_ptr<SearchPlace> m_place;
};

} // namespace testsupport
