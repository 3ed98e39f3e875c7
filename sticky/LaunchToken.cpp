#include "sticky/LaunchToken.h"

using namespace Qt::StringLiterals;

LaunchToken LaunchToken::fromEnvironment()
{
    return {qEnvironmentVariable("XDG_ACTIVATION_TOKEN"),
            qEnvironmentVariable("DESKTOP_STARTUP_ID")};
}

std::optional<quint32> LaunchToken::userTime() const
{
    constexpr auto mark = "_TIME"_L1;
    const auto place = startupID.lastIndexOf(mark);
    if (place < 0)
        return std::nullopt;
    bool isNumber = false;
    const quint32 time = QStringView(startupID).mid(place + mark.size()).toUInt(&isNumber);
    return isNumber ? std::optional(time) : std::nullopt;
}
