#include "production/formats/FormatChars.h"

namespace tabulor {

std::vector<FormatChars> splitFormatSections(QStringView format)
{
    std::vector<FormatChars> sections(1);
    bool inQuotes = false;
    for (qsizetype i = 0; i < format.size(); ++i) {
        const QChar c = format[i];
        if (inQuotes) {
            if (c == u'"')
                inQuotes = false;
            else
                sections.back().push_back({c, true});
        } else if (c == u'"') {
            inQuotes = true;
        } else if (c == u'\\') {
            if (i + 1 < format.size())
                sections.back().push_back({format[++i], true});
        } else if (c == u';') {
            sections.emplace_back();
        } else {
            sections.back().push_back({c, false});
        }
    }
    if (sections.size() > 4)
        sections.resize(4);
    return sections;
}

bool isUnquoted(const FormatChars& chars, size_t i, char16_t c)
{
    return i < chars.size() && !chars[i].quoted && chars[i].c == c;
}

} // namespace tabulor
