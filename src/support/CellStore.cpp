#include "CellStore.h"

#include "Text.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <new>
#include <utility>

#ifdef Q_OS_LINUX
#include <sys/mman.h>
#endif

namespace {

constexpr qsizetype firstChunk = 64 * 1024;
constexpr qsizetype largestChunk = 4 * 1024 * 1024;

#ifdef Q_OS_LINUX

constexpr size_t largePage = 2 * 1024 * 1024;

// Chunks of results that are gone. The system takes their pages back when it needs memory; until
// then the next result is spared a third of its time, which the system spends clearing fresh ones.
class SpareChunks {
public:
    char* take() {
        const std::lock_guard lock(m_mutex);
        if (m_count == 0)
            return nullptr;
        return m_chunks[--m_count];
    }
    // False when there are enough.
    bool keep(char* chunk) {
        const std::lock_guard lock(m_mutex);
        if (m_count == m_chunks.size() || madvise(chunk, largestChunk, MADV_FREE) != 0)
            return false;
        m_chunks[m_count++] = chunk;
        return true;
    }

private:
    std::array<char*, 64> m_chunks{};
    size_t m_count = 0;
    std::mutex m_mutex;
};

SpareChunks& spareChunks() {
    static auto* const spare = new SpareChunks; // results may outlive every static object
    return *spare;
}

#endif

// Memory that comes in small pages costs a tenth of a fetch.
char* allocate(qsizetype size) {
#ifdef Q_OS_LINUX
    if (size == largestChunk) {
        if (char* const spare = spareChunks().take())
            return spare;
    }
    if (size >= largestChunk && size % qsizetype(largePage) == 0) {
        void* const memory = std::aligned_alloc(largePage, size_t(size));
        if (memory)
            madvise(memory, size_t(size), MADV_HUGEPAGE);
        return static_cast<char*>(memory);
    }
#endif
    return static_cast<char*>(std::malloc(size_t(size)));
}

} // namespace

CellStore::CellStore(int columns)
    : m_longest(size_t(columns)) {}

CellStore::CellStore(CellStore&& other) noexcept {
    *this = std::move(other);
}

CellStore& CellStore::operator=(CellStore&& other) noexcept {
    m_chunks = std::exchange(other.m_chunks, {});
    m_longest = other.m_longest; // the source keeps its column count and is empty
    m_write = std::exchange(other.m_write, nullptr);
    m_end = std::exchange(other.m_end, nullptr);
    m_rowStart = std::exchange(other.m_rowStart, nullptr);
    m_column = std::exchange(other.m_column, 0);
    m_rows = std::exchange(other.m_rows, 0);
    m_textBytes = std::exchange(other.m_textBytes, 0);
    m_textBytesOfRows = std::exchange(other.m_textBytesOfRows, 0);
    m_chunkBytes = std::exchange(other.m_chunkBytes, 0);
    m_mostBytes = std::exchange(other.m_mostBytes, 0);
    std::fill(other.m_longest.begin(), other.m_longest.end(), Longest{});
    return *this;
}

CellStore::~CellStore() = default;

void CellStore::Free::operator()(char* memory) const {
#ifdef Q_OS_LINUX
    if (capacity == largestChunk && spareChunks().keep(memory))
        return;
#endif
    std::free(memory);
}

void CellStore::addChunk(qsizetype size) {
    const qsizetype begun = m_write - m_rowStart; // a row never spans two chunks
    const qsizetype last = m_chunks.empty() ? firstChunk / 2 : m_chunks.back().capacity;
    const qsizetype needed = begun + size;
    // A row that outgrows the usual chunk doubles its own, or a row of many long cells would be
    // copied once a cell.
    const qsizetype capacity =
        std::max(std::min(last * 2, largestChunk), needed > largestChunk ? needed * 2 : needed);
    noteMemory(capacity);
    std::unique_ptr<char, Free> bytes(allocate(capacity), Free{capacity});
    if (!bytes)
        throw std::bad_alloc();
    if (begun > 0)
        std::memcpy(bytes.get(), m_rowStart, size_t(begun));
    m_rowStart = bytes.get();
    m_write = m_rowStart + begun;
    m_end = m_rowStart + capacity;
    // A chunk that held nothing but this row's beginning goes.
    if (!m_chunks.empty() && m_chunks.back().rowStarts.empty())
        m_chunks.pop_back();
    m_chunks.push_back({std::move(bytes), capacity, m_rows, {}});
}

void CellStore::noteMemory(qsizetype nextChunk) {
    if (!m_chunks.empty())
        m_chunkBytes += qint64(m_chunks.back().rowStarts.capacity() * sizeof(quint32));
    m_chunkBytes += nextChunk;
    if (m_mostBytes > 0 && m_chunkBytes > m_mostBytes)
        throw std::bad_alloc();
}

void CellStore::append(const char* text, qsizetype size) {
    ensureRoom(size + 1 + qsizetype(sizeof(quint32)));
    if (size < longMark) {
        *m_write++ = char(size);
    } else {
        *m_write++ = char(longMark);
        const auto stored = quint32(size);
        std::memcpy(m_write, &stored, sizeof stored);
        m_write += sizeof stored;
    }
    if (size > 0)
        std::memcpy(m_write, text, size_t(size));
    noteLength(m_write, size);
    m_write += size;
    m_textBytes += size;
    ++m_column;
}

void CellStore::appendNull() {
    ensureRoom(1);
    *m_write++ = char(nullMark);
    noteLength(m_write, 0);
    ++m_column;
}

void CellStore::endRow() {
    ensureRoom(0);
    if (m_chunks.empty())
        addChunk(1); // a row of no columns
    Chunk& chunk = m_chunks.back();
    chunk.rowStarts.push_back(quint32(m_rowStart - chunk.bytes.get()));
    m_rowStart = m_write;
    m_column = 0;
    ++m_rows;
    m_textBytesOfRows = m_textBytes;
}

void CellStore::discardRow() {
    m_write = m_rowStart;
    m_column = 0;
    m_textBytes = m_textBytesOfRows;
    for (Longest& best : m_longest) {
        if (best.row == m_rows)
            best = {}; // rare: the earlier best is not remembered, and no row follows a failure
    }
}

void CellStore::countLength(Longest& best, const char* text, qsizetype size) {
    const qsizetype characters = countUtf8Characters(text, size);
    if (best.row < 0 || characters > best.characters)
        best = {m_rows, characters};
}

const CellStore::Chunk& CellStore::chunkOf(qsizetype row) const {
    Q_ASSERT(row >= 0 && row < m_rows);
    auto after = std::upper_bound(m_chunks.begin(), m_chunks.end(), row,
                                  [](qsizetype r, const Chunk& c) { return r < c.firstRow; });
    return *std::prev(after);
}

CellStore::Row CellStore::row(qsizetype row) const {
    const Chunk& chunk = chunkOf(row);
    return Row(chunk.bytes.get() + chunk.rowStarts[size_t(row - chunk.firstRow)]);
}

Cell CellStore::cell(qsizetype row, int column) const {
    Row cells = this->row(row);
    for (int i = 0; i < column; ++i)
        cells.next();
    return cells.next();
}

void CellStore::releaseBefore(qsizetype row) {
    for (size_t i = 0; i + 1 < m_chunks.size() && m_chunks[i + 1].firstRow <= row; ++i) {
        m_chunks[i].bytes.reset();
        std::vector<quint32>().swap(m_chunks[i].rowStarts);
    }
}
