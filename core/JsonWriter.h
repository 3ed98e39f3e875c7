#pragma once

#include <QByteArrayView>
#include <QLatin1String>
#include <QStringView>

#include <functional>
#include <memory>

/// Writes JSON as QJsonDocument does, but with slashes escaped, and hands it on in pieces while it
/// is made: it needs no memory of the whole's size, and whoever takes the pieces has the disk at
/// work meanwhile.
class JsonWriter
{
public:
    /// Of all pieces but the last, which may be smaller. The file system takes larger ones at less
    /// cost, up to about this.
    static constexpr qsizetype pieceSize = 1 << 21;

    /// Takes a piece, whose bytes are good until it returns; false refuses it and all that follow.
    using Sink = std::function<bool(QByteArrayView piece)>;

    explicit JsonWriter(Sink sink);

    void write(QLatin1StringView syntax); ///< as it is: a few dozen characters at most
    void writeText(QStringView text);     ///< in quotes
    void writeNumber(double value);       ///< a finite one

    [[nodiscard]] bool isRefused() const { return m_isRefused; }
    /// Hands over the last piece. Returns whether all were taken.
    [[nodiscard]] bool finish();

private:
    void handOver(qsizetype size);
    void handOverWhenFull();

    Sink m_sink;
    std::unique_ptr<char[]> m_bytes; ///< a piece, and room for what goes beyond it at a time
    char *m_end;
    bool m_isRefused = false;
};
