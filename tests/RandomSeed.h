#pragma once

#include <QByteArray>
#include <QRandomGenerator>
#include <QtDebug>

/// What a test that plays at random begins with: the same in every run, so that none fails by
/// chance. PLIM_TEST_SEED=random looks elsewhere each time, and PLIM_TEST_SEED=n repeats what that
/// has found.
inline quint32 randomSeed()
{
    quint32 seed = 20'240'305;
    const QByteArray chosen = qgetenv("PLIM_TEST_SEED");
    if (chosen == "random") {
        seed = QRandomGenerator::global()->generate();
    } else if (!chosen.isEmpty()) {
        bool isNumber = false;
        seed = chosen.toUInt(&isNumber);
        if (!isNumber)
            qFatal("PLIM_TEST_SEED is a number or 'random', not '%s'", chosen.constData());
    }
    qInfo("PLIM_TEST_SEED=%u", seed);
    return seed;
}

/// How many documents, made from that seed and those after it, such a test takes: PLIM_TEST_COUNT.
inline quint32 documentCount(quint32 usual)
{
    bool isNumber = false;
    const quint32 chosen = qEnvironmentVariable("PLIM_TEST_COUNT").toUInt(&isNumber);
    return isNumber ? chosen : usual;
}
