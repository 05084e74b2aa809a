#pragma once

#include <QTest>

#include "helio/headless/headlessapplication.h"
#include "tests/support/privatehome.h"

/// The main function of a test program: runs the test class in a private home, without a display
/// and with file dialogs answered by helio::DialogAnswers.
#define HEADLESS_TEST_MAIN(TestClass)                                                              \
    int main(int argc, char *argv[])                                                               \
    {                                                                                              \
        const testsupport::PrivateHome home;                                                       \
        const helio::HeadlessApplication application(argv[0]);                                     \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
