#pragma once

#include <QObject>
#include <QString>

#include <optional>

/// What the page may call in the host: nothing but to hand over a message.
class PageMessages : public QObject
{
    Q_OBJECT

public:
    /// In UTF-16 units: twice the page's largest picture, and six times a note of 20 MB.
    static constexpr qsizetype longestMessage = qsizetype(128) << 20;

    using QObject::QObject;

    Q_INVOKABLE void receive(const QString &handler, const QString &body);
    // A long message, in pieces. One whose page went away before its end is never handed over, and
    // neither is one that is too long.
    Q_INVOKABLE void receiveBeginning(const QString &piece);
    Q_INVOKABLE void receiveMiddle(const QString &piece);
    Q_INVOKABLE void receiveEnd(const QString &handler, const QString &piece);

    /// No message is longer than this, in UTF-16 units.
    void setLongest(qsizetype longest) { m_longest = longest; }
    /// How much of a message that has not ended yet is kept.
    [[nodiscard]] qsizetype keptSize() const { return m_begun ? m_begun->size() : 0; }

Q_SIGNALS:
    void received(const QString &handler, const QString &body);
    /// A message of that handler was too long. What it said is for the host to ask for, if it must.
    void refused(const QString &handler);

private:
    /// To what was begun, which is dropped when it becomes too long.
    void append(const QString &piece);

    std::optional<QString> m_begun;
    qsizetype m_longest = longestMessage;
    bool m_isTooLong = false; ///< what was begun; its end is still to come
};
