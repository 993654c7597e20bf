#include "production/richtext/RtfReader.h"
#include "production/richtext/RtfCodePages.h"
#include "production/richtext/RtfColorTable.h"
#include "production/richtext/RtfControlWords.h"
#include "production/richtext/RtfFontTable.h"
#include "production/richtext/RtfTokenizer.h"

#include <QByteArray>

#include <algorithm>
#include <vector>

namespace tabulor {

namespace {

// Word processors nest a few levels; anything deeper is skipped rather than kept on a stack.
constexpr qsizetype MaxDepth = 100;
// \fs counts half points; word processors stop at 1638 points.
constexpr int DefaultHalfPoints = 24;
constexpr int MaxHalfPoints = 3276;
constexpr char32_t Replacement = 0xFFFD;

// What the text of a group is for.
enum class Destination
{
    Text,
    FontTable,
    ColorTable,
    Skipped,
};

// Control characters other than the tab have no place in a title; the line breaks of \line
// are added as they are.
bool isShown(char32_t c)
{
    return c == u'\t' || (c >= 0x20 && (c < 0x7F || c >= 0xA0));
}

bool switchedOn(const RtfToken& token)
{
    return token.parameter.value_or(1) != 0;
}

// The character formatting and the paragraph alignment in force, saved and restored by groups.
struct GroupState
{
    Destination destination = Destination::Text;
    RichTextFormat format;
    std::optional<int> font; // as chosen with \f; its character set decodes \'hh
    bool hidden = false;
    int unicodeSkip = 1;
    RichTextAlignment alignment = RichTextAlignment::Left;
};

class Reader
{
public:
    explicit Reader(QStringView rtf) : m_tokens(rtf) {}

    RichText read();
    std::optional<RtfProblem> problem() const;

private:
    GroupState& state() { return m_groups.back(); }
    void note(qsizetype offset, const QString& message);

    void startGroup(const RtfToken& token);
    void endGroup(const RtfToken& token);
    void handleWord(const RtfToken& token);
    void handleSymbol(char16_t symbol);
    void handleCharacter(char16_t c);
    void handleUnicode(const RtfToken& token);

    void addByte(char byte);
    void appendText(const QString& text);
    void appendCharacter(char32_t c);
    void flushBytes();
    void flushSurrogate();
    void endParagraph();

    int codePage() const;

    RtfTokenizer m_tokens;
    std::optional<RtfProblem> m_problem;
    std::vector<GroupState> m_groups{GroupState{}};
    int m_deepGroups = 0; // open groups skipped for being nested too deep
    bool m_ended = false;
    int m_fallback = 0; // characters still to skip after \u

    RtfCodePages m_codePages;
    int m_documentCodePage = RtfCodePages::Western;
    RtfFontTable m_fonts;
    RtfColorTable m_colors;

    QByteArray m_bytes; // text bytes not yet decoded
    int m_bytesCodePage = 0;
    char16_t m_highSurrogate = 0; // a \u high surrogate waiting for its low half

