#pragma once

#include "host/running/RunWorker.h"

#include <QtTest>

/// As QTEST_MAIN() and QTEST_GUILESS_MAIN(), for a program with runs in a process of their own, which is this program
/// started again.
#define RUN_TEST_MAIN(Application, TestObject)                                                               \
    int main(int argc, char **argv)                                                                          \
    {                                                                                                        \
        if (StepHost::isRunWorker(argc, argv))                                                               \
            StepHost::workOnRun(argc, argv);                                                                 \
        Application application(argc, argv);                                                                 \
        TestObject test;                                                                                     \
        return QTest::qExec(&test, argc, argv);                                                              \
    }
