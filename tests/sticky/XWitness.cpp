#include "tests/sticky/XWitness.h"

#include <QWindow>

#include <cstdlib>
#include <memory>

namespace
{
template <typename T>
std::unique_ptr<T, decltype(&std::free)> owned(T *reply)
{
    return {reply, &std::free};
}
} // namespace

XWitness::XWitness() : m_connection(xcb_connect(nullptr, nullptr)) {}

XWitness::~XWitness()
{
    xcb_disconnect(m_connection);
}

xcb_window_t XWitness::root() const
{
    return xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
}

xcb_window_t XWitness::frameOf(const QWindow &window) const
{
    auto frame = xcb_window_t(window.winId());
    for (;;) {
        const auto tree =
            owned(xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, frame), nullptr));
        if (!tree || tree->parent == XCB_NONE || tree->parent == tree->root)
            return frame;
        frame = tree->parent;
    }
}

QList<quint32> XWitness::property(xcb_window_t window, const QByteArray &name) const
{
    const auto reply = owned(xcb_get_property_reply(
        m_connection, xcb_get_property(m_connection, 0, window, atom(name), XCB_ATOM_ANY, 0, 4096),
        nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto *values = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

bool XWitness::hasProperty(xcb_window_t window, const QByteArray &name) const
{
    const auto reply = owned(xcb_get_property_reply(
        m_connection, xcb_get_property(m_connection, 0, window, atom(name), XCB_ATOM_ANY, 0, 0),
        nullptr));
    return reply && reply->type != XCB_NONE;
}

QList<QByteArray> XWitness::names(xcb_window_t window, const QByteArray &name) const
{
    QList<QByteArray> names;
    for (const quint32 value : property(window, name)) {
        const auto reply = owned(
            xcb_get_atom_name_reply(m_connection, xcb_get_atom_name(m_connection, value), nullptr));
        if (reply)
            names << QByteArray(xcb_get_atom_name_name(reply.get()), reply->name_len);
    }
    return names;
}

QRegion XWitness::shape(xcb_window_t window, xcb_shape_kind_t kind) const
{
    const auto reply = owned(xcb_shape_get_rectangles_reply(
        m_connection, xcb_shape_get_rectangles(m_connection, window, kind), nullptr));
    if (!reply)
        return {};
    QRegion region;
    const auto *rects = xcb_shape_get_rectangles_rectangles(reply.get());
    for (int i = 0; i < xcb_shape_get_rectangles_rectangles_length(reply.get()); ++i)
        region += QRect(rects[i].x, rects[i].y, rects[i].width, rects[i].height);
    return region;
}

QRect XWitness::geometry(xcb_window_t window) const
{
    const auto reply = owned(
        xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr));
    return reply ? QRect(reply->x, reply->y, reply->width, reply->height) : QRect();
}

xcb_atom_t XWitness::atom(const QByteArray &name) const
{
    const auto reply = owned(xcb_intern_atom_reply(
        m_connection, xcb_intern_atom(m_connection, 0, uint16_t(name.size()), name.data()),
        nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

xcb_window_t XWitness::makeWindow() const
{
    const xcb_window_t window = xcb_generate_id(m_connection);
    xcb_create_window(m_connection, 0, window, root(), -10, -10, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_flush(m_connection);
    return window;
}

void XWitness::destroyWindow(xcb_window_t window) const
{
    xcb_destroy_window(m_connection, window);
    xcb_flush(m_connection);
}

void XWitness::setProperty(xcb_window_t window, const QByteArray &name, xcb_atom_t type,
                           const QList<quint32> &values) const
{
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, atom(name), type, 32,
                        uint32_t(values.size()), values.data());
    xcb_flush(m_connection);
}

void XWitness::deleteProperty(xcb_window_t window, const QByteArray &name) const
{
    xcb_delete_property(m_connection, window, atom(name));
    xcb_flush(m_connection);
}

void XWitness::setSelectionOwner(const QByteArray &selection, xcb_window_t owner) const
{
    xcb_set_selection_owner(m_connection, owner, atom(selection), XCB_CURRENT_TIME);
    xcb_flush(m_connection);
}
