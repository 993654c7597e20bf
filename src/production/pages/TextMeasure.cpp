#include "production/pages/TextMeasure.h"

#include <algorithm>

namespace tabulor {

namespace {

QImage twipDevice()
{
    QImage device(1, 1, QImage::Format_Mono);
    constexpr int kDotsPerMeter = 56693; // 1440 per inch
    device.setDotsPerMeterX(kDotsPerMeter);
    device.setDotsPerMeterY(kDotsPerMeter);
    return device;
}

const QString kEllipsis = QStringLiteral("...");

// Characters that keep their own width whatever stands beside them: everything before the
// scripts that join or reorder (Hebrew onwards), and the CJK blocks.
bool standsAlone(char16_t c)
{
    return c < 0x0590 || (c >= 0x3000 && c < 0xA000) || (c >= 0xAC00 && c < 0xD7A4) ||
           (c >= 0xFF00 && c < 0xFFF0);
}

} // namespace

TextMeasure::TextMeasure(const QFont& font)
    : m_device(twipDevice()), m_metrics(font, &m_device), m_lineHeight(m_metrics.height())
{
}

float& TextMeasure::advanceSlot(char16_t c) const
{
    std::unique_ptr<float[]>& page = m_advances[c >> 8];
    if (!page) {
        page = std::make_unique<float[]>(256);
        std::fill_n(page.get(), 256, -1.0f);
    }
    return page[c & 0xFF];
}

double TextMeasure::width(const QString& text) const
{
    return *measure(text, false);
}

std::optional<double> TextMeasure::measure(const QString& text, bool oneLine) const
{
    double sum = 0;
    for (QChar c : text) {
        const char16_t u = c.unicode();
        if (oneLine && u == u'\n')
            return std::nullopt;
        if (!standsAlone(u)) {
            if (oneLine && text.contains(u'\n'))
                return std::nullopt;
            return m_metrics.horizontalAdvance(text);
        }
        float& advance = advanceSlot(u);
        if (advance < 0)
            advance = static_cast<float>(m_metrics.horizontalAdvance(c));
        sum += advance;
    }
    return sum;
}

QString TextMeasure::elided(const QString& text, double width) const
{
    return this->width(text) <= width ? text : cutWithEllipsis(text, width);
}

QString TextMeasure::cutWithEllipsis(const QString& text, double width) const
{
    // The widths grow with the length, so the longest start that fits is found by halving.
    qsizetype low = 0;
    qsizetype high = text.size();
    while (low < high) {
        const qsizetype mid = (low + high + 1) / 2;
        if (this->width(text.left(mid) + kEllipsis) <= width)
            low = mid;
        else
            high = mid - 1;
    }
    if (low > 0 && text.at(low - 1).isHighSurrogate())
        --low;
    return text.left(low) + kEllipsis;
}

qsizetype TextMeasure::appendLines(const QString& text, double width, bool wrap, int maxLines,
                                   QStringList& out) const
{
    // Most cells are one line that fits. (Wrapping drops the blanks a text starts with.)
    if (!wrap || text.isEmpty() || text.front() != u' ') {
        const std::optional<double> oneLine = measure(text, true);
        if (oneLine && *oneLine <= width) {
            out.append(text);
            return 1;
        }
    }
    const QStringList broken = lines(text, width, wrap, maxLines);
    out.append(broken);
    return broken.size();
}

QStringList TextMeasure::lines(const QString& text, double width, bool wrap, int maxLines) const
{
    maxLines = std::max(maxLines, 1);
    QStringList paragraphs = text.split(u'\n');
    if (!wrap) {
        const QString first = paragraphs.constFirst();
        return {paragraphs.size() > 1 ? cutWithEllipsis(first, width) : elided(first, width)};
    }

    QStringList result;
    bool cut = false;
    for (const QString& paragraph : paragraphs) {
        QString line;
        for (const QString& word : paragraph.split(u' ')) {
            const QString candidate = line.isEmpty() ? word : line + u' ' + word;
            if (this->width(candidate) <= width || (line.isEmpty() && word.isEmpty())) {
                line = candidate;
                continue;
            }
            if (!line.isEmpty())
                result.append(line);
            line = word;
            // A word wider than the whole width is broken between characters.
            while (this->width(line) > width && line.size() > 1) {
                qsizetype fits = 1;
                while (fits < line.size() && this->width(line.left(fits + 1)) <= width)
                    ++fits;
                result.append(line.left(fits));
                line = line.mid(fits);
            }
        }
        result.append(line);
        if (result.size() > maxLines) {
            cut = true;
            break;
        }
    }
    if (result.size() > maxLines) {
        result = result.mid(0, maxLines);
        cut = true;
    }
    if (cut)
        result.last() = cutWithEllipsis(result.last(), width);
    return result;
}

} // namespace tabulor
