#pragma once

#include <QObject>
#include <QSet>
#include <qqmlregistration.h>

/// Says on standard output which pages can be typed into, and when all can.
class ReadyPages : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by main")
    Q_PROPERTY(int count READ count CONSTANT)

public:
    explicit ReadyPages(int count, QObject *parent = nullptr);

    [[nodiscard]] int count() const { return m_count; }
    /// What the page itself has said: "ready" or "typed".
    Q_INVOKABLE void receive(int page, const QString &word);

private:
    const int m_count;
    QSet<int> m_ready;
};
