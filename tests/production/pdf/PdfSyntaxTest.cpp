#include "production/pdf/PdfSyntax.h"

#include "QtPrinters.h"

#include <gtest/gtest.h>

using namespace tabulor;

TEST(PdfBuffer, NumbersAreWrittenShortAndExact)
{
    const std::vector<std::pair<qint64, const char*>> thousandths{
        {0, "0"},      {12500, "12.5"},     {-50, "-0.05"},    {1, "0.001"},
        {-1000, "-1"}, {595276, "595.276"}, {841890, "841.89"}};
    for (const auto& [value, text] : thousandths) {
        PdfBuffer buffer;
        buffer.milli(value);
        EXPECT_EQ(buffer.bytes().toByteArray(), QByteArray(text)) << value;
    }
    PdfBuffer buffer;
    buffer.centi(-1) << ' ';
    buffer.centi(56787) << ' ';
    buffer.real(-0.0004) << ' ';
    buffer.real(2.0 / 3) << ' ';
    buffer.unit(0) << ' ';
    buffer.unit(128) << ' ';
    buffer.unit(255);
    EXPECT_EQ(buffer.bytes().toByteArray(), QByteArray("-0.01 567.87 0 0.667 0 0.502 1"));
}

TEST(PdfBuffer, StringsAndNamesEscapeWhatTheSyntaxReserves)
{
    PdfBuffer buffer;
    for (char c : QByteArray("a(b)c\\d\re\nf\0g", 13))
        buffer.stringByte(c);
    buffer << ' ';
    buffer.name("Tahoma Bold#1/x") << ' ';
    buffer.textString(QStringLiteral("Été 😀"));
    QByteArray expected("a\\(b\\)c\\\\d\\re\\nf");
    expected += '\0';
    expected += "g /Tahoma#20Bold#231#2Fx <FEFF00C9007400E90020D83DDE00>";
    EXPECT_EQ(buffer.bytes().toByteArray(), expected);
}
