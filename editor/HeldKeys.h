#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <qqmlregistration.h>

#include <deque>
#include <memory>

/// Keeps what is typed into a window while a page that is to have the keyboard is still on its way,
/// and gives it to the page, in order, once its caret is there. Whoever begins a note types at
/// once, and the page may take a third of a second: what went elsewhere meanwhile would be lost.
class HeldKeys : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickWindow *window READ window WRITE setWindow NOTIFY windowChanged)
    Q_PROPERTY(QQuickItem *page READ page WRITE setPage NOTIFY pageChanged)
    Q_PROPERTY(bool isHolding READ isHolding WRITE setIsHolding NOTIFY isHoldingChanged)

public:
    explicit HeldKeys(QObject *parent = nullptr);
    ~HeldKeys() override;

    [[nodiscard]] QQuickWindow *window() const { return m_window; }
    void setWindow(QQuickWindow *window);
    /// What the keys are for: it or an item within it has the keyboard when they are given out.
    [[nodiscard]] QQuickItem *page() const { return m_page; }
    void setPage(QQuickItem *page);
    [[nodiscard]] bool isHolding() const { return m_isHolding; }
    void setIsHolding(bool isHolding);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void windowChanged();
    void pageChanged();
    void isHoldingChanged();

private:
    void noticeOtherFocus();
    [[nodiscard]] bool isInPage(const QQuickItem *item) const;
    void giveOut();

    QPointer<QQuickWindow> m_window;
    QPointer<QQuickItem> m_page;
    std::deque<std::unique_ptr<QEvent>> m_keys;
    bool m_isHolding = false;
    bool m_wasInPage = false;   ///< the page has had the keyboard since
    bool m_isElsewhere = false; ///< the user has turned to something else since
    bool m_isGivingOut = false;
};
