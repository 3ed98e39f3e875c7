#include "core/WellFormed.h"

namespace
{
bool hasSurrogates(QStringView text)
{
    constexpr qsizetype atOnce = 16; // which the compiler looks at as one
    const auto isOneAmong = [](const QChar *characters, qsizetype count) {
        constexpr unsigned mask = 0xf800;
        constexpr unsigned surrogates = 0xd800;
        unsigned isFound = 0;
        for (qsizetype i = 0; i < count; ++i)
            isFound |= unsigned((characters[i].unicode() & mask) == surrogates);
        return isFound != 0;
    };
    const QChar *at = text.data();
    const QChar *const end = at + text.size();
    for (; end - at >= atOnce; at += atOnce) {
        if (isOneAmong(at, atOnce))
            return true;
    }
    return isOneAmong(at, end - at);
}
} // namespace

bool isWellFormed(QStringView text)
{
    return !hasSurrogates(text) || text.isValidUtf16();
}
