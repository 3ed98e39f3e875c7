#pragma once

#include <QTest>

/// ms that a condition has to come true: far more than it takes, for a machine that has little left
/// for the test, and less where a sanitizer looks at every step. Only a test that fails waits that long.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int longEnough = 300'000;
#else
constexpr int longEnough = 60'000;
#endif

// What QTest waits for by itself has five seconds, which such a machine may take for a single step.
// Every test program is compiled with this file in front, so that none forgets it.
#undef QTRY_VERIFY
#undef QTRY_VERIFY2
#undef QTRY_COMPARE
#define QTRY_VERIFY(expr) QTRY_VERIFY_WITH_TIMEOUT(expr, longEnough)
#define QTRY_VERIFY2(expr, message) QTRY_VERIFY2_WITH_TIMEOUT(expr, message, longEnough)
#define QTRY_COMPARE(expr, expected) QTRY_COMPARE_WITH_TIMEOUT(expr, expected, longEnough)
