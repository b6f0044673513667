#pragma once

#include <QObject>
#include <QTest>

#include <functional>
#include <vector>

// Several QtTest classes per executable: each test file registers its class with
// SORVEL_TEST and the shared main runs them all, one after the other.
//
// Before anything runs, the shared main points HOME and the XDG folders at a
// fresh temporary folder and turns on QStandardPaths' test mode, so no test can
// reach the real home, settings or Trash of whoever runs it.
namespace TestMain {
bool add(const char *name, std::function<int(int, char **)> run);
// The temporary home set up for this run.
QByteArray home();
} // namespace TestMain

#define SORVEL_TEST(Class)                                                                                             \
    static const bool sorvelTest_##Class = TestMain::add(#Class, [](int argc, char **argv) {                           \
        Class test;                                                                                                    \
        return QTest::qExec(&test, argc, argv);                                                                        \
    })
