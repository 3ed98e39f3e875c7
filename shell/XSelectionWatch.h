#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

/// Whether somebody owns a selection of the X server: that is how compositors and trays say that
/// they are there.
class XSelectionWatch : public QObject, public QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    /// Of the selection of that name for this screen: "_NET_WM_CM_S" stands for "_NET_WM_CM_S0".
    explicit XSelectionWatch(const QByteArray &name, QObject *parent = nullptr);

    /// This program's windows are on an X server. Nothing is owned where they are not.
    [[nodiscard]] static bool hasServer();
    [[nodiscard]] bool isOwned() const { return m_isOwned; }

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

Q_SIGNALS:
    void isOwnedChanged();

private:
    void watch(const QByteArray &name);
    void setIsOwned(bool isOwned);

    bool m_isOwned = false;
    quint32 m_selection = 0;
    int m_eventCode = -1; ///< of news about selections
};
