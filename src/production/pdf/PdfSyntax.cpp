#include "production/pdf/PdfSyntax.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tabulor {

namespace {

const char kHexDigits[] = "0123456789ABCDEF";

// "0", "0.004", ..., "1": the 256 colour component values, formatted once.
struct UnitTable
{
    std::array<std::array<char, 6>, 256> text{};
    std::array<quint8, 256> length{};

    UnitTable()
    {
        for (int i = 0; i < 256; ++i) {
            PdfBuffer buffer;
            buffer.milli((i * 1000 + 127) / 255);
            const QByteArrayView bytes = buffer.bytes();
            std::copy(bytes.begin(), bytes.end(), text[i].begin());
            length[i] = quint8(bytes.size());
        }
    }
};

bool isRegularNameChar(char c)
{
    if (c <= ' ' || c > '~')
        return false;
    switch (c) {
    case '(':
    case ')':
    case '<':
    case '>':
    case '[':
    case ']':
    case '{':
    case '}':
    case '/':
    case '%':
    case '#':
        return false;
    default:
        return true;
    }
}

} // namespace

void PdfBuffer::grow(qsizetype count)
{
    const qsizetype capacity = std::max({m_capacity * 2, m_size + count, qsizetype(256)});
    std::unique_ptr<char[]> data(new char[size_t(capacity)]);
    if (m_size > 0)
        std::memcpy(data.get(), m_data.get(), size_t(m_size));
    m_data = std::move(data);
    m_capacity = capacity;
}

PdfBuffer& PdfBuffer::fixed(qint64 value, int decimals)
{
    const qint64 scale = decimals == 3 ? 1000 : 100;
    if (value < 0) {
        *this << '-';
        value = -value;
    }
    integer(value / scale);
    qint64 fraction = value % scale;
    if (fraction == 0)
        return *this;
    char digits[4];
    int count = decimals;
    for (int i = decimals - 1; i >= 0; --i) {
        digits[i] = char('0' + fraction % 10);
        fraction /= 10;
    }
    while (digits[count - 1] == '0')
        --count;
    *this << '.';
    *this << QByteArrayView(digits, count);
    return *this;
}

PdfBuffer& PdfBuffer::milli(qint64 thousandths)
{
    return fixed(thousandths, 3);
}

PdfBuffer& PdfBuffer::centi(qint64 hundredths)
{
    return fixed(hundredths, 2);
}

PdfBuffer& PdfBuffer::real(double value)
{
    return fixed(std::llround(value * 1000), 3);
}

PdfBuffer& PdfBuffer::unit(int byte)
{
    static const UnitTable table;
    const int i = std::clamp(byte, 0, 255);
    *this << QByteArrayView(table.text[size_t(i)].data(), table.length[size_t(i)]);
    return *this;
}

PdfBuffer& PdfBuffer::hex16(unsigned value)
{
    const char digits[4] = {kHexDigits[(value >> 12) & 15], kHexDigits[(value >> 8) & 15],
                            kHexDigits[(value >> 4) & 15], kHexDigits[value & 15]};
    *this << QByteArrayView(digits, 4);
    return *this;
}

PdfBuffer& PdfBuffer::hexUtf16(QStringView text)
{
    for (QChar c : text)
        hex16(c.unicode());
    return *this;
}

PdfBuffer& PdfBuffer::hex(QByteArrayView bytes)
{
    for (char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        *this << kHexDigits[byte >> 4];
        *this << kHexDigits[byte & 15];
    }
    return *this;
}

PdfBuffer& PdfBuffer::textString(QStringView text)
{
    *this << "<FEFF";
    hexUtf16(text);
    *this << '>';
    return *this;
}

PdfBuffer& PdfBuffer::name(QByteArrayView name)
{
    *this << '/';
    for (char c : name) {
        if (isRegularNameChar(c)) {
            *this << c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            const char escaped[3] = {'#', kHexDigits[byte >> 4], kHexDigits[byte & 15]};
            *this << QByteArrayView(escaped, 3);
        }
    }
    return *this;
}

} // namespace tabulor
