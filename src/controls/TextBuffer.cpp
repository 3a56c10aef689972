#include "TextBuffer.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr qsizetype lineEndBytes = 2;

bool continues(char byte) {
    return (static_cast<unsigned char>(byte) & 0xc0) == 0x80;
}

} // namespace

qsizetype utf16Length(QByteArrayView utf8) {
    qsizetype units = 0;
    for (const char byte : utf8)
        units += qsizetype(!continues(byte)) + (static_cast<unsigned char>(byte) >= 0xf0);
    return units;
}

qsizetype utf8Offset(QByteArrayView utf8, qsizetype units) {
    constexpr qsizetype block = 64 * 1024;
    qsizetype offset = 0;
    for (;;) { // whole blocks, counted without looking at single characters
        qsizetype end = std::min(offset + block, utf8.size());
        while (end < utf8.size() && continues(utf8[end]))
            ++end;
        const qsizetype here = utf16Length(utf8.sliced(offset, end - offset));
        if (here > units || end == utf8.size())
            break;
        units -= here;
        offset = end;
    }
    while (offset < utf8.size()) {
        qsizetype next = offset + 1;
        while (next < utf8.size() && continues(utf8[next]))
            ++next;
        units -= utf16Length(utf8.sliced(offset, next - offset));
        if (units < 0)
            break;
        offset = next;
    }
    return offset;
}

void TextBuffer::set(QByteArray utf8) {
    m_utf8 = utf8.isValidUtf8() ? std::move(utf8) : QString::fromUtf8(utf8).toUtf8();
    if (m_utf8.isDetached()) // built by appending, it may own far more than it holds
        m_utf8.squeeze();
    m_everyStride = {0};
    m_rows = 1;
    m_lastBegin = 0;
    m_widest = 0;
    indexRest();
}

void TextBuffer::append(const QString& text) {
    m_utf8 += text.toUtf8();
    indexRest();
}

TextBuffer::Row TextBuffer::rowFrom(qsizetype begin) const {
    const char* data = m_utf8.constData();
    const qsizetype left = size() - begin;
    const qsizetype reach = std::min(left, longestRow + lineEndBytes);
    if (const void* found = std::memchr(data + begin, '\n', size_t(reach))) {
        const qsizetype lineFeed = static_cast<const char*>(found) - data;
        const bool pair = lineFeed > begin && data[lineFeed - 1] == '\r';
        return {begin, lineFeed - pair, lineFeed + 1};
    }
    if (reach == left)
        return {begin, size(), -1};
    qsizetype cut = begin + longestRow;
    while (continues(data[cut]))
        --cut;
    return {begin, cut, cut};
}

void TextBuffer::indexRest() {
    for (;;) {
        const Row row = rowFrom(m_lastBegin);
        m_widest = std::max(m_widest, row.end - row.begin);
        if (row.next < 0)
            return;
        m_lastBegin = row.next;
        if (m_rows++ % stride == 0)
            m_everyStride.push_back(row.next);
    }
}

TextBuffer::Row TextBuffer::row(qsizetype number) const {
    number = std::clamp<qsizetype>(number, 0, m_rows - 1);
    Row row = rowFrom(m_everyStride[size_t(number / stride)]);
    for (qsizetype i = number % stride; i > 0; --i)
        row = rowFrom(row.next);
    return row;
}

qsizetype TextBuffer::rowOf(qsizetype offset) const {
    const auto after = std::upper_bound(m_everyStride.begin(), m_everyStride.end(), offset);
    const qsizetype from = after - m_everyStride.begin() - 1;
    qsizetype number = from * stride;
    for (Row row = rowFrom(m_everyStride[size_t(from)]); row.next >= 0 && row.next <= offset;
         row = rowFrom(row.next))
        ++number;
    return number;
}
