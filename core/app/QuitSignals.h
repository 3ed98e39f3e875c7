#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

/// Turns SIGTERM, SIGINT and SIGHUP into an ordinary quit, as long as it lives. Without it they end
/// the process as usual, so that an end that hangs can still be ended.
class QuitSignals : public QObject
{
    Q_OBJECT

public:
    explicit QuitSignals(QObject *parent = nullptr);
    ~QuitSignals() override;

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};
