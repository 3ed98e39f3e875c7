#pragma once

#include "shell/StatusNotifierWatch.h"
#include "shell/XSelectionWatch.h"

#include <QObject>

/// Whether there is a place for a status item now: one that speaks over the session bus, or, on an
/// X server, one that takes windows in.
///
/// Qt decides which of the two it uses when the first item is made, and keeps to it for as long as
/// the program runs. So there must be no item, nor a question to QSystemTrayIcon, before one of
/// them is there; and from then on the other one does not count.
class TrayWatch : public QObject
{
    Q_OBJECT

public:
    [[nodiscard]] static TrayWatch &shared();

    explicit TrayWatch(const QDBusConnection &bus, QObject *parent = nullptr);

    [[nodiscard]] bool isThere() const { return m_isThere; }
    /// Everybody has been asked once; until then nothing is there. Takes some milliseconds.
    [[nodiscard]] bool isKnown() const { return m_isKnown; }

Q_SIGNALS:
    void isThereChanged();
    /// Once: from now on isThere() says how it is. After isThereChanged(), when there is one.
    void known();

private:
    enum class Way { None, Bus, Window };

    void follow();
    [[nodiscard]] bool look();

    StatusNotifierWatch m_statusNotifier;
    XSelectionWatch m_embedder;
    Way m_way = Way::None; ///< in which the first tray took items
    bool m_isThere = false;
    bool m_isKnown = false;
};
