#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

#include <charconv>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>

namespace tabulor {

// Bytes of PDF syntax, appended without temporary strings: the page writer produces millions
// of numbers, so they go straight into the buffer.
class PdfBuffer
{
public:
    PdfBuffer() = default;
    PdfBuffer(const PdfBuffer& other) { *this << other.bytes(); }
    PdfBuffer(PdfBuffer&& other) noexcept
        : m_data(std::move(other.m_data)), m_size(std::exchange(other.m_size, 0)),
          m_capacity(std::exchange(other.m_capacity, 0))
    {
    }
    PdfBuffer& operator=(PdfBuffer other) noexcept
    {
        std::swap(m_data, other.m_data);
        std::swap(m_size, other.m_size);
        std::swap(m_capacity, other.m_capacity);
        return *this;
    }

    void reserve(qsizetype size)
    {
        if (size > m_capacity)
            grow(size - m_size);
    }
    void clear() { m_size = 0; } // keeps the memory for the next use
    qsizetype size() const { return m_size; }
    QByteArrayView bytes() const { return {m_data.get(), m_size}; }
    void remove(qsizetype at)
    {
        std::memmove(m_data.get() + at, m_data.get() + at + 1, size_t(m_size - at - 1));
        --m_size;
    }

    PdfBuffer& operator<<(char c)
    {
        *room(1) = c;
        ++m_size;
        return *this;
    }
    PdfBuffer& operator<<(QByteArrayView text)
    {
        if (!text.isEmpty()) {
            std::memcpy(room(text.size()), text.data(), size_t(text.size()));
            m_size += text.size();
        }
        return *this;
    }
    PdfBuffer& operator<<(const QByteArray& bytes) { return *this << QByteArrayView(bytes); }
    PdfBuffer& operator<<(const char* text) { return *this << QByteArrayView(text); }
    PdfBuffer& operator<<(int value) { return integer(value); }
    PdfBuffer& operator<<(unsigned value) { return integer(value); }
    PdfBuffer& operator<<(qint64 value) { return integer(value); }
    PdfBuffer& operator<<(quint64 value) { return integer(value); }

    template <typename Int> PdfBuffer& integer(Int value)
    {
        char* at = room(24);
        m_size = std::to_chars(at, at + 24, value).ptr - m_data.get();
        return *this;
    }

    // A number given in thousandths, written with as few digits as it needs: 12500 -> "12.5".
    PdfBuffer& milli(qint64 thousandths);
    // A number given in hundredths: 12550 -> "125.5".
    PdfBuffer& centi(qint64 hundredths);
    // Any other number, to three decimals.
    PdfBuffer& real(double value);
    // A colour component 0..255 as 0..1.
    PdfBuffer& unit(int byte);

    // One byte inside a "(...)" string, escaped as the string syntax needs.
    PdfBuffer& stringByte(char c)
    {
        switch (c) {
        case '(':
        case ')':
        case '\\':
            return *this << '\\' << c;
        case '\r': // a bare end of line would be read back as a line feed
            return *this << "\\r";
        case '\n':
            return *this << "\\n";
        default:
            return *this << c;
        }
    }
    // A text string for the document information: UTF-16BE with a byte order mark, as hex.
    PdfBuffer& textString(QStringView text);
    // UTF-16BE of text as hex digits, without delimiters.
    PdfBuffer& hexUtf16(QStringView text);
    PdfBuffer& hex(QByteArrayView bytes);
    PdfBuffer& hex16(unsigned value);
    // "/Name" with the characters a name cannot hold written as #xx.
    PdfBuffer& name(QByteArrayView name);

private:
    PdfBuffer& fixed(qint64 value, int decimals);
    // Space for count more bytes at the end.
    char* room(qsizetype count)
    {
        if (m_size + count > m_capacity)
            grow(count);
        return m_data.get() + m_size;
    }
    void grow(qsizetype count);

    std::unique_ptr<char[]> m_data;
    qsizetype m_size = 0;
    qsizetype m_capacity = 0;
};

} // namespace tabulor
