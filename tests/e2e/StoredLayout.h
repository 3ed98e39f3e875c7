#pragma once

#include "tests/ThrowAwayHome.h"

#include <QStringList>

/// What the settings' file says of the sticky windows, read and written without the program's help.
class StoredLayout
{
public:
    explicit StoredLayout(const ThrowAwayHome &home) : m_home(home) {}

    /// Puts the text there as it is.
    void write(const QByteArray &text) const;
    [[nodiscard]] QByteArray read() const;
    /// Each window's frame, in the file's order, as frameText() has it.
    [[nodiscard]] QStringList frames() const;
    /// Each window's note, in the same order, in small letters.
    [[nodiscard]] QStringList noteIDs() const;

    [[nodiscard]] static QByteArray entry(const QString &noteID, double x, double y, double width,
                                          double height);

private:
    const ThrowAwayHome &m_home;
};
