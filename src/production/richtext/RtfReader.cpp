#include "production/richtext/RtfReader.h"
#include "production/richtext/RtfCodePages.h"
#include "production/richtext/RtfTokenizer.h"

#include <QByteArray>

#include <algorithm>
#include <array>
#include <map>
#include <string_view>
#include <unordered_map>
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

struct WordAction
{
    Action action;
    int value = 0;
};

// The words of a list separated by blanks.
std::vector<std::string_view> words(std::string_view list)
{
    std::vector<std::string_view> result;
    for (size_t start = 0; start < list.size();) {
        const size_t end = std::min(list.find(' ', start), list.size());
        result.push_back(list.substr(start, end - start));
        start = end + 1;
    }
    return result;
}

const std::unordered_map<std::string_view, WordAction>& controlWords()
{
    static const std::unordered_map<std::string_view, WordAction> table = [] {
        std::unordered_map<std::string_view, WordAction> w = {
            {"fonttbl", {Action::FontTable}},
            {"colortbl", {Action::ColorTable}},
            {"par", {Action::Paragraph}},
            {"sect", {Action::Paragraph}},
            {"page", {Action::Paragraph}},
            {"row", {Action::Paragraph}},
            {"line", {Action::Character, '\n'}},
            {"tab", {Action::Character, '\t'}},
            {"cell", {Action::Character, '\t'}},
            {"emdash", {Action::Character, 0x2014}},
            {"endash", {Action::Character, 0x2013}},
            {"emspace", {Action::Character, 0x2003}},
            {"enspace", {Action::Character, 0x2002}},
            {"qmspace", {Action::Character, 0x2005}},
            {"bullet", {Action::Character, 0x2022}},
            {"lquote", {Action::Character, 0x2018}},
            {"rquote", {Action::Character, 0x2019}},
            {"ldblquote", {Action::Character, 0x201C}},
            {"rdblquote", {Action::Character, 0x201D}},
            {"zwnj", {Action::Character, 0x200C}},
            {"zwj", {Action::Character, 0x200D}},
            {"ltrmark", {Action::Character, 0x200E}},
            {"rtlmark", {Action::Character, 0x200F}},
            {"b", {Action::Bold}},
            {"i", {Action::Italic}},
            {"ulnone", {Action::NoUnderline}},
            {"strike", {Action::StrikeOut}},
            {"striked", {Action::StrikeOut}},
            {"v", {Action::Hidden}},
            {"plain", {Action::Plain}},
            {"fs", {Action::FontSize}},
            {"cf", {Action::Color}},
            {"f", {Action::Font}},
            {"deff", {Action::DefaultFont}},
            {"pard", {Action::ParagraphDefaults}},
            {"ql", {Action::Align, int(RichTextAlignment::Left)}},
            {"qj", {Action::Align, int(RichTextAlignment::Left)}},
            {"qc", {Action::Align, int(RichTextAlignment::Centre)}},
            {"qr", {Action::Align, int(RichTextAlignment::Right)}},
            {"ansi", {Action::DocumentCharacterSet, 1252}},
            {"mac", {Action::DocumentCharacterSet, 10000}},
            {"pc", {Action::DocumentCharacterSet, 437}},
            {"pca", {Action::DocumentCharacterSet, 850}},
            {"ansicpg", {Action::DocumentCodePage}},
            {"fcharset", {Action::FontCharacterSet}},
            {"cpg", {Action::FontCodePage}},
            {"red", {Action::Red}},
            {"green", {Action::Green}},
            {"blue", {Action::Blue}},
            {"u", {Action::Unicode}},
            {"uc", {Action::UnicodeSkip}},
        };
        // Every kind of underline is drawn as a plain one.
        for (std::string_view underline :
             words("ul uld uldash uldashd uldashdd uldb ulhwave ulldash ulth ulthd ulthdash "
                   "ulthdashd ulthdashdd ulthldash ululdbwave ulw ulwave"))
            w.emplace(underline, WordAction{Action::Underline});
        // Destinations whose text is not part of what the page shows. \pn holds the numbering
        // that \pntext already spells out for readers that do not number lists themselves.
        for (std::string_view skipped :
             words("annotation atnauthor atnid author buptim colorschememapping comment creatim "
                   "datastore doccomm docvar fchars filetbl fldinst footer footerf footerl "
                   "footerr footnote ftncn ftnsep ftnsepc generator header headerf headerl "
                   "headerr info keywords latentstyles lchars listoverridetable listtable "
                   "nonshppict object operator pict pn printim private revtbl revtim rsidtbl rxe "
                   "shp stylesheet subject tc template themedata title txe userprops xe xmlnstbl"))
            w.emplace(skipped, WordAction{Action::Skip});
        return w;
    }();
    return table;
}

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

