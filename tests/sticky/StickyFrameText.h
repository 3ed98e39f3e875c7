#pragma once

#include "sticky/StickyFrame.h"

#include <QTest>

/// Lets QCOMPARE print frames.
inline char *toString(const StickyFrame &frame)
{
    return QTest::toString(QStringLiteral("(%1, %2) %3 x %4")
                               .arg(frame.x)
                               .arg(frame.y)
                               .arg(frame.width)
                               .arg(frame.height));
}
