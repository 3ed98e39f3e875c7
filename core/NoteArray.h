#pragma once

#include "core/Note.h"

#include <QExplicitlySharedDataPointer>
#include <QSharedData>

#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <utility>
#include <vector>

/// An ordered list of notes, cheap to copy: the copies share chunks of notes, and a change copies
/// the one chunk it touches. So a save can take a snapshot of a hundred thousand notes on every
/// keystroke, and read it on another thread, without the next keystroke copying them all.
class NoteArray
{
    struct Chunk;

public:
    class const_iterator;
    using value_type = Note;
    using iterator = const_iterator; ///< notes change through the operations below only

    NoteArray() = default;
    NoteArray(std::initializer_list<Note> notes);

    [[nodiscard]] bool operator==(const NoteArray &other) const;

    [[nodiscard]] qsizetype size() const;
    [[nodiscard]] bool isEmpty() const { return m_chunks.empty(); }
    /// The reference is good until the next change of this array.
    [[nodiscard]] const Note &operator[](qsizetype index) const;

    [[nodiscard]] const_iterator begin() const;
    [[nodiscard]] const_iterator end() const;

    void append(Note note) { insert(size(), std::move(note)); }
    void insert(qsizetype index, Note note); ///< at size(): appends
    void replace(qsizetype index, Note note);
    void removeAt(qsizetype index) { takeAt(index); }
    Note takeAt(qsizetype index);

private:
    struct Chunk : QSharedData {
        std::vector<Note> notes;
    };
    using ChunkPointer = QExplicitlySharedDataPointer<Chunk>;

    [[nodiscard]] std::size_t chunkOf(qsizetype index) const;
    std::vector<Note> &ownNotes(std::size_t chunk);
    void split(std::size_t chunk);
    void renumber(std::size_t firstChunk);

    std::vector<ChunkPointer> m_chunks; ///< none of them empty
    std::vector<qsizetype> m_starts;    ///< the index of each chunk's first note
};

class NoteArray::const_iterator
{
public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Note;
    using difference_type = std::ptrdiff_t;
    using pointer = const Note *;
    using reference = const Note &;

    const_iterator() = default;

    reference operator*() const { return (*m_chunk)->notes[m_offset]; }
    pointer operator->() const { return &**this; }
    const_iterator &operator++()
    {
        if (++m_offset == (*m_chunk)->notes.size()) {
            ++m_chunk;
            m_offset = 0;
        }
        return *this;
    }
    const_iterator operator++(int)
    {
        const_iterator before = *this;
        ++*this;
        return before;
    }
    bool operator==(const const_iterator &) const = default;

private:
    friend class NoteArray;
    using ChunkIterator = std::vector<ChunkPointer>::const_iterator;
    explicit const_iterator(ChunkIterator chunk) : m_chunk(chunk) {}

    ChunkIterator m_chunk;
    std::size_t m_offset = 0;
};
