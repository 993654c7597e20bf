#include "production/richtext/RtfTokenizer.h"

#include <algorithm>

namespace tabulor {

namespace {

bool isLetter(char16_t c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

int hexValue(char16_t c)
{
    if (isDigit(c))
        return c - u'0';
    if (c >= u'a' && c <= u'f')
        return c - u'a' + 10;
    if (c >= u'A' && c <= u'F')
        return c - u'A' + 10;
    return -1;
}

} // namespace

RtfToken RtfTokenizer::next()
{
    RtfToken token;
    while (m_pos < m_text.size()) {
        token.offset = m_pos;
        const char16_t c = m_text[m_pos++].unicode();
        switch (c) {
        case u'\r':
        case u'\n':
            continue;
        case u'{':
            token.kind = RtfToken::Kind::GroupStart;
            return token;
        case u'}':
            token.kind = RtfToken::Kind::GroupEnd;
            return token;
        case u'\\':
            break;
        default:
            token.kind = RtfToken::Kind::Character;
            token.character = c;
            return token;
        }
        if (m_pos == m_text.size()) {
            note(token.offset, QStringLiteral("The text ends in a backslash."));
            break;
        }
        const char16_t after = m_text[m_pos].unicode();
        if (isLetter(after)) {
            readWord(token);
            return token;
        }
        ++m_pos;
        if (after == u'\'') {
            if (readHexByte(token))
                return token;
            continue;
        }
        // Escaped braces and backslashes are text. They stay characters so that a byte of a
        // double-byte code page that happens to be one of them joins the byte before it.
        token.kind = after == u'\\' || after == u'{' || after == u'}' ? RtfToken::Kind::Character
                                                                      : RtfToken::Kind::Symbol;
        // A backslash before a line end is a paragraph end, as \par is.
        token.character = after == u'\r' ? u'\n' : after;
        return token;
    }
    token.kind = RtfToken::Kind::End;
    token.offset = m_text.size();
    return token;
}

bool RtfTokenizer::atBlankEnd() const
{
    for (qsizetype i = m_pos; i < m_text.size(); ++i) {
        if (!m_text[i].isSpace())
            return false;
    }
    return true;
}

void RtfTokenizer::readWord(RtfToken& token)
{
    token.kind = RtfToken::Kind::Word;
    while (m_pos < m_text.size() && isLetter(m_text[m_pos].unicode())) {
        if (token.word.size() < RtfToken::MaxWordLength)
            token.word.push_back(char(m_text[m_pos].unicode()));
        ++m_pos;
    }
    token.parameter = readParameter();
    // One blank ends the word and belongs to it.
    if (m_pos < m_text.size() && m_text[m_pos] == u' ')
        ++m_pos;
    if (token.word == "bin") {
        const qsizetype length = std::max(0, token.parameter.value_or(0));
        if (length > m_text.size() - m_pos)
            note(token.offset, QStringLiteral("Binary data runs past the end of the text."));
        m_pos += std::min(length, m_text.size() - m_pos);
    }
}

std::optional<int> RtfTokenizer::readParameter()
{
    const bool negative =
        m_pos + 1 < m_text.size() && m_text[m_pos] == u'-' && isDigit(m_text[m_pos + 1].unicode());
    if (negative)
        ++m_pos;
    if (m_pos == m_text.size() || !isDigit(m_text[m_pos].unicode()))
        return std::nullopt;
    qint64 value = 0;
    while (m_pos < m_text.size() && isDigit(m_text[m_pos].unicode())) {
        value =
            std::min<qint64>(value * 10 + (m_text[m_pos].unicode() - u'0'), RtfToken::MaxParameter);
        ++m_pos;
    }
    return int(negative ? -value : value);
}

bool RtfTokenizer::readHexByte(RtfToken& token)
{
    int value = 0;
    for (int i = 0; i < 2; ++i) {
        const int digit = m_pos < m_text.size() ? hexValue(m_text[m_pos].unicode()) : -1;
        if (digit < 0) {
            note(token.offset, QStringLiteral("\\' is not followed by two hexadecimal digits."));
            return false;
        }
        value = value * 16 + digit;
        ++m_pos;
    }
    token.kind = RtfToken::Kind::Byte;
    token.character = char16_t(value);
    return true;
}

void RtfTokenizer::note(qsizetype offset, const QString& message)
{
    if (!m_problem)
        m_problem = RtfProblem{offset, message};
}

} // namespace tabulor
