#include "production/formats/FormatText.h"

#include <algorithm>

namespace tabulor {

void appendText(FormatOutput& out, const FormatSection& section, QStringView text)
{
    QString changed;
    if (section.caseChange != CaseChange::None) {
        changed = section.caseChange == CaseChange::Lower ? text.toString().toLower()
                                                          : text.toString().toUpper();
        text = changed;
    }
    const auto isPlaceholder = [](const FormatToken& token) {
        return token.op == FormatOp::CharRequired || token.op == FormatOp::CharOptional;
    };
    const qsizetype placeholders =
        std::count_if(section.tokens.begin(), section.tokens.end(), isPlaceholder);
    const qsizetype length = text.size();
    qsizetype index = 0; // of the placeholder, from the left
    for (const FormatToken& token : section.tokens) {
        if (token.op == FormatOp::Literal) {
            out += section.literal(token);
        } else if (token.op == FormatOp::WholeText) {
            out += text;
        } else if (isPlaceholder(token)) {
            qsizetype from = 0;
            qsizetype to = 0;
            if (section.leftToRight) {
                from = index;
                to = index == placeholders - 1 ? length : index + 1;
            } else {
                to = length - (placeholders - 1 - index);
                from = index == 0 ? 0 : to - 1;
            }
            from = std::clamp<qsizetype>(from, 0, length);
            to = std::clamp<qsizetype>(to, 0, length);
            if (from < to)
                out += text.sliced(from, to - from);
            else if (token.op == FormatOp::CharRequired)
                out += u' ';
            ++index;
        }
    }
}

} // namespace tabulor
