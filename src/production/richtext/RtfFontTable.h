#pragma once

#include <QString>

#include <map>
#include <optional>
#include <utility>

namespace tabulor {

// The font table of an RTF document (\fonttbl), filled entry by entry as it is read: each
// font's family name and the code page its text is written in.
class RtfFontTable
{
public:
    // \fN inside the table: starts the entry of font N, ending the one before.
    void startEntry(int number);
    // Ends the entry being read, at its ";" or its group's end; nothing when none is open.
    void endEntry();
    // Text of the entry being read: its name. Nothing when no entry is open.
    void appendToEntryName(const QString& text);
    // \fcharset or \cpg of the entry being read. Nothing when no entry is open.
    void setEntryCodePage(int codePage);

    // \deffN: the font of text that chooses none.
    void setDefaultFont(int number) { m_defaultFont = number; }
    int defaultFont() const { return m_defaultFont; }

    // The family name of font N; nullopt when the table names none.
    std::optional<QString> family(int number) const;
    // The code page of font N's text, or of the entry being read; 0 when the document's
    // applies.
    int codePageOf(int number) const;
    int entryCodePage() const;

private:
    struct Font
    {
        QString name;
        int codePage = 0; // 0: the document's
    };

    std::map<int, Font> m_fonts;
    std::optional<std::pair<int, Font>> m_entry; // the entry being read
    int m_defaultFont = 0;
};

} // namespace tabulor
