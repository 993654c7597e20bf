#include "production/formats/FormatTextCompiler.h"

#include <optional>

namespace tabulor {

void compileTextSection(const FormatChars& chars, FormatSection& section)
{
    std::optional<size_t> firstCode;
    bool anyPlaceholder = false;
    for (const FormatChar& fc : chars) {
        if (fc.quoted) {
            section.addLiteral(fc.c);
            continue;
        }
        switch (fc.c.unicode()) {
        case u'@':
        case u'&':
            section.addOp(fc.c == u'@' ? FormatOp::CharRequired : FormatOp::CharOptional);
            anyPlaceholder = true;
            break;
        case u'<':
        case u'>':
        case u'!':
            if (fc.c == u'!')
                section.leftToRight = true;
            else
                section.caseChange = fc.c == u'<' ? CaseChange::Lower : CaseChange::Upper;
            if (!firstCode)
                firstCode = section.tokens.size();
            break;
        default:
            section.addLiteral(fc.c);
        }
    }
    if (!anyPlaceholder && firstCode) {
        section.tokens.insert(section.tokens.begin() + static_cast<qsizetype>(*firstCode),
                              FormatToken{FormatOp::WholeText});
    }
}

} // namespace tabulor
