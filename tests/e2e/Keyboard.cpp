#include "tests/e2e/Keyboard.h"

#include <xcb/xtest.h>

#include <cstdlib>
#include <memory>
#include <span>

namespace
{
template <typename T>
std::unique_ptr<T, decltype(&std::free)> owned(T *reply)
{
    return {reply, &std::free};
}

// Latin-1 characters are their own key symbols.
xcb_keysym_t symbolOf(char key)
{
    switch (key) {
    case '\n':
        return 0xff0d;
    case '\b':
        return 0xff08;
    default:
        return xcb_keysym_t(static_cast<unsigned char>(key));
    }
}
} // namespace

Keyboard::Keyboard() : m_connection(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(m_connection))
        return;
    const auto version = owned(xcb_test_get_version_reply(
        m_connection,
        xcb_test_get_version(m_connection, XCB_TEST_MAJOR_VERSION, XCB_TEST_MINOR_VERSION),
        nullptr));
    m_isConnected = version != nullptr;
    readKeys();
}

Keyboard::~Keyboard()
{
    xcb_disconnect(m_connection);
}

void Keyboard::readKeys()
{
    const xcb_setup_t &setup = *xcb_get_setup(m_connection);
    const auto count = std::uint8_t(setup.max_keycode - setup.min_keycode + 1);
    const auto mapping = owned(xcb_get_keyboard_mapping_reply(
        m_connection, xcb_get_keyboard_mapping(m_connection, setup.min_keycode, count), nullptr));
    if (!mapping)
        return;
    const std::span symbols(xcb_get_keyboard_mapping_keysyms(mapping.get()),
                            std::size_t(xcb_get_keyboard_mapping_keysyms_length(mapping.get())));
    for (std::size_t key = 0; key < count; ++key) {
        const xcb_keysym_t unshifted = symbols[key * mapping->keysyms_per_keycode];
        if (!m_codes.contains(unshifted))
            m_codes.insert(unshifted, xcb_keycode_t(setup.min_keycode + key));
    }
}

void Keyboard::press(char key) const
{
    const xcb_keycode_t code = m_codes.value(symbolOf(key));
    if (code == 0)
        qFatal("The keyboard has no key for character %d", key);
    for (const auto type : {XCB_KEY_PRESS, XCB_KEY_RELEASE})
        xcb_test_fake_input(m_connection, std::uint8_t(type), code, XCB_CURRENT_TIME, XCB_NONE, 0,
                            0, 0);
    // An answer to anything comes after what was asked for before.
    owned(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

void Keyboard::type(const QByteArray &text) const
{
    for (const char key : text)
        press(key);
}
