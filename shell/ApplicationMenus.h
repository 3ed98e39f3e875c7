#pragma once

#include "shell/Commands.h"

#include <QMenu>
#include <QPointer>
#include <QQuickItem>
#include <qqmlregistration.h>

#include <memory>
#include <vector>

/// The menus of the main window, opened at the buttons of a row. They are popups of the desktop's
/// kind: the window, its editor and what is selected there keep the keyboard while one is open.
class ApplicationMenus : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes one.")
    Q_PROPERTY(QStringList titles READ titles NOTIFY titlesChanged)
    Q_PROPERTY(int openIndex READ openIndex NOTIFY openIndexChanged)

public:
    explicit ApplicationMenus(Commands &commands, QObject *parent = nullptr);
    ~ApplicationMenus() override;

    [[nodiscard]] QStringList titles() const;
    [[nodiscard]] int openIndex() const { return m_openIndex; } ///< -1 while none is open

    /// The button at which the menu opens.
    Q_INVOKABLE void attach(int index, QQuickItem *button);
    /// Opens the menu; by the keyboard with its first command chosen. One that was closed by this
    /// very press stays closed.
    Q_INVOKABLE void press(int index);
    Q_INVOKABLE void openByKey(int index);
    /// How they look: a style sheet, and the ink of their symbols.
    Q_INVOKABLE void setLook(const QString &styleSheet, const QColor &ink);

    /// A menu by its place in the row, made when it is asked for first.
    [[nodiscard]] QMenu *menu(int index);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void titlesChanged();
    void openIndexChanged();

private:
    void open(int index);
    void setOpenIndex(int index);
    void goBy(int step);
    [[nodiscard]] int buttonAt(const QPoint &globalPosition) const; ///< -1 where there is none

    Commands &m_commands;
    std::vector<std::unique_ptr<QMenu>> m_menus;
    std::vector<QPointer<QQuickItem>> m_buttons;
    QString m_styleSheet;
    QColor m_ink = Qt::black;
    int m_openIndex = -1;
    int m_justClosed = -1;
};
