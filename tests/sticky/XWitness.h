#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QRegion>

#include <xcb/shape.h>
#include <xcb/xcb.h>

class QWindow;

/// Another program on the same X server: it sees what the server was told, and nothing that the
/// tested program merely believes.
class XWitness
{
public:
    /// On the display of that name, else on the one that the environment names.
    explicit XWitness(const QByteArray &display = {});
    ~XWitness();
    Q_DISABLE_COPY_MOVE(XWitness)

    [[nodiscard]] bool isConnected() const { return !xcb_connection_has_error(m_connection); }
    [[nodiscard]] xcb_window_t root() const { return m_root; }
    /// Everybody's windows that are on the screen, from the back to the front; what is in a window
    /// comes after it.
    [[nodiscard]] QList<xcb_window_t> visibleWindows() const;
    /// The window manager's, which holds the window; the window itself when there is none.
    [[nodiscard]] xcb_window_t frameOf(const QWindow &window) const;

    [[nodiscard]] QList<quint32> property(xcb_window_t window, const QByteArray &name) const;
    [[nodiscard]] bool hasProperty(xcb_window_t window, const QByteArray &name) const;
    [[nodiscard]] QByteArray text(xcb_window_t window, const QByteArray &name) const;
    /// The names of the atoms in the property.
    [[nodiscard]] QList<QByteArray> names(xcb_window_t window, const QByteArray &name) const;
    /// In pixels.
    [[nodiscard]] QRegion shape(xcb_window_t window, xcb_shape_kind_t kind) const;
    [[nodiscard]] QRect geometry(xcb_window_t window) const;
    [[nodiscard]] QRect geometryOnScreen(xcb_window_t window) const;
    /// What is seen on the screen there.
    [[nodiscard]] QImage pixels(const QRect &part) const;

    [[nodiscard]] xcb_atom_t atom(const QByteArray &name) const;
    [[nodiscard]] xcb_window_t makeWindow() const;
    /// A window like any other program's, of one colour and nothing else.
    [[nodiscard]] xcb_window_t showPlainWindow(const QRect &place, quint32 rgb) const;
    void destroyWindow(xcb_window_t window) const;
    /// Asks the window manager how broad its frame around the window would be; it writes that to
    /// the window's _NET_FRAME_EXTENTS, after what it was told before.
    void askForFrame(xcb_window_t window) const;
    void setProperty(xcb_window_t window, const QByteArray &name, xcb_atom_t type,
                     const QList<quint32> &values) const;
    void deleteProperty(xcb_window_t window, const QByteArray &name) const;
    /// With XCB_NONE nobody owns it any more.
    void setSelectionOwner(const QByteArray &selection, xcb_window_t owner) const;

private:
    /// Waits until the server has carried out what it was told. It serves each program in its turn,
    /// so that the tested one could else ask before that.
    void settle() const;
    void collectVisible(xcb_window_t window, QList<xcb_window_t> &windows) const;

    xcb_connection_t *m_connection;
    xcb_window_t m_root = XCB_NONE;
};
