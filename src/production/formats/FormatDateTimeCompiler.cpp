#include "production/formats/FormatDateTimeCompiler.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>

namespace tabulor {

bool compileDateTimeSection(const FormatChars& chars, FormatSection& section)
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
            section.addOp(byLength.begin()[run - 1]);
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
            section.addOp(run == 4   ? FormatOp::YearLong
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
                section.addOp(FormatOp::LongTime);
                anyCode = true;
            } else {
                run = 1;
                section.addLiteral(chars[i].c);
            }
            break;
        case u'a': {
            const bool upper = chars[i].c == u'A';
            if (matches(i, QLatin1StringView("am/pm"))) {
                run = 5;
                section.addOp(FormatOp::AmPm, qint32(upper ? AmPmStyle::Upper : AmPmStyle::Lower));
            } else if (matches(i, QLatin1StringView("ampm"))) {
                run = 4;
                section.addOp(FormatOp::AmPm, qint32(AmPmStyle::Locale));
            } else if (matches(i, QLatin1StringView("a/p"))) {
                run = 3;
                section.addOp(FormatOp::AmPm,
                              qint32(upper ? AmPmStyle::UpperChar : AmPmStyle::LowerChar));
            } else {
                run = 1;
                section.addLiteral(chars[i].c);
                break;
            }
            section.twelveHour = true;
            anyCode = true;
            break;
        }
        case u'/':
            run = 1;
            section.addOp(FormatOp::DateSeparator);
            break;
        case u':':
            run = 1;
            section.addOp(FormatOp::TimeSeparator);
            break;
        default:
            run = 1;
            section.addLiteral(chars[i].c);
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

} // namespace tabulor
