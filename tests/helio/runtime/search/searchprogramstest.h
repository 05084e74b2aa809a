#pragma once

#include <QObject>

#include <memory>

#include "tests/helio/runtime/search/searchprograms.h"

namespace testsupport {

/// Base of tests with fake plocate and updatedb, which each function gets anew.
class SearchProgramsTest : public QObject
{
protected:
    void setUp() { m_search = std::make_unique<SearchPrograms>(); }

    void tearDown()
    {
        const bool hadUnexpectedCalls = m_search->hasUnexpectedCalls();
        m_search.reset();
        QVERIFY(!hadUnexpectedCalls);
    }

    std::unique_ptr<SearchPrograms> m_search;
};

} // namespace testsupport
