#include "production/formats/FormatNumberCompiler.h"

#include <optional>

namespace tabulor {

void compileNumberSection(const FormatChars& chars, FormatSection& section)
{
    std::vector<size_t> integerTokens; // the integer placeholders, left to right
    struct Comma
    {
        size_t placeholdersBefore;
        bool afterPoint;
    };
    std::vector<Comma> commas;
    std::optional<size_t> firstZero; // among the integer placeholders
    std::optional<size_t> pointToken;
    bool inExponent = false;
    for (size_t i = 0; i < chars.size(); ++i) {
        const QChar c = chars[i].c;
        if (chars[i].quoted) {
            section.addLiteral(c);
            continue;
        }
        switch (c.unicode()) {
        case u'0':
        case u'#':
            if (inExponent) {
                section.addLiteral(c);
            } else if (pointToken) {
                ++section.fractionPlaceholders;
                if (c == u'0')
                    section.minFractionDigits = section.fractionPlaceholders;
                section.addOp(FormatOp::FractionDigit, section.fractionPlaceholders - 1);
            } else {
                if (c == u'0' && !firstZero)
                    firstZero = integerTokens.size();
                integerTokens.push_back(section.tokens.size());
                section.addOp(FormatOp::IntegerDigit);
            }
            break;
        case u'.':
            if (pointToken || inExponent) {
                section.addLiteral(c);
            } else {
                pointToken = section.tokens.size();
                section.addOp(FormatOp::DecimalPoint);
            }
            break;
        case u',':
            // Commas only say how to group or scale; they are never shown themselves.
            if (!inExponent) {
                commas.push_back({integerTokens.size() + size_t(section.fractionPlaceholders),
                                  pointToken.has_value()});
            }
            break;
        case u'%':
            section.powerShift += 2;
            section.addLiteral(c);
            break;
        case u'E':
        case u'e':
            if (!inExponent && (isUnquoted(chars, i + 1, u'+') || isUnquoted(chars, i + 1, u'-'))) {
                const qint32 flags =
                    (c == u'E' ? ExponentUpper : 0) | (chars[i + 1].c == u'+' ? ExponentPlus : 0);
                ++i;
                qint32 minDigits = 0;
                while (isUnquoted(chars, i + 1, u'0') || isUnquoted(chars, i + 1, u'#')) {
                    if (chars[++i].c == u'0')
                        ++minDigits;
                }
                section.addOp(FormatOp::Exponent, minDigits, flags);
                inExponent = true;
                section.scientific = true;
            } else {
                section.addLiteral(c);
            }
            break;
        default:
            section.addLiteral(c);
        }
    }

    // A comma between digit placeholders of the whole part turns grouping on; commas right
    // before the point or after the last placeholder divide by a thousand each ("#,##0," shows
    // thousands, "0.0,," millions). Any other comma does nothing.
    const size_t integerCount = integerTokens.size();
    const size_t placeholderCount = integerCount + size_t(section.fractionPlaceholders);
    for (const Comma& comma : commas) {
        const size_t before = comma.placeholdersBefore;
        if (before == 0)
            continue;
        if (!comma.afterPoint && before < integerCount)
            section.grouping = true;
        else if (before == placeholderCount || (!comma.afterPoint && before == integerCount))
            section.powerShift -= 3;
    }
    section.mantissaDigits = static_cast<int>(integerCount);
    section.minIntegerDigits = firstZero ? static_cast<int>(integerCount - *firstZero) : 0;
    if (integerCount == 0 && pointToken && !section.scientific) {
        // ".00": the whole part has no placeholder, but its digits are not dropped.
        section.tokens.insert(section.tokens.begin() + static_cast<qsizetype>(*pointToken),
                              FormatToken{FormatOp::IntegerDigit, 0, 1});
        return;
    }
    for (size_t k = 0; k < integerCount; ++k) {
        FormatToken& token = section.tokens[integerTokens[k]];
        token.a = static_cast<qint32>(integerCount - 1 - k);
        token.b = k == 0 ? 1 : 0;
    }
}

} // namespace tabulor
