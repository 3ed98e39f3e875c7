#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>
#include <qqmlregistration.h>

#include <chrono>

class QJSEngine;
class QQmlEngine;

/// The one help tip: what is said of the control on which the pointer rests. It is drawn by
/// HelpTipWindow, a window of its own, so that the smallest window does not cut it off.
class HelpTip : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString text READ text NOTIFY textChanged)
    Q_PROPERTY(bool isShown READ isShown NOTIFY isShownChanged)
    Q_PROPERTY(QQuickWindow *host READ host NOTIFY isShownChanged)

public:
    static constexpr std::chrono::milliseconds defaultDelay{600};

    [[nodiscard]] static HelpTip &shared();
    static HelpTip *create(QQmlEngine *, QJSEngine *);

    /// Without a default parent: of a class that it can make by itself QML makes one of its own.
    explicit HelpTip(QObject *parent, std::chrono::milliseconds delay = defaultDelay);

    [[nodiscard]] const QString &text() const { return m_text; }
    [[nodiscard]] bool isShown() const { return m_isShown; }
    [[nodiscard]] QQuickWindow *host() const; ///< the window of the tip's owner

    /// The pointer has come over the item: its tip is shown after a while, unless it leaves before.
    Q_INVOKABLE void show(QQuickItem *owner, const QString &text);
    /// For what is no item of its own, like a link in a page: the tip appears at the pointer.
    Q_INVOKABLE void showAtPointer(QQuickItem *owner, const QString &text);
    /// The item says something else from now on.
    Q_INVOKABLE void update(QQuickItem *owner, const QString &text);
    Q_INVOKABLE void hide(QQuickItem *owner);
    /// Where a tip of that size goes, on the desktop.
    [[nodiscard]] Q_INVOKABLE QPoint placeFor(QSizeF size) const;

Q_SIGNALS:
    void textChanged();
    void isShownChanged();

private:
    void begin(QQuickItem *owner, const QString &text, bool isAtPointer);
    void appear();
    void end();
    void setText(const QString &text);
    void setIsShown(bool isShown);

    QPointer<QQuickItem> m_owner;
    QString m_text;
    bool m_isAtPointer = false;
    bool m_isShown = false;
    QTimer m_wait;
};
