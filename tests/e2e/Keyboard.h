#pragma once

#include <QByteArray>
#include <QHash>

#include <xcb/xcb.h>

/// A keyboard on an X display whose keys go down at once: for a test that must know when. Knows the
/// keys of small letters, digits, space, Return and BackSpace.
class Keyboard
{
public:
    /// On the display that the environment names.
    Keyboard();
    ~Keyboard();
    Q_DISABLE_COPY_MOVE(Keyboard)

    /// Whether there is an X server that takes keys from a program.
    [[nodiscard]] bool isConnected() const { return m_isConnected; }
    /// Presses the key and lets it go; the server has it when this returns. '\n' is Return, '\b'
    /// BackSpace.
    void press(char key) const;
    void type(const QByteArray &text) const;

private:
    void readKeys();

    xcb_connection_t *m_connection;
    bool m_isConnected = false;
    QHash<xcb_keysym_t, xcb_keycode_t> m_codes;
};
