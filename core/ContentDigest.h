#pragma once

#include <QByteArrayView>

#include <cstddef>

/// Tells contents apart that came about by themselves; nobody gains anything by making two that it
/// does not. A cryptographic one would take as long as to write them.
class ContentDigest
{
public:
    ContentDigest() = default;
    explicit ContentDigest(QByteArrayView bytes);

    /// The next of the bytes, cut as JsonWriter cuts them: elsewhere, and it is another digest.
    void add(QByteArrayView piece);

    [[nodiscard]] bool operator==(const ContentDigest &) const = default;

private:
    std::size_t m_hash = 1; ///< for 0, Qt takes a slower hash
    qsizetype m_size = 0;
};
