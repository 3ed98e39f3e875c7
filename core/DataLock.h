#pragma once

#include <QString>

/// Keeps a data directory to one program, whoever's and on whichever machine of a network. The
/// kernel gives the lock back when its holder ends, however that ends: the file that stays behind
/// means nothing.
class DataLock
{
public:
    enum class State {
        Taken,         ///< by this one
        HeldElsewhere, ///< by another
        Unavailable    ///< nobody can lock anything there; why, says reason()
    };

    explicit DataLock(QString dataDirectory);
    ~DataLock(); ///< gives it back
    Q_DISABLE_COPY_MOVE(DataLock)

    /// Makes the directory when there is none. Never waits.
    [[nodiscard]] State take();
    void giveBack();

    [[nodiscard]] QString dataDirectory() const { return m_dataDirectory; }
    /// Never deleted: whoever waited for the deleted one would hold nothing.
    [[nodiscard]] QString file() const;
    [[nodiscard]] QString reason() const { return m_reason; }

private:
    QString m_dataDirectory;
    QString m_reason;
    int m_descriptor = -1;
};
