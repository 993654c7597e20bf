#pragma once

#include "production/pages/DisplayList.h"

#include <QColor>
#include <QString>

#include <optional>
#include <vector>

namespace tabulor {

// Rich text as a report title holds it: paragraphs of runs, each run one stretch of text in
// one character format.
//
// A format sets only what the text itself says; everything it leaves unset comes from the
// title's style when the title is laid out. "\plain" in the text therefore means "the style's
// font", and the default colour is the style's text colour.
//
// Inside a run's text, a line break within the paragraph is a line feed (U+000A) and a tab is
// U+0009. A paragraph never holds a paragraph end: each paragraph is one entry of the list.

enum class RichTextAlignment
{
    Left,
    Centre,
    Right,
};

struct RichTextFormat
{
    std::optional<QString> family;
    std::optional<double> pointSize;
    std::optional<bool> bold;
    std::optional<bool> italic;
    std::optional<bool> underline;
    std::optional<bool> strikeOut;
    std::optional<QColor> color;

    // The style's font with what this format sets put in its place.
    FontSpec font(const FontSpec& style) const;

    bool operator==(const RichTextFormat&) const = default;
};

struct RichTextRun
{
    QString text;
    RichTextFormat format;

    bool operator==(const RichTextRun&) const = default;
};

struct RichTextParagraph
{
    RichTextAlignment alignment = RichTextAlignment::Left;
    std::vector<RichTextRun> runs;
    // The character format at the paragraph's end: it gives an empty paragraph its height.
    RichTextFormat mark;

    bool operator==(const RichTextParagraph&) const = default;
};

struct RichText
{
    std::vector<RichTextParagraph> paragraphs;

    bool operator==(const RichText&) const = default;
};

} // namespace tabulor
