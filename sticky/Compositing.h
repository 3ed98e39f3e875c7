#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

/// Whether what is see-through shows what lies behind it, as is the case everywhere but on an X
/// server: there somebody has to do it, who may come and go.
class Compositing : public QObject, public QAbstractNativeEventFilter
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY isRunningChanged)

public:
    [[nodiscard]] static Compositing &shared();
    static Compositing *create(QQmlEngine *, QJSEngine *);

    /// Without a default parent: of a class that it can make by itself QML makes one of its own.
    explicit Compositing(QObject *parent);

    [[nodiscard]] bool isRunning() const { return m_isRunning; }

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

Q_SIGNALS:
    void isRunningChanged();

private:
    void watch();
    void setIsRunning(bool isRunning);

    bool m_isRunning = true;
    quint32 m_selection = 0; ///< owned by whoever does it, on an X server
    int m_eventCode = -1;    ///< of news about selections
};
