#include "production/formats/FormatProgram.h"

#include <QHash>

#include <algorithm>

namespace tabulor {

namespace {

// One character of a section; quoted and escaped characters are always literal.
struct FormatChar
{
    QChar c;
    bool quoted = false;
};
using FormatChars = std::vector<FormatChar>;

// Splits a format at the semicolons outside quotes and resolves quotes and escapes. Sections
// after the fourth are ignored.
std::vector<FormatChars> splitSections(QStringView format)
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

void addOp(FormatSection& section, FormatOp op, qint32 a = 0, qint32 b = 0)
{
    section.tokens.push_back({op, a, b});
}

void addLiteral(FormatSection& section, QChar c)
{
    const qint32 at = static_cast<qint32>(section.literals.size());
    section.literals += c;
    if (!section.tokens.empty()) {
        FormatToken& last = section.tokens.back();
        if (last.op == FormatOp::Literal && last.a + last.b == at) {
            ++last.b;
            return;
        }
    }
    addOp(section, FormatOp::Literal, at, 1);
}

bool isUnquoted(const FormatChars& chars, size_t i, char16_t c)
{
    return i < chars.size() && !chars[i].quoted && chars[i].c == c;
}

void compileNumber(const FormatChars& chars, FormatSection& section)
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
            addLiteral(section, c);
            continue;
        }
        switch (c.unicode()) {
        case u'0':
        case u'#':
            if (inExponent) {
                addLiteral(section, c);
            } else if (pointToken) {
                ++section.fractionPlaceholders;
                if (c == u'0')
                    section.minFractionDigits = section.fractionPlaceholders;
                addOp(section, FormatOp::FractionDigit, section.fractionPlaceholders - 1);
            } else {
                if (c == u'0' && !firstZero)
                    firstZero = integerTokens.size();
                integerTokens.push_back(section.tokens.size());
                addOp(section, FormatOp::IntegerDigit);
            }
            break;
        case u'.':
            if (pointToken || inExponent) {
                addLiteral(section, c);
            } else {
                pointToken = section.tokens.size();
                addOp(section, FormatOp::DecimalPoint);
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
            addLiteral(section, c);
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
                addOp(section, FormatOp::Exponent, minDigits, flags);
                inExponent = true;
                section.scientific = true;
            } else {
                addLiteral(section, c);
            }
            break;
        default:
            addLiteral(section, c);
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

// Compiles date and time codes; false when the section has none, so that it is fixed text.
bool compileDateTime(const FormatChars& chars, FormatSection& section)
{
    const auto lowerAt = [&](size_t i) {
        return i < chars.size() && !chars[i].quoted ? chars[i].c.toLower().unicode() : u'\0';
    };
    const auto matches = [&](size_t i, QLatin1StringView word) {
        for (qsizetype k = 0; k < word.size(); ++k) {
            if (lowerAt(i + static_cast<size_t>(k)) != word[k].unicode())
                return false;
        }
        return true;
    };

    bool anyCode = false;
    size_t i = 0;
    while (i < chars.size()) {
        const char16_t lower = lowerAt(i);
        size_t run = 1;
        while (lower != u'\0' && lowerAt(i + run) == lower)
            ++run;
        const auto pick = [&](std::initializer_list<FormatOp> byLength) {
            run = std::min(run, byLength.size());
            addOp(section, byLength.begin()[run - 1]);
            anyCode = true;
        };
        switch (lower) {
        case u'd':
            pick({FormatOp::Day, FormatOp::DayPadded, FormatOp::DayShortName, FormatOp::DayLongName,
                  FormatOp::ShortDate, FormatOp::LongDate});
            break;
        case u'w':
            pick({FormatOp::Weekday, FormatOp::WeekOfYear});
            break;
        case u'm':
            pick({FormatOp::Month, FormatOp::MonthPadded, FormatOp::MonthShortName,
                  FormatOp::MonthLongName});
            break;
        case u'q':
            pick({FormatOp::Quarter});
            break;
        case u'y':
            // "y" is the day of the year; "yyy" reads as "yy" and "y".
            run = run >= 4 ? 4 : std::min<size_t>(run, 2);
            addOp(section, run == 4   ? FormatOp::YearLong
                           : run == 2 ? FormatOp::YearShort
                                      : FormatOp::DayOfYear);
            anyCode = true;
            break;
        case u'h':
            pick({FormatOp::Hour, FormatOp::HourPadded});
            break;
        case u'n':
            pick({FormatOp::Minute, FormatOp::MinutePadded});
            break;
        case u's':
            pick({FormatOp::Second, FormatOp::SecondPadded});
            break;
        case u'c':
            pick({FormatOp::GeneralDate});
            break;
        case u't':
            if (run >= 5) { // "ttttt"; fewer are plain letters
                run = 5;
                addOp(section, FormatOp::LongTime);
                anyCode = true;
            } else {
                run = 1;
                addLiteral(section, chars[i].c);
            }
            break;
        case u'a': {
            const bool upper = chars[i].c == u'A';
            if (matches(i, QLatin1StringView("am/pm"))) {
                run = 5;
                addOp(section, FormatOp::AmPm, qint32(upper ? AmPmStyle::Upper : AmPmStyle::Lower));
            } else if (matches(i, QLatin1StringView("ampm"))) {
                run = 4;
                addOp(section, FormatOp::AmPm, qint32(AmPmStyle::Locale));
            } else if (matches(i, QLatin1StringView("a/p"))) {
                run = 3;
                addOp(section, FormatOp::AmPm,
                      qint32(upper ? AmPmStyle::UpperChar : AmPmStyle::LowerChar));
            } else {
                run = 1;
                addLiteral(section, chars[i].c);
                break;
            }
            section.twelveHour = true;
            anyCode = true;
            break;
        }
        case u'/':
            run = 1;
            addOp(section, FormatOp::DateSeparator);
            break;
        case u':':
            run = 1;
            addOp(section, FormatOp::TimeSeparator);
            break;
        default:
            run = 1;
            addLiteral(section, chars[i].c);
        }
        i += run;
    }

    // "m" and "mm" are minutes right after an hour or right before a second, with only
    // separators and literals between.
    const auto isCode = [](const FormatToken& token) {
        return token.op != FormatOp::Literal && token.op != FormatOp::DateSeparator &&
               token.op != FormatOp::TimeSeparator;
    };
    auto& tokens = section.tokens;
    for (auto it = tokens.begin(); it != tokens.end(); ++it) {
        if (it->op != FormatOp::Month && it->op != FormatOp::MonthPadded)
            continue;
        const auto before = std::find_if(std::make_reverse_iterator(it), tokens.rend(), isCode);
        const auto after = std::find_if(it + 1, tokens.end(), isCode);
        const bool afterHour = before != tokens.rend() &&
                               (before->op == FormatOp::Hour || before->op == FormatOp::HourPadded);
        const bool beforeSecond = after != tokens.end() && (after->op == FormatOp::Second ||
                                                            after->op == FormatOp::SecondPadded);
        if (afterHour || beforeSecond)
            it->op = it->op == FormatOp::Month ? FormatOp::Minute : FormatOp::MinutePadded;
    }
    return anyCode;
}

void compileText(const FormatChars& chars, FormatSection& section)
{
    std::optional<size_t> firstCode;
    bool anyPlaceholder = false;
    for (const FormatChar& fc : chars) {
        if (fc.quoted) {
            addLiteral(section, fc.c);
            continue;
        }
        switch (fc.c.unicode()) {
        case u'@':
        case u'&':
            addOp(section, fc.c == u'@' ? FormatOp::CharRequired : FormatOp::CharOptional);
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
            addLiteral(section, fc.c);
        }
    }
    if (!anyPlaceholder && firstCode) {
        section.tokens.insert(section.tokens.begin() + static_cast<qsizetype>(*firstCode),
                              FormatToken{FormatOp::WholeText});
    }
}

FormatSection compileSection(const FormatChars& chars)
{
    FormatSection section;
    if (chars.empty())
        return section;
    bool digitPlaceholder = false;
    bool charPlaceholder = false;
    bool textCode = false;
    for (const FormatChar& fc : chars) {
        if (fc.quoted)
            continue;
        digitPlaceholder |= fc.c == u'0' || fc.c == u'#';
        charPlaceholder |= fc.c == u'@' || fc.c == u'&';
        textCode |= fc.c == u'<' || fc.c == u'>' || fc.c == u'!';
    }
    if (digitPlaceholder) {
        section.kind = SectionKind::Number;
        compileNumber(chars, section);
    } else if (charPlaceholder) {
        section.kind = SectionKind::Text;
        compileText(chars, section);
    } else if (compileDateTime(chars, section)) {
        section.kind = SectionKind::DateTime;
    } else {
        section = FormatSection();
        if (textCode) {
            section.kind = SectionKind::Text;
            compileText(chars, section);
        } else {
            section.kind = SectionKind::Literal;
            for (const FormatChar& fc : chars)
                addLiteral(section, fc.c);
        }
    }
    return section;
}

struct NamedFormat
{
    QLatin1StringView name;
    QLatin1StringView custom;                       // the same as a custom format
    QString FormatLocale::*localePattern = nullptr; // defined by the locale
};

const NamedFormat NamedFormats[] = {
    {QLatin1StringView("Currency"), {}, &FormatLocale::currency},
    {QLatin1StringView("Fixed"), QLatin1StringView("0.00")},
    {QLatin1StringView("Standard"), QLatin1StringView("#,##0.00")},
    {QLatin1StringView("Percent"), QLatin1StringView("0.00%")},
    {QLatin1StringView("Scientific"), QLatin1StringView("0.00E+00")},
    {QLatin1StringView("Yes/No"), QLatin1StringView(R"("Yes";"Yes";"No")")},
    {QLatin1StringView("True/False"), QLatin1StringView(R"("True";"True";"False")")},
    {QLatin1StringView("On/Off"), QLatin1StringView(R"("On";"On";"Off")")},
    {QLatin1StringView("General Date"), QLatin1StringView("c")},
    {QLatin1StringView("Long Date"), {}, &FormatLocale::longDate},
    {QLatin1StringView("Medium Date"), {}, &FormatLocale::mediumDate},
    {QLatin1StringView("Short Date"), {}, &FormatLocale::shortDate},
    {QLatin1StringView("Long Time"), {}, &FormatLocale::longTime},
    {QLatin1StringView("Medium Time"), {}, &FormatLocale::mediumTime},
    {QLatin1StringView("Short Time"), {}, &FormatLocale::shortTime},
};

} // namespace

bool FormatProgram::hasDateTimeSection() const
{
    return std::any_of(sections.begin(), sections.end(), [](const FormatSection& section) {
        return section.kind == SectionKind::DateTime;
    });
}

std::shared_ptr<const FormatProgram> compileFormat(const QString& format)
{
    auto program = std::make_shared<FormatProgram>();
    program->source = format;
    if (format.compare(QLatin1StringView("General Number"), Qt::CaseInsensitive) == 0) {
        program->generalNumber = true;
        return program;
    }
    QString custom = format;
    for (const NamedFormat& named : NamedFormats) {
        if (format.compare(named.name, Qt::CaseInsensitive) == 0) {
            program->localePattern = named.localePattern;
            custom = named.custom;
            break;
        }
    }
    if (!custom.isEmpty()) {
        for (const FormatChars& chars : splitSections(custom))
            program->sections.push_back(compileSection(chars));
    }
    return program;
}

std::shared_ptr<const FormatProgram> cachedFormat(const QString& format)
{
    // Enough for every column of a report; a report with more formats than this only pays
    // for compiling them again.
    constexpr qsizetype kCapacity = 64;
    thread_local QHash<QString, std::shared_ptr<const FormatProgram>> cache;
    const auto found = cache.constFind(format);
    if (found != cache.cend())
        return found.value();
    if (cache.size() >= kCapacity)
        cache.clear();
    std::shared_ptr<const FormatProgram> program = compileFormat(format);
    cache.insert(format, program);
    return program;
}

} // namespace tabulor
