#pragma once

#include "sticky/LaunchToken.h"

#include <QString>

/// What a start of the program asks for: of itself, or of the Plim that runs already.
struct Invocation {
    QString command = {};   ///< an option's name; empty: show the main window
    bool isHidden = false;  ///< no window is wanted where Plim can be reached without one
    LaunchToken token = {}; ///< of the launcher, so that the window may come to the front

    [[nodiscard]] bool operator==(const Invocation &) const = default;
};
