#pragma once

#include <QObject>

#include <memory>

#include "tests/helio/runtime/search/searchplace.h"

namespace testsupport {

/// A test of the search with the real plocate and updatedb: each function has a place of its own.
class SearchPlaceTest : public QObject
{
protected:
    void setUp()
    {
        // The one before restores the environment that this one changes.
        m_place.reset();
        m_place = std::make_unique<SearchPlace>();
    }

    std::unique_ptr<SearchPlace> m_place;
};

} // namespace testsupport
