#include "sticky/WindowFront.h"
#include "tests/sticky/XWitness.h"

#include <QRasterWindow>
#include <QTest>

#include <cstdlib>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{
/// A launcher or a desktop: it hears what is said to all of them.
class Listener
{
public:
    Listener() : m_connection(xcb_connect(nullptr, nullptr))
    {
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
        constexpr uint32_t events =
            XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_connection, m_root, XCB_CW_EVENT_MASK, &events);
        xcb_flush(m_connection);
        std::free(
            xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    }
    ~Listener() { xcb_disconnect(m_connection); }
    Q_DISABLE_COPY_MOVE(Listener)

    /// What has been said since the last time.
    QList<xcb_client_message_event_t> messages()
    {
        QList<xcb_client_message_event_t> messages;
        const auto free = [](xcb_generic_event_t *event) { std::free(event); };
        for (;;) {
            const std::unique_ptr<xcb_generic_event_t, decltype(free)> event(
                xcb_poll_for_event(m_connection), free);
            if (!event)
                return messages;
            if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE)
                messages << *reinterpret_cast<xcb_client_message_event_t *>(event.get());
        }
    }

private:
    xcb_connection_t *m_connection;
    xcb_window_t m_root;
};
} // namespace

/// Under the window manager of a real display.
class TestXWindowFront : public QObject
{
    Q_OBJECT

    XWitness m_witness;

private Q_SLOTS:
    void theDesktopHearsOnWhoseBehalf_data()
    {
        QTest::addColumn<QString>("startupID");
        QTest::addColumn<quint32>("source");
        QTest::addColumn<quint32>("time");
        QTest::newRow("by a launcher") << u"x_TIME7"_s << 1u << 7u;
        QTest::newRow("by hand") << QString() << 2u << 0u;
    }
    void theDesktopHearsOnWhoseBehalf()
    {
        QFETCH(QString, startupID);
        QFETCH(quint32, source);
        QFETCH(quint32, time);
        QRasterWindow window;
        Listener listener;
        bringToFront(window, {{}, startupID});
        bool isHeard = false;
        QTRY_VERIFY([&] {
            for (const auto &message : listener.messages())
                isHeard |= message.type == m_witness.atom("_NET_ACTIVE_WINDOW") &&
                           message.window == xcb_window_t(window.winId()) &&
                           message.data.data32[0] == source && message.data.data32[1] == time;
            return isHeard;
        }());
        QVERIFY(window.isVisible());
    }

    void theLauncherHearsThatTheStartIsOver()
    {
        QRasterWindow window;
        Listener listener;
        const QString startupID = u"launcher \"seven\"/1234567890-host_TIME7"_s;
        bringToFront(window, {{}, startupID});
        QByteArray text;
        QTRY_VERIFY([&] {
            for (const auto &message : listener.messages()) {
                const bool isFirst = message.type == m_witness.atom("_NET_STARTUP_INFO_BEGIN");
                if (!isFirst && message.type != m_witness.atom("_NET_STARTUP_INFO"))
                    continue;
                if (isFirst)
                    text.clear();
                text.append(reinterpret_cast<const char *>(message.data.data8), 20);
            }
            return text.contains('\0');
        }());
        QCOMPARE(QByteArray(text.constData()),
                 "remove: ID=\"launcher \\\"seven\\\"/1234567890-host_TIME7\"");
    }

    void nobodyIsToldOfAnOrdinaryRaise()
    {
        QRasterWindow window;
        Listener listener;
        bringToFront(window, {});
        bringToFront(window, {u"token"_s, {}});
        QTRY_VERIFY(window.isActive());
        for (const auto &message : listener.messages())
            QVERIFY(message.type != m_witness.atom("_NET_STARTUP_INFO_BEGIN"));
        QVERIFY(!qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN")); // what it opens has its own
    }
};

QTEST_MAIN(TestXWindowFront)
#include "tst_x_window_front.moc"
