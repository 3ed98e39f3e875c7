#include "tests/sticky/XWitness.h"

#include <QWindow>

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
} // namespace

XWitness::XWitness(const QByteArray &display)
    : m_connection(xcb_connect(display.isEmpty() ? nullptr : display.constData(), nullptr))
{
    if (isConnected())
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
}

XWitness::~XWitness()
{
    xcb_disconnect(m_connection);
}

QList<xcb_window_t> XWitness::visibleWindows() const
{
    QList<xcb_window_t> windows;
    collectVisible(m_root, windows);
    return windows;
}

void XWitness::collectVisible(xcb_window_t window, QList<xcb_window_t> &windows) const
{
    const auto tree =
        owned(xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, window), nullptr));
    if (!tree)
        return;
    const std::span children(xcb_query_tree_children(tree.get()),
                             std::size_t(xcb_query_tree_children_length(tree.get())));
    for (const xcb_window_t child : children) {
        const auto attributes = owned(xcb_get_window_attributes_reply(
            m_connection, xcb_get_window_attributes(m_connection, child), nullptr));
        if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE)
            continue;
        windows << child;
        collectVisible(child, windows);
    }
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

QByteArray XWitness::text(xcb_window_t window, const QByteArray &name) const
{
    const auto reply = owned(xcb_get_property_reply(
        m_connection, xcb_get_property(m_connection, 0, window, atom(name), XCB_ATOM_ANY, 0, 4096),
        nullptr));
    if (!reply || reply->format != 8)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
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

QRect XWitness::geometryOnScreen(xcb_window_t window) const
{
    const auto corner = owned(xcb_translate_coordinates_reply(
        m_connection, xcb_translate_coordinates(m_connection, window, m_root, 0, 0), nullptr));
    return corner ? QRect(QPoint(corner->dst_x, corner->dst_y), geometry(window).size()) : QRect();
}

QImage XWitness::pixels(const QRect &part) const
{
    const QRect seen = part & geometry(m_root);
    const auto reply = owned(xcb_get_image_reply(
        m_connection,
        xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_root, int16_t(seen.x()),
                      int16_t(seen.y()), uint16_t(seen.width()), uint16_t(seen.height()), ~0U),
        nullptr));
    if (!reply || reply->depth != 24)
        return {};
    return QImage(xcb_get_image_data(reply.get()), seen.width(), seen.height(),
                  QImage::Format_RGB32)
        .copy();
}

xcb_atom_t XWitness::atom(const QByteArray &name) const
{
    const auto reply = owned(xcb_intern_atom_reply(
        m_connection, xcb_intern_atom(m_connection, 0, uint16_t(name.size()), name.data()),
        nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

void XWitness::settle() const
{
    owned(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

xcb_window_t XWitness::makeWindow() const
{
    const xcb_window_t window = xcb_generate_id(m_connection);
    xcb_create_window(m_connection, 0, window, root(), -10, -10, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    settle();
    return window;
}

xcb_window_t XWitness::showPlainWindow(const QRect &place, quint32 rgb) const
{
    const xcb_window_t window = xcb_generate_id(m_connection);
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, m_root, int16_t(place.x()),
                      int16_t(place.y()), uint16_t(place.width()), uint16_t(place.height()), 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL, &rgb);
    constexpr quint32 positionByUser = 1;
    QList<quint32> sizeHints(18, 0); // without it the window manager chooses the place
    sizeHints[0] = positionByUser;
    setProperty(window, "WM_NORMAL_HINTS", XCB_ATOM_WM_SIZE_HINTS, sizeHints);
    xcb_map_window(m_connection, window);
    settle();
    return window;
}

void XWitness::askForFrame(xcb_window_t window) const
{
    xcb_client_message_event_t question{};
    question.response_type = XCB_CLIENT_MESSAGE;
    question.format = 32;
    question.window = window;
    question.type = atom("_NET_REQUEST_FRAME_EXTENTS");
    xcb_send_event(m_connection, false, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&question));
    settle();
}

void XWitness::destroyWindow(xcb_window_t window) const
{
    xcb_destroy_window(m_connection, window);
    settle();
}

void XWitness::setProperty(xcb_window_t window, const QByteArray &name, xcb_atom_t type,
                           const QList<quint32> &values) const
{
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, atom(name), type, 32,
                        uint32_t(values.size()), values.data());
    settle();
}

void XWitness::deleteProperty(xcb_window_t window, const QByteArray &name) const
{
    xcb_delete_property(m_connection, window, atom(name));
    settle();
}

void XWitness::setSelectionOwner(const QByteArray &selection, xcb_window_t owner) const
{
    xcb_set_selection_owner(m_connection, owner, atom(selection), XCB_CURRENT_TIME);
    settle();
}
