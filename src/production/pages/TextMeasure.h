#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QString>
#include <QStringList>

#include <array>
#include <memory>
#include <optional>
#include <vector>

namespace tabulor {

// Measures text of one font in twips, and breaks it into the lines that fit a width.
class TextMeasure
{
public:
    explicit TextMeasure(const QFont& font);

    double width(const QString& text) const;
    double lineHeight() const { return m_lineHeight; }
    // From the top of a line to its baseline.
    double ascent() const { return m_metrics.ascent(); }

    // The lines of text within width: broken at blanks when wrapping (a word wider than the
    // width is broken between characters), at most maxLines of them. Text that does not fit
    // ends with "..." on its last line.
    QStringList lines(const QString& text, double width, bool wrap, int maxLines) const;
    // The same lines appended to out; returns how many.
    qsizetype appendLines(const QString& text, double width, bool wrap, int maxLines,
                          QStringList& out) const;
    // The text, or when it does not fit, its longest start that fits with "..." behind it.
    QString elided(const QString& text, double width) const;

private:
    // The width of text; with oneLine, nothing when the text holds a line break.
    std::optional<double> measure(const QString& text, bool oneLine) const;
    // The longest start of text that fits width with "..." behind it, and the "...".
    QString cutWithEllipsis(const QString& text, double width) const;

    QImage m_device; // 1440 dots per inch: one device pixel is one twip
    QFontMetricsF m_metrics;
    double m_lineHeight;
    // The advance of one character, negative until it is learnt.
    float& advanceSlot(char16_t c) const;

    // Advances of single characters, learnt as they are met, in pages of 256 characters made
    // when a character of theirs is first met (a layout measures in a dozen fonts, mostly a
    // few pages each). Report cells are short runs of Latin, Greek, Cyrillic and CJK text that
    // need no shaping, so their width is the sum of their characters' advances.
    mutable std::array<std::unique_ptr<float[]>, 256> m_advances;
};

} // namespace tabulor
