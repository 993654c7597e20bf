#include "production/formats/DisplayFormat.h"
#include "production/base/Currency.h"
#include "production/formats/FormatLocale.h"

#include "QtPrinters.h"

#include <QDateTime>
#include <QLocale>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <vector>

namespace tabulor {
namespace {

struct Row
{
    QVariant value;
    QString format;
    QString expected;
};
using Rows = std::vector<Row>;

const FormatLocale& english()
{
    static const FormatLocale locale =
        FormatLocale::fromQLocale(QLocale(QLocale::English, QLocale::UnitedStates));
    return locale;
}

const FormatLocale& german()
{
    static const FormatLocale locale =
        FormatLocale::fromQLocale(QLocale(QLocale::German, QLocale::Germany));
    return locale;
}

QVariant money(qint64 tenThousandths)
{
    return QVariant::fromValue(Currency{tenThousandths});
}

// 7 December 1958, a Sunday, at 20:50:35.
const QDateTime kEvening(QDate(1958, 12, 7), QTime(20, 50, 35));

std::string describe(const Row& row)
{
    return std::string(row.value.typeName() ? row.value.typeName() : "null") + " " +
           row.value.toString().toStdString() + " with \"" + row.format.toStdString() + '"';
}

void expectRows(const Rows& rows, const FormatLocale& locale)
{
    for (const Row& row : rows)
        EXPECT_EQ(formatValue(row.value, row.format, locale), row.expected) << describe(row);
}

Rows namedFormatRows()
{
    return {
        {1234.567, "General Number", "1234.567"},
        {0.1 + 0.2, "general number", "0.3"}, // at the 15 digits the formats see
        {-1234.5, "Currency", "($1,234.50)"},
        {money(12345000), "CURRENCY", "$1,234.50"},
        {1234.567, "Fixed", "1234.57"},
        {-0.5, "Fixed", "-0.50"},
        {1234567.891, "Standard", "1,234,567.89"},
        {0.125, "Percent", "12.50%"},
        {1234.5, "Scientific", "1.23E+03"},
        {0.000123, "Scientific", "1.23E-04"},
        {qint64(0), "Yes/No", "No"},
        {-7, "Yes/No", "Yes"},
        {true, "True/False", "True"}, // True is -1
        {false, "True/False", "False"},
        {2.5, "On/Off", "On"},
        {money(0), "on/off", "Off"},
        {kEvening, "General Date", "12/7/1958 8:50:35 PM"},
        {kEvening, "Long Date", "Sunday, December 7, 1958"},
        {kEvening, "Medium Date", "07-Dec-58"},
        {kEvening, "Short Date", "12/7/1958"},
        {kEvening, "Long Time", "8:50:35 PM"},
        {kEvening, "Medium Time", "08:50 PM"},
        {kEvening, "short time", "20:50"},
    };
}

Rows numberRows()
{
    return {
        // The designer's suggested formats.
        {0, "#.##", "."},
        {1234.5, "#,###.##", "1,234.5"},
        {-3, "($#,###.##)", "-($3.)"}, // the minus goes before the whole section
        {0.5, "#.##", ".5"},
        {0.5, "0.00", "0.50"},
        {5, "000", "005"},
        {12345, "00", "12345"}, // digits beyond the placeholders are never lost
        {12.5, ".00", "12.50"},
        {0, "#", ""},
        {3.14159, "0.0#", "3.14"},
        {3.1, "0.0#", "3.1"},
        {3, "0.0#", "3.0"},
        {1234, "##-##", "12-34"},
        // Grouping, and scaling by commas before the point or at the end.
        {123, "#,##0", "123"},
        {1234567.8, "0,000.0", "1,234,567.8"},
        {1234567, "#,##0,", "1,235"},
        {1500000, "0.0,,", "1.5"},
        {1234567, "#,##0,.00", "1,234.57"},
        // Percent and scientific notation.
        {0.5, "0%", "50%"},
        {0.0125, "0.0%", "1.3%"},
        {1234.5, "0.00e-00", "1.23e03"},
        {0.00012, "0.0E-0", "1.2E-4"},
        {0, "0.00E+00", "0.00E+00"},
        {9.995, "0.00E+00", "1.00E+01"}, // rounding carries into the exponent
        {1234.5, "00.0E+0", "12.3E+2"},
        {1e300, "0.0E+0", "1.0E+300"},
        // Literals.
        {5, "\"Total: \"0", "Total: 5"},
        {-5, "\"Total: \"0", "-Total: 5"},
        {5, "0 \\k\\g", "5 kg"},
        {5, "0 kg", "5 kg"},
        {5, "+0 (0)", "+0 (5)"},
        {5, "\\#0%", "#500%"},
        {12, "0\";\"0", "1;2"}, // a quoted semicolon separates nothing
        {5, "0 E", "5 E"},      // E without a sign is a letter
    };
}

Rows roundingRows()
{
    return {
        {2.5, "0", "3"},
        {-2.5, "0", "-3"}, // half away from zero
        {0.125, "0.00", "0.13"},
        {2.675, "0.00", "2.68"}, // as written, though the double is a little less
        {1.005, "0.00", "1.01"},
        {9.995, "0.00", "10.00"},
        {999.5, "#,##0", "1,000"},
        {0.0049, "0.00", "0.00"},
        {-0.001, "0.00", "-0.00"}, // the sign is the value's, before rounding
        {-0.001, "0.00;(0.00)", "(0.00)"},
        {-0.0, "0.00;(0.00);\\Z", "Z"}, // negative zero is zero
        {money(12345), "0.000", "1.235"},
        {money(-5), "0.000", "-0.001"},
        {std::numeric_limits<qint64>::max(), "#,##0", "9,223,372,036,854,775,807"},
        {std::numeric_limits<qint64>::min(), "0", "-9223372036854775808"},
        {1e20, "#,##0", "100,000,000,000,000,000,000"},
        {1.5e-10, "0.00", "0.00"},
        {1.5e-10, "0.00E+00", "1.50E-10"},
        {QVariant(1.1f), "0.000000", "1.100000"}, // singles at their own 7 digits
    };
}

Rows sectionRows()
{
    return {
        {1234, "$#,##0;($#,##0)", "$1,234"},
        {-1234, "$#,##0;($#,##0)", "($1,234)"},
        {0, "$#,##0;($#,##0)", "$0"},
        {0, "$#,##0;;\\Z\\e\\r\\o", "Zero"},
        {-5, "$#,##0;;\\Z\\e\\r\\o", "-$5"}, // an empty section is the first, with its sign
        {0, "0;-0;;\\N\\A", "0"},
        {5, ";(0)", "5"}, // an empty first section shows the value's own text
        {-5.5, "0.0;0.0-", "5.5-"},
        // Empty values: the fourth section, or nothing.
        {QVariant(), "0.00", ""},
        {QVariant(), "0;-0;\\Z;\"n/a\"", "n/a"},
        {QVariant(), "0;-0;\\Z;0.00", "0.00"},
        {QVariant(), "", ""},
        {QVariant(), "Short Date", ""},
        {QVariant(), "Yes/No", ""},
        {QVariant(), "@@@;\"(none)\"", "(none)"},
        {QString(), "@@@;\"(none)\"", "(none)"}, // so does an empty text
    };
}

Rows dateTimeRows()
{
    const QDateTime midnight(QDate(1958, 12, 7), QTime(0, 0));
    return {
        {kEvening, "m/d/yy", "12/7/58"},
        {kEvening, "d-mmm", "7-Dec"},
        {kEvening, "d-mmmm-yy", "7-December-58"},
        {kEvening, "dddd dd ddd", "Sunday 07 Sun"},
        {kEvening, "ddddd|dddddd", "12/7/1958|Sunday, December 7, 1958"},
        {kEvening, "ttttt", "8:50:35 PM"},
        {kEvening, "c", "12/7/1958 8:50:35 PM"},
        {midnight, "c", "12/7/1958"},
        {QTime(20, 50, 35), "c", "8:50:35 PM"},
        {kEvening, "YYYY-MM-DD", "1958-12-07"}, // codes in any case
        {kEvening, "dd.mm.yyyy \\at h", "07.12.1958 at 20"},
        // m is the minute right after an hour or before a second.
        {kEvening, "h:mm", "20:50"},
        {kEvening, "m:ss", "50:35"},
        {kEvening, "h m mm", "20 50 12"},
        {kEvening, "m/d/yy h:mm", "12/7/58 20:50"},
        {kEvening, "nn:s", "50:35"},
        // 12-hour clocks.
        {kEvening, "hh:mm AM/PM", "08:50 PM"},
        {kEvening, "h:mm:ss a/p", "8:50:35 p"},
        {kEvening, "h AMPM", "8 PM"},
        {QTime(0, 0), "h:nn AM/PM", "12:00 AM"},
        {QTime(12, 0), "h:nn am/pm", "12:00 pm"},
        {QTime(12, 30), "hh A/P", "12 P"},
        {QTime(0, 5), "h:nn", "0:05"},
        // Weekday (Sunday is 1), week (from Sunday, week 1 holds 1 January), quarter, day.
        {kEvening, "w ww q y", "1 50 4 341"},
        {QDate(2000, 1, 1), "w ww", "7 1"},
        {QDate(2000, 1, 2), "w ww", "1 2"},
        {QDate(2000, 12, 31), "ww y", "54 366"}, // a leap year that starts on a Saturday
        {QDate(2000, 2, 29), "dddd d mmmm yyyy, y", "Tuesday 29 February 2000, 60"},
        {QDate(2024, 12, 31), "ww y", "53 366"},
        // Numbers are days since 30 December 1899, and dates are such numbers.
        {36526, "yyyy-mm-dd", "2000-01-01"},
        {36526.75, "dd/mm/yyyy hh:nn", "01/01/2000 18:00"},
        {-1.25, "yyyy-mm-dd hh:nn", "1899-12-29 06:00"},
        {0.5, "General Date", "12:00:00 PM"},
        {1e10, "dd/mm/yyyy", "10000000000"}, // no date
        {60, "yyyy-mm-dd", "1900-02-28"},    // 1900 has no 29 February
        {QDate(1900, 3, 1), "0", "61"},
        {QDate(2000, 1, 1), "0", "36526"},
        {QDateTime(QDate(2000, 1, 1), QTime(18, 0)), "0.00", "36526.75"},
    };
}

Rows textRows()
{
    return {
        {"abc", "@@@@@", "  abc"},       {"abc", "!@@@@@", "abc  "},
        {"abc", "&&&&&", "abc"},         {"abcdef", "@@@", "abcdef"},
        {"abcdef", "!@@@|", "abcdef|"},  {"5551234", "@@@-@@@@", "555-1234"},
        {"ab", "(@@@)", "( ab)"},        {"Hello", ">", "HELLO"},
        {"Hello", "<\": \"", "hello: "}, {"Hello", "!>@@", "HELLO"},
        {123, "@@@@@", "  123"},         {true, "@@@@@@", "  True"},
    };
}

Rows valueTextRows()
{
    return {
        {qint64(-42), "", "-42"},
        {0.1, "", "0.1"},
        {0.1 + 0.2, "", "0.30000000000000004"},
        {123456789012345.0, "", "123456789012345"},
        {1e15, "", "1E+15"},
        {1.5e-7, "", "1.5E-07"},
        {0.0001, "", "0.0001"},
        {-0.0, "", "0"},
        {QVariant(0.1f), "", "0.1"},
        {std::nan(""), "0.00", "NaN"},
        {-std::numeric_limits<double>::infinity(), "", "-Infinity"},
        {true, "", "True"},
        {money(125000), "", "12.50"},
        {QDate(1958, 12, 7), "", "12/7/1958"},
        {kEvening, "", "12/7/1958 8:50:35 PM"},
        {QTime(20, 50, 35), "", "8:50:35 PM"},
        {"as written", "", "as written"},
        // A format that cannot apply shows the value's own text.
        {"hello", "dd mmm yyyy", "hello"},
        {"abc", "0.00", "abc"},
        {"", "0.00", ""},
        {QDate(1958, 12, 7), "@@@@@@@@@@@", "  12/7/1958"},
        // Texts that read as numbers or as dates are formatted as such.
        {"2000-01-01", "dd mmm yyyy", "01 Jan 2000"},
        {"2000-01-01 18:30:00", "h:nn", "18:30"},
        {"1234.5", "#,##0.00", "1,234.50"},
        {" -1,234.5 ", "0.0", "-1234.5"},
        {"1,23.5", "0.0", "1,23.5"}, // grouping not in threes: no number
        {"2.5e3", "0", "2500"},
        {"1e-3", "0.000", "0.001"},
        {"+007", "0", "7"},
        {".5", "0.00", "0.50"},
        {"5.", "0.0", "5.0"},
        {"1e", "0", "1e"},
        {"1 2", "0", "1 2"},
        {"12345678901234567890123456789012345678901234567890", "0", // 40 digits are kept
         "12345678901234567890123456789012345678900000000000"},
        {"36526", "yyyy", "2000"},
    };
}

// Formats as people mistype them: each gives a defined text.
Rows oddFormatRows()
{
    return {
        {5, "\"unterminated", "unterminated"},
        {5, "0\\", "5"},         // a trailing backslash escapes nothing
        {5, "0;0;0;0;(0)", "5"}, // sections after the fourth are ignored
        {5, "E+00", "E+01"},     // no mantissa placeholder: the mantissa has no room
        {1234, ",", ","},
        {5, "%", "%"},
        {5, "ttttt", "12:00:00 AM"}, // 4 January 1900, midnight
        {"", "@", " "},
        {5, "0.0.0", "5.0.0"}, // a second point is a literal
        {0.5, "0.0E+0E+0", "5.0E-1E+0"},
        {5, "tttt", "tttt"},
    };
}

TEST(DisplayFormat, NamedFormats)
{
    expectRows(namedFormatRows(), english());
}

TEST(DisplayFormat, NumberPlaceholdersGroupingScalingAndLiterals)
{
    expectRows(numberRows(), english());
}

TEST(DisplayFormat, RoundsHalfAwayFromZeroOnTheDecimalValue)
{
    expectRows(roundingRows(), english());
}

TEST(DisplayFormat, SectionsForNegativeZeroAndEmptyValues)
{
    expectRows(sectionRows(), english());
}

TEST(DisplayFormat, DateAndTimeCodes)
{
    expectRows(dateTimeRows(), english());
}

TEST(DisplayFormat, TextPlaceholders)
{
    expectRows(textRows(), english());
}

TEST(DisplayFormat, ValuesShowTheirOwnTextWhenNoFormatApplies)
{
    expectRows(valueTextRows(), english());
}

TEST(DisplayFormat, OddFormatsAndExtremeValues)
{
    expectRows(oddFormatRows(), english());

    const QString largest = formatValue(std::numeric_limits<double>::max(), "#,##0", english());
    EXPECT_TRUE(largest.startsWith("179,769,313,486,232,000,000,")) << largest.toStdString();
    EXPECT_EQ(largest.size(), 309 + 102);
    EXPECT_EQ(formatValue(std::numeric_limits<double>::denorm_min(), "0.00E+00", english()),
              "4.94E-324");
}

TEST(DisplayFormat, FollowsTheLocale)
{
    expectRows(
        {
            {1234.5, "#,##0.00", "1.234,50"},
            {-1234.5, "Currency", QStringLiteral("-1.234,50\u00a0€")},
            {1234.5, "", "1234,5"},
            {money(125000), "", "12,50"},
            {"1,5", "0.00", "1,50"},
            {"1.5", "0.00", "1.5"}, // "." groups thousands here
            {"1.234,5", "0.0", "1234,5"},
            {kEvening, "General Date", "07.12.1958 20:50:35"},
            {kEvening, "Long Date", "Sonntag, 7. Dezember 1958"},
            {kEvening, "Medium Date", "07-Dez.-58"},
            {kEvening, "dd/mm/yyyy hh:nn", "07.12.1958 20:50"},
            {kEvening, "ddd, mmmm", "So., Dezember"},
        },
        german());

    // Literal words in a locale's own pattern stay words.
    const FormatLocale spanish =
        FormatLocale::fromQLocale(QLocale(QLocale::Spanish, QLocale::Spain));
    EXPECT_EQ(formatValue(kEvening, "Long Date", spanish), "domingo, 7 de diciembre de 1958");

    // A locale set by hand: the separators and designators are its own, and a pattern that
    // names itself does not expand forever.
    FormatLocale custom = english();
    custom.dateSeparator = "-";
    custom.timeSeparator = ".";
    custom.pmDesignator = "nachm.";
    custom.longTime = "ttttth:nn:ss";
    EXPECT_EQ(formatValue(kEvening, "mm/dd/yyyy hh:nn", custom), "12-07-1958 20.50");
    EXPECT_EQ(formatValue(kEvening, "h AMPM", custom), "8 nachm.");
    EXPECT_EQ(formatValue(kEvening, "ttttt", custom), "20.50.35");
}

// A compiled format keeps no state between values: applied to every value of every table, in
// reverse order and twice, it gives what a freshly compiled one gives.
TEST(DisplayFormat, CompiledFormatsGiveWhatFreshOnesGive)
{
    std::map<QString, std::vector<Row>> byFormat;
    for (const Rows& rows : {namedFormatRows(), numberRows(), roundingRows(), sectionRows(),
                             dateTimeRows(), textRows(), valueTextRows(), oddFormatRows()}) {
        for (const Row& row : rows)
            byFormat[row.format].push_back(row);
    }
    for (const auto& [format, rows] : byFormat) {
        const DisplayFormat compiled(format);
        EXPECT_EQ(compiled.source(), format);
        for (int pass = 0; pass < 2; ++pass) {
            for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
                EXPECT_EQ(compiled.apply(row->value, english()),
                          DisplayFormat(format).apply(row->value, english()))
                    << describe(*row);
            }
        }
    }
    EXPECT_EQ(DisplayFormat().apply(1234.5, english()), "1234.5");
}

} // namespace
} // namespace tabulor
