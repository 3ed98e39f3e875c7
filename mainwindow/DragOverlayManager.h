#pragma once

#include "core/Note.h"

#include <QColor>
#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QWindow>
#include <qqmlregistration.h>

#include <optional>

class QJSEngine;
class QQmlEngine;

/// The card that follows the pointer while a note is dragged. Its panel is made at the first drag
/// and kept for the next ones.
class DragOverlayManager : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool isShown READ isShown NOTIFY isShownChanged)
    Q_PROPERTY(bool isWanted READ isWanted NOTIFY isShownChanged)
    Q_PROPERTY(QPointF corner READ corner WRITE setCorner NOTIFY cornerChanged)
    Q_PROPERTY(QString title READ title NOTIFY cardChanged)
    Q_PROPERTY(QColor color READ color NOTIFY cardChanged)
    Q_PROPERTY(qreal width READ width NOTIFY cardChanged)

public:
    [[nodiscard]] static DragOverlayManager &shared();
    static DragOverlayManager *create(QQmlEngine *, QJSEngine *);

    /// Without a default parent: of a class that it can make by itself QML makes one of its own.
    explicit DragOverlayManager(QObject *parent);

    /// Shows the card of the note, as wide as its row. A card that shows the note already is kept.
    void show(const Note &note, qreal width);
    void hide();
    /// Upper left corner of the card on the desktop.
    void setCorner(QPointF corner);

    [[nodiscard]] std::optional<QUuid> currentNoteID() const { return m_currentNoteID; }
    [[nodiscard]] bool isShown() const { return m_isShown; }
    /// There was a drag.
    [[nodiscard]] bool isWanted() const { return m_currentNoteID.has_value(); }
    [[nodiscard]] QPointF corner() const { return m_corner; }
    [[nodiscard]] QString title() const;
    [[nodiscard]] const QColor &color() const { return m_color; }
    [[nodiscard]] qreal width() const { return m_width; }

Q_SIGNALS:
    void isShownChanged();
    void cornerChanged();
    void cardChanged();

private:
    std::optional<QUuid> m_currentNoteID;
    QString m_heading;
    QColor m_color;
    qreal m_width = 0;
    QPointF m_corner;
    bool m_isShown = false;
};
