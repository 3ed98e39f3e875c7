#pragma once

#include <QPointer>
#include <QUuid>
#include <QWindow>

#include <optional>

/// The one reference to the main window, and the note to be selected once it is shown.
struct WindowHolder {
    QPointer<QWindow> window;
    std::optional<QUuid> pendingSelectedID;

    [[nodiscard]] static WindowHolder &shared();
};
