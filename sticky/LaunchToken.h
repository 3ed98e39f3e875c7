#pragma once

#include <QString>

#include <optional>

/// What a launcher gives to the program that it starts, so that this may come to the front. Empty
/// where nobody gave anything.
struct LaunchToken {
    QString activationToken = {}; ///< of Wayland, XDG_ACTIVATION_TOKEN
    QString startupID = {};       ///< of X11, DESKTOP_STARTUP_ID

    [[nodiscard]] static LaunchToken fromEnvironment();
    /// The X server's time of the click or key that started the program.
    [[nodiscard]] std::optional<quint32> userTime() const;

    [[nodiscard]] bool operator==(const LaunchToken &) const = default;
};