    RichText m_text;
    RichTextParagraph m_paragraph;
};

RichText Reader::read()
{
    RtfTokenizer header = m_tokens;
    if (header.next().kind != RtfToken::Kind::GroupStart || header.next().word != "rtf")
        note(0, QStringLiteral("The text does not begin with {\\rtf."));

    while (!m_ended) {
        const RtfToken token = m_tokens.next();
        using Kind = RtfToken::Kind;
        if (token.kind == Kind::End)
            break;
        const bool brace = token.kind == Kind::GroupStart || token.kind == Kind::GroupEnd;
        if (m_deepGroups > 0) {
            if (brace)
                m_deepGroups += token.kind == Kind::GroupStart ? 1 : -1;
            continue;
        }
        if (brace) {
            m_fallback = 0;
        } else if (m_fallback > 0) {
            --m_fallback;
            continue;
        }
        if (state().destination == Destination::Skipped && !brace)
            continue;
        switch (token.kind) {
        case Kind::Byte:
            addByte(char(token.character));
            break;
        case Kind::Character:
            handleCharacter(token.character);
            break;
        case Kind::Word:
            flushBytes();
            if (token.word != "u")
                flushSurrogate();
            handleWord(token);
            break;
        default:
            flushBytes();
            flushSurrogate();
            if (token.kind == Kind::Symbol)
                handleSymbol(token.character);
            else if (token.kind == Kind::GroupStart)
                startGroup(token);
            else
                endGroup(token);
            break;
        }
    }

    flushBytes();
    flushSurrogate();
    if (!m_ended && (m_groups.size() > 1 || m_deepGroups > 0))
        note(m_tokens.next().offset, QStringLiteral("A group is not closed."));
    if (!m_paragraph.runs.empty())
        endParagraph();
    return std::move(m_text);
}

std::optional<RtfProblem> Reader::problem() const
{
    const std::optional<RtfProblem>& tokens = m_tokens.problem();
    if (!tokens || (m_problem && m_problem->offset <= tokens->offset))
        return m_problem;
    return tokens;
}

void Reader::note(qsizetype offset, const QString& message)
{
    if (!m_problem || offset < m_problem->offset)
        m_problem = RtfProblem{offset, message};
}

void Reader::startGroup(const RtfToken& token)
{
    if (qsizetype(m_groups.size()) > MaxDepth) {
        note(token.offset, QStringLiteral("Groups are nested more than %1 deep; the deeper "
                                          "groups are left out.")
                               .arg(MaxDepth));
        m_deepGroups = 1;
        return;
    }
    m_groups.push_back(state());
}

void Reader::endGroup(const RtfToken& token)
{
    // A stray brace before the document: the missing {\rtf has been noted already.
    if (m_groups.size() == 1)
        return;
    const Destination closing = state().destination;
    const Destination outer = m_groups[m_groups.size() - 2].destination;
    // A font's entry ends with its group at the latest; the table's last colour may lack ";".
    if (closing == Destination::FontTable)
        m_fonts.endEntry();
    if (closing == Destination::ColorTable && outer != Destination::ColorTable &&
        m_colors.entryHasPart())
        m_colors.endEntry();
    // The first group is the document: its text ends with it.
    if (m_groups.size() == 2) {
        if (!m_paragraph.runs.empty())
            endParagraph();
        m_ended = true;
        if (!m_tokens.atBlankEnd())
            note(token.offset + 1, QStringLiteral("The text after the document's closing "
                                                  "brace is left out."));
    }
    m_groups.pop_back();
}

void Reader::handleWord(const RtfToken& token)
{
    const RtfControlWord* word = findControlWord(token.word);
    if (!word)
        return;
    using Action = RtfControlWord::Action;
    GroupState& s = state();
    const int value = word->value;
    const int parameter = token.parameter.value_or(0);
    switch (word->action) {
    case Action::Skip:
        s.destination = Destination::Skipped;
        break;
    case Action::FontTable:
        s.destination = Destination::FontTable;
        break;
    case Action::ColorTable:
        s.destination = Destination::ColorTable;
        break;
    case Action::Paragraph:
        if (s.destination == Destination::Text)
            endParagraph();
        break;
    case Action::Character:
        appendText(QString(QChar(char16_t(value))));
        break;
    case Action::Bold:
        s.format.bold = switchedOn(token);
        break;
    case Action::Italic:
        s.format.italic = switchedOn(token);
        break;
    case Action::Underline:
        s.format.underline = switchedOn(token);
        break;
    case Action::NoUnderline:
        s.format.underline = false;
        break;
    case Action::StrikeOut:
        s.format.strikeOut = switchedOn(token);
        break;
    case Action::Hidden:
        s.hidden = switchedOn(token);
        break;
    case Action::Plain:
        s.format = {};
        s.font.reset();
        s.hidden = false;
        break;
    case Action::FontSize: {
        const int halfPoints =
            parameter > 0 ? std::min(parameter, MaxHalfPoints) : DefaultHalfPoints;
        s.format.pointSize = halfPoints / 2.0;
        break;
    }
    case Action::Color:
        // Entry 0 is the automatic colour, as is any entry without a red, green or blue.
        s.format.color = m_colors.color(parameter);
        break;
    case Action::Font:
        if (s.destination == Destination::FontTable) {
            m_fonts.startEntry(parameter);
        } else {
            s.font = parameter;
            s.format.family = m_fonts.family(parameter);
        }
        break;
    case Action::DefaultFont:
        m_fonts.setDefaultFont(parameter);
        break;
    case Action::ParagraphDefaults:
        s.alignment = RichTextAlignment::Left;
        break;
    case Action::Align:
        s.alignment = RichTextAlignment(value);
        break;
    case Action::DocumentCharacterSet:
        m_documentCodePage = value;
        break;
    case Action::DocumentCodePage:
        if (RtfCodePages::isKnown(parameter))
            m_documentCodePage = parameter;
        break;
    case Action::FontCharacterSet:
        if (s.destination == Destination::FontTable)
            m_fonts.setEntryCodePage(codePageOfCharset(parameter));
        break;
    case Action::FontCodePage:
        if (s.destination == Destination::FontTable && RtfCodePages::isKnown(parameter))
            m_fonts.setEntryCodePage(parameter);
        break;
    case Action::Red:
    case Action::Green:
    case Action::Blue:
        if (s.destination == Destination::ColorTable)
            m_colors.setPart(int(word->action) - int(Action::Red), parameter);
        break;
    case Action::Unicode:
        handleUnicode(token);
        break;
    case Action::UnicodeSkip:
        s.unicodeSkip = std::max(0, parameter);
        break;
    }
}

void Reader::handleSymbol(char16_t symbol)
{
    switch (symbol) {
    case u'*': // a destination that readers may skip when they do not know it
        state().destination = Destination::Skipped;
        break;
    case u'\n':
        if (state().destination == Destination::Text)
            endParagraph();
        break;
    case u'~':
        appendCharacter(0x00A0); // no-break space
        break;
    case u'_':
        appendCharacter(0x2011); // non-breaking hyphen
        break;
    default: // \- marks where a word may be hyphenated; others mark index entries
        break;
    }
}

void Reader::handleCharacter(char16_t c)
{
    const Destination destination = state().destination;
    const bool tableEnd = c == u';' && destination != Destination::Text;
    if (c >= 0x20 && c < 0x80 && !tableEnd) {
        addByte(char(c));
        return;
    }
    flushBytes();
    flushSurrogate();
    if (tableEnd && destination == Destination::FontTable)
        m_fonts.endEntry();
    else if (tableEnd)
        m_colors.endEntry();
    else
        appendCharacter(c);
}

void Reader::handleUnicode(const RtfToken& token)
{
    if (!token.parameter)
        return;
    m_fallback = state().unicodeSkip;
    // The number is a signed 16-bit value; some writers use the unsigned one instead.
    const int value = *token.parameter < 0 ? *token.parameter + 0x10000 : *token.parameter;
    if (value < 0 || value > 0x10FFFF) {
        flushSurrogate();
        appendCharacter(Replacement);
    } else if (QChar::isHighSurrogate(char32_t(value))) {
        flushSurrogate();
        m_highSurrogate = char16_t(value);
    } else if (QChar::isLowSurrogate(char32_t(value)) && m_highSurrogate) {
        const QChar pair[2] = {QChar(m_highSurrogate), QChar(char16_t(value))};
        m_highSurrogate = 0;
        appendText(QString(pair, 2));
    } else {
        flushSurrogate();
        appendCharacter(QChar::isLowSurrogate(char32_t(value)) ? Replacement : char32_t(value));
    }
}

void Reader::addByte(char byte)
{
    flushSurrogate();
    if (m_bytes.isEmpty())
        m_bytesCodePage = codePage();
    m_bytes.append(byte);
}

void Reader::appendText(const QString& text)
{
    const GroupState& s = state();
    if (text.isEmpty())
        return;
    if (s.destination == Destination::FontTable) {
        m_fonts.appendToEntryName(text);
    } else if (s.destination == Destination::Text && !s.hidden) {
        if (!m_paragraph.runs.empty() && m_paragraph.runs.back().format == s.format)
            m_paragraph.runs.back().text += text;
        else
            m_paragraph.runs.push_back(RichTextRun{text, s.format});
    }
}

void Reader::appendCharacter(char32_t c)
{
    if (isShown(c))
        appendText(QString::fromUcs4(&c, 1));
}

void Reader::flushBytes()
{
    if (m_bytes.isEmpty())
        return;
    QString text = m_codePages.decode(m_bytesCodePage, m_bytes);
    text.removeIf([](QChar c) { return !isShown(c.unicode()); });
    appendText(text);
    m_bytes.clear();
}

void Reader::flushSurrogate()
{
    if (!m_highSurrogate)
        return;
    m_highSurrogate = 0;
    appendCharacter(Replacement);
}

void Reader::endParagraph()
{
    m_paragraph.alignment = state().alignment;
    m_paragraph.mark = state().format;
    m_text.paragraphs.push_back(std::move(m_paragraph));
    m_paragraph = {};
}

// The code page of the text being read: that of its font's character set, else the document's.
int Reader::codePage() const
{
    const GroupState& s = m_groups.back();
    const int page = s.destination == Destination::FontTable
                         ? m_fonts.entryCodePage()
                         : m_fonts.codePageOf(s.font.value_or(m_fonts.defaultFont()));
    return page ? page : m_documentCodePage;
}

} // namespace

RichText readRtf(QStringView rtf, RtfProblem* problem)
{
    Reader reader(rtf);
    RichText text = reader.read();
    if (problem)
        *problem = reader.problem().value_or(RtfProblem{});
    return text;
}

} // namespace tabulor
