#pragma once

#include <QMutex>
#include <QStringList>

/// Collects the lines of plim.core, from every thread, while it lives. One at a time.
class LogCapture
{
public:
    LogCapture()
    {
        s_lines.clear();
        s_previous = qInstallMessageHandler(
            [](QtMsgType type, const QMessageLogContext &context, const QString &message) {
                const QMutexLocker locker(&s_mutex);
                if (qstrcmp(context.category, "plim.core") == 0)
                    s_lines += message;
                else
                    s_previous(type, context, message);
            });
    }
    ~LogCapture() { qInstallMessageHandler(s_previous); }
    Q_DISABLE_COPY_MOVE(LogCapture)

    [[nodiscard]] static QStringList lines()
    {
        const QMutexLocker locker(&s_mutex);
        return s_lines;
    }

private:
    inline static QMutex s_mutex;
    inline static QStringList s_lines;
    inline static QtMessageHandler s_previous = nullptr;
};