struct Font
{
    QString name;
    int codePage = 0; // 0: the document's
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
    void startFont(int number);
    void endFont();
    void endColor();

    RtfTokenizer m_tokens;
    std::optional<RtfProblem> m_problem;
    std::vector<GroupState> m_groups{GroupState{}};
    int m_deepGroups = 0; // open groups skipped for being nested too deep
    bool m_ended = false;
    int m_fallback = 0; // characters still to skip after \u

    RtfCodePages m_codePages;
    int m_documentCodePage = RtfCodePages::Western;
    int m_defaultFont = 0;
    std::map<int, Font> m_fonts;
    std::optional<std::pair<int, Font>> m_font; // the font table entry being read
    std::vector<std::optional<QColor>> m_colors;
    std::array<std::optional<int>, 3> m_color; // the colour table entry being read

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
        endFont();
    if (closing == Destination::ColorTable && outer != Destination::ColorTable &&
        std::any_of(m_color.begin(), m_color.end(), [](auto part) { return part.has_value(); }))
        endColor();
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
    const auto& table = controlWords();
    const auto found = table.find(token.word);
    if (found == table.end())
        return;
    GroupState& s = state();
    const int value = found->second.value;
    const int parameter = token.parameter.value_or(0);
    switch (found->second.action) {
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
        s.format.color = parameter > 0 && size_t(parameter) < m_colors.size()
                             ? m_colors[size_t(parameter)]
                             : std::nullopt;
        break;
    case Action::Font:
        if (s.destination == Destination::FontTable) {
            startFont(parameter);
        } else {
            const auto font = m_fonts.find(parameter);
            s.font = parameter;
            s.format.family = font != m_fonts.end() && !font->second.name.isEmpty()
                                  ? std::optional(font->second.name)
                                  : std::nullopt;
        }
        break;
    case Action::DefaultFont:
        m_defaultFont = parameter;
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
        if (m_font && s.destination == Destination::FontTable)
            m_font->second.codePage = codePageOfCharset(parameter);
        break;
    case Action::FontCodePage:
        if (m_font && s.destination == Destination::FontTable && RtfCodePages::isKnown(parameter))
            m_font->second.codePage = parameter;
        break;
    case Action::Red:
    case Action::Green:
    case Action::Blue:
        if (s.destination == Destination::ColorTable)
            m_color[size_t(found->second.action) - size_t(Action::Red)] =
                std::clamp(parameter, 0, 255);
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
        endFont();
    else if (tableEnd)
        endColor();
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
    if (s.destination == Destination::FontTable && m_font) {
        m_font->second.name += text;
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
    int page = 0;
    if (s.destination == Destination::FontTable) {
        page = m_font ? m_font->second.codePage : 0;
    } else {
        const auto font = m_fonts.find(s.font.value_or(m_defaultFont));
        page = font != m_fonts.end() ? font->second.codePage : 0;
    }
    return page ? page : m_documentCodePage;
}

void Reader::startFont(int number)
{
    endFont();
    m_font.emplace(number, Font{});
}

void Reader::endFont()
{
    if (!m_font)
        return;
    m_font->second.name = m_font->second.name.trimmed();
    m_fonts.insert_or_assign(m_font->first, std::move(m_font->second));
    m_font.reset();
}

void Reader::endColor()
{
    const auto [red, green, blue] = m_color;
    if (red || green || blue)
        m_colors.emplace_back(QColor(red.value_or(0), green.value_or(0), blue.value_or(0)));
    else
        m_colors.emplace_back(std::nullopt);
    m_color = {};
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
