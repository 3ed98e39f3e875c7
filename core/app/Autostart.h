#pragma once

#include <QString>

#include <optional>

/// Whether the desktop starts Plim with the session, by the file that freedesktop desktops have for
/// that. Its user may switch the same off in the desktop's own settings, so nothing is remembered.
class Autostart
{
public:
    explicit Autostart(QString program); ///< the installed program's path
    [[nodiscard]] static Autostart ofThisProgram();

    /// False on systems that have another way.
    [[nodiscard]] static bool isSupported();
    [[nodiscard]] static QString file();

    [[nodiscard]] bool isOn() const;
    /// The reason when that could not be done; the file is as it was then.
    [[nodiscard]] std::optional<QString> setOn(bool isOn) const;

private:
    [[nodiscard]] QByteArray entry() const;

    QString m_program;
};
