#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

/// A session bus of a test's own, on which nobody is but whom the test brings.
class PrivateBus
{
public:
    PrivateBus();
    ~PrivateBus();
    Q_DISABLE_COPY_MOVE(PrivateBus)

    /// Empty when it could not be started.
    [[nodiscard]] const QString &address() const { return m_address; }
    void stop();

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
};
