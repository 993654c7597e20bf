#pragma once

#include <string_view>

namespace tabulor {

// What a control word of RTF does to the text being read, with the value the action needs.
struct RtfControlWord
{
    enum class Action
    {
        Skip,
        FontTable,
        ColorTable,
        Paragraph,
        Character, // value: the character
        Bold,
        Italic,
        Underline,
        NoUnderline,
        StrikeOut,
        Hidden,
        Plain,
        FontSize,
        Color,
        Font,
        DefaultFont,
        ParagraphDefaults,
        Align,                // value: the alignment
        DocumentCharacterSet, // value: its code page
        DocumentCodePage,
        FontCharacterSet,
        FontCodePage,
        Red,
        Green,
        Blue,
        Unicode,
        UnicodeSkip,
    };

    Action action;
    int value = 0;
};

// What a control word does, by its name without the backslash; null for a word that changes
// nothing here. Every kind of underline is Underline; the words that open destinations whose
// text a page does not show (style sheets, document information, pictures, headers, footers,
// field instructions and the like) are Skip, which leaves out their group.
const RtfControlWord* findControlWord(std::string_view word);

} // namespace tabulor
