#pragma once

#include <QDateTime>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <optional>

/// When a save that failed is tried again: after a second, then after twice as long each time, but
/// never later than half a minute. It goes on for as long as saving fails.
class SaveRetry : public QObject
{
    Q_OBJECT

public:
    explicit SaveRetry(QObject *parent = nullptr);

    /// How long to wait when that many tries in a row have failed.
    [[nodiscard]] static std::chrono::seconds pause(int failures);

    /// When the first try of those that fail has failed; nullopt while saving works.
    [[nodiscard]] std::optional<QDateTime> failingSince() const { return m_failingSince; }
    [[nodiscard]] bool isWaiting() const { return m_timer.isActive(); }

    void failed(const QDateTime &when);
    void succeeded();
    void stopWaiting() { m_timer.stop(); } ///< somebody tries just now

Q_SIGNALS:
    void due();
    void failingSinceChanged();

private:
    QTimer m_timer;
    int m_failures = 0;
    std::optional<QDateTime> m_failingSince;
};
