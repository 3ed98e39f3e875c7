#include "core/ContentDigest.h"

#include "core/JsonWriter.h"

#include <QHashFunctions>

#include <algorithm>

ContentDigest::ContentDigest(QByteArrayView bytes)
{
    for (; !bytes.isEmpty(); bytes = bytes.sliced(std::min(bytes.size(), JsonWriter::pieceSize)))
        add(bytes.first(std::min(bytes.size(), JsonWriter::pieceSize)));
}

void ContentDigest::add(QByteArrayView piece)
{
    m_hash = qHashBits(piece.data(), std::size_t(piece.size()), m_hash);
    m_size += piece.size();
}
