#include "core/NoteArray.h"

#include <algorithm>

namespace
{
// Copying a chunk costs some microseconds; a hundred thousand notes make eight hundred chunks.
constexpr std::size_t chunkCapacity = 128;
} // namespace

NoteArray::NoteArray(std::initializer_list<Note> notes)
{
    for (const Note &note : notes)
        append(note);
}

bool NoteArray::operator==(const NoteArray &other) const
{
    return size() == other.size() &&
           (m_chunks == other.m_chunks || std::equal(begin(), end(), other.begin()));
}

qsizetype NoteArray::size() const
{
    return m_chunks.empty() ? 0 : m_starts.back() + qsizetype(m_chunks.back()->notes.size());
}

const Note &NoteArray::operator[](qsizetype index) const
{
    const std::size_t chunk = chunkOf(index);
    return m_chunks[chunk]->notes[static_cast<std::size_t>(index - m_starts[chunk])];
}

NoteArray::const_iterator NoteArray::begin() const
{
    return const_iterator(m_chunks.cbegin());
}

NoteArray::const_iterator NoteArray::end() const
{
    return const_iterator(m_chunks.cend());
}

void NoteArray::insert(qsizetype index, Note note)
{
    Q_ASSERT(index >= 0 && index <= size());
    const bool isAtEnd = index == size();
    if (m_chunks.empty()) {
        m_chunks.emplace_back(new Chunk);
        m_starts.push_back(0);
    }
    std::size_t chunk = isAtEnd ? m_chunks.size() - 1 : chunkOf(index);
    if (m_chunks[chunk]->notes.size() == chunkCapacity) {
        if (isAtEnd) { // loading appends: full chunks, not halves
            m_chunks.emplace_back(new Chunk);
            m_starts.push_back(index);
            ++chunk;
        } else {
            split(chunk);
            chunk = chunkOf(index);
        }
    }
    std::vector<Note> &notes = ownNotes(chunk);
    notes.insert(notes.begin() + (index - m_starts[chunk]), std::move(note));
    renumber(chunk + 1);
}

void NoteArray::replace(qsizetype index, Note note)
{
    const std::size_t chunk = chunkOf(index);
    ownNotes(chunk)[static_cast<std::size_t>(index - m_starts[chunk])] = std::move(note);
}

Note NoteArray::takeAt(qsizetype index)
{
    const std::size_t chunk = chunkOf(index);
    std::vector<Note> &notes = ownNotes(chunk);
    const auto place = notes.begin() + (index - m_starts[chunk]);
    Note taken = std::move(*place);
    notes.erase(place);
    if (notes.empty()) {
        m_chunks.erase(m_chunks.begin() + static_cast<std::ptrdiff_t>(chunk));
        m_starts.pop_back();
    }
    renumber(chunk);
    return taken;
}

std::size_t NoteArray::chunkOf(qsizetype index) const
{
    Q_ASSERT(index >= 0 && index < size());
    const auto next = std::ranges::upper_bound(m_starts, index);
    return static_cast<std::size_t>(next - m_starts.begin()) - 1;
}

std::vector<Note> &NoteArray::ownNotes(std::size_t chunk)
{
    // Acquire: what a snapshot's thread read must have been read before the notes change here.
    if (m_chunks[chunk]->ref.loadAcquire() != 1)
        m_chunks[chunk].detach();
    return m_chunks[chunk]->notes;
}

void NoteArray::split(std::size_t chunk)
{
    constexpr std::ptrdiff_t half = chunkCapacity / 2;
    ChunkPointer second(new Chunk);
    std::vector<Note> &notes = ownNotes(chunk);
    second->notes.assign(std::make_move_iterator(notes.begin() + half),
                         std::make_move_iterator(notes.end()));
    notes.erase(notes.begin() + half, notes.end());
    m_chunks.insert(m_chunks.begin() + static_cast<std::ptrdiff_t>(chunk) + 1, second);
    m_starts.push_back(0);
    renumber(chunk + 1);
}

void NoteArray::renumber(std::size_t firstChunk)
{
    for (std::size_t chunk = firstChunk; chunk < m_chunks.size(); ++chunk) {
        m_starts[chunk] =
            chunk == 0 ? 0 : m_starts[chunk - 1] + qsizetype(m_chunks[chunk - 1]->notes.size());
    }
}
