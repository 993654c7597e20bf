#pragma once

#include "production/richtext/RtfReader.h"

#include <QStringView>

#include <optional>
#include <string>

namespace tabulor {

// One piece of RTF: a brace, a control word (\name with an optional number), a control symbol
// (\ and one character other than a letter), a byte written as \'hh, or a character of text,
// which includes the escaped \\, \{ and \}.
struct RtfToken
{
    enum class Kind
    {
        End,
        GroupStart,
        GroupEnd,
        Word,
        Symbol,
        Byte,
        Character,
    };

    Kind kind = Kind::End;
    qsizetype offset = 0;
    std::string word;             // Word: the name, at most MaxWordLength letters
    std::optional<int> parameter; // Word: the number, clamped to +-MaxParameter
    char16_t character = 0;       // Symbol, Character: the character; Byte: the byte

    static constexpr int MaxWordLength = 32;
    static constexpr int MaxParameter = 0x7fffffff;
};

// Splits RTF into tokens. Line feeds and carriage returns between tokens mean nothing and are
// dropped; binary data after \binN is stepped over. Escapes that are cut short are dropped, and
// the first of them is kept as the problem.
class RtfTokenizer
{
public:
    explicit RtfTokenizer(QStringView text) : m_text(text) {}

    RtfToken next();
    // Whether only blanks and line ends are left.
    bool atBlankEnd() const;

    const std::optional<RtfProblem>& problem() const { return m_problem; }

private:
    void readWord(RtfToken& token);
    std::optional<int> readParameter();
    bool readHexByte(RtfToken& token);
    void note(qsizetype offset, const QString& message);

    QStringView m_text;
    qsizetype m_pos = 0;
    std::optional<RtfProblem> m_problem;
};

} // namespace tabulor
