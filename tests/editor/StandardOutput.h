#pragma once

#include <QByteArray>
#include <QTemporaryFile>

#include <cstdio>
#include <unistd.h>

/// Keeps what the process prints while it lives.
class StandardOutput
{
public:
    StandardOutput()
    {
        if (!m_file.open())
            qFatal("The test has no place for the output");
        std::fflush(stdout);
        m_screen = dup(STDOUT_FILENO);
        dup2(m_file.handle(), STDOUT_FILENO);
    }
    ~StandardOutput() { (void)release(); }
    StandardOutput(const StandardOutput &) = delete;
    StandardOutput &operator=(const StandardOutput &) = delete;

    /// Ends the keeping and tells what was printed.
    [[nodiscard]] QByteArray release()
    {
        if (m_screen < 0)
            return {};
        std::fflush(stdout);
        dup2(m_screen, STDOUT_FILENO);
        close(m_screen);
        m_screen = -1;
        m_file.seek(0);
        return m_file.readAll();
    }

private:
    QTemporaryFile m_file;
    int m_screen = -1;
};
