#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

/// Turns SIGTERM, SIGINT and SIGHUP into an ordinary quit.
class QuitSignals : public QObject
{
    Q_OBJECT

public:
    explicit QuitSignals(QObject *parent = nullptr);

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};
