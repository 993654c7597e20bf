#include "production/richtext/RtfControlWords.h"

#include "production/pages/RichText.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tabulor {

namespace {

using Action = RtfControlWord::Action;

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

const std::unordered_map<std::string_view, RtfControlWord>& controlWords()
{
    static const std::unordered_map<std::string_view, RtfControlWord> table = [] {
        std::unordered_map<std::string_view, RtfControlWord> w = {
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
            w.emplace(underline, RtfControlWord{Action::Underline});
        // Destinations whose text is not part of what the page shows. \pn holds the numbering
        // that \pntext already spells out for readers that do not number lists themselves.
        for (std::string_view skipped :
             words("annotation atnauthor atnid author buptim colorschememapping comment creatim "
                   "datastore doccomm docvar fchars filetbl fldinst footer footerf footerl "
                   "footerr footnote ftncn ftnsep ftnsepc generator header headerf headerl "
                   "headerr info keywords latentstyles lchars listoverridetable listtable "
                   "nonshppict object operator pict pn printim private revtbl revtim rsidtbl rxe "
                   "shp stylesheet subject tc template themedata title txe userprops xe xmlnstbl"))
            w.emplace(skipped, RtfControlWord{Action::Skip});
        return w;
    }();
    return table;
}

} // namespace

const RtfControlWord* findControlWord(std::string_view word)
{
    const auto& table = controlWords();
    const auto found = table.find(word);
    return found == table.end() ? nullptr : &found->second;
}

} // namespace tabulor
