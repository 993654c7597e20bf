#include "definition/DefinitionFile.h"

#include "TestSupport.h"

#include <QRandomGenerator>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

DefaultTexts builtInTexts()
{
    return {QStringLiteral("[<rs>] Report Generated at <tt> on <dd>"),
            QStringLiteral("<db>|<rs>|Page <p> of <n>"), QStringLiteral(" | |<tt>, <ddd>")};
}

// A definition that uses every kind of value: negative numbers, fractions, non-ASCII text.
ReportDefinition richDefinition()
{
    ReportDefinition d;
    ApplyBuiltInStyles(d, builtInTexts());
    d.DataBaseName = QStringLiteral("sample.sqlite");
    d.RecordSource = QStringLiteral("Order Lines");
    d.global.Align = -3;
    d.global.Columns = QStringLiteral("2");
    d.global.WidowOK = true;
    d.global.SubtotalPosition = 2;
    d.global.Footer = QStringLiteral("<rf>||<tt>, <ddd>");
    d.styles[StyleDetailBody].FontName = QString::fromUtf8("DejaVu Sans Condensed");
    d.styles[StyleDetailBody].FontSize = 9.75f;
    d.styles[StyleDetailBody].FontItalic = true;
    d.styles[StyleHeading1Top].Color = 255;
    d.fields = {
        {QStringLiteral("region"), QString::fromUtf8("R\xC3\xA9gion"), 1, 9, QString(), 0, 0},
        {QStringLiteral("amount"), QStringLiteral("Amount"), 2, 6, QStringLiteral("#,###.##"), 1,
         1234.5f},
        {QStringLiteral("qty"), QStringLiteral("Quantity"), 0, 3, QString(), 4, 0.1f},
    };
    d.groups = {QStringLiteral("region")};
    d.details = {QStringLiteral("amount"), QStringLiteral("qty")};
    return d;
}

ProfileFile parse(const QByteArray& bytes)
{
    return ProfileFile::fromText(QString::fromUtf8(bytes));
}

std::optional<StagedDefinition> stage(const QByteArray& bytes, DefinitionReadError* error)
{
    return readStagedDefinition(parse(bytes), namedStyleTable(), error);
}

// Replaces the value of one key line ("Key = ...") in the first section named section.
QByteArray withValue(QByteArray bytes, const QByteArray& section, const QByteArray& key,
                     const QByteArray& value)
{
    const qsizetype start = bytes.indexOf("[" + section + "]\r\n");
    const qsizetype line = bytes.indexOf("\r\n" + key + " = ", start) + 2;
    const qsizetype end = bytes.indexOf("\r\n", line);
    return bytes.replace(line, end - line, value.isNull() ? QByteArray() : key + " = " + value);
}

} // namespace

TEST(BuiltInStyles, GiveTheDocumentedLook)
{
    ReportDefinition d;
    ApplyBuiltInStyles(d, builtInTexts());
    const ReportStyle& body = d.styles[StyleDetailBody];
    EXPECT_EQ(body.name, QStringLiteral("Detail Body"));
    EXPECT_EQ(body.FontName, QStringLiteral("Tahoma"));
    EXPECT_EQ(body.FontSize, 8.25f);
    EXPECT_FALSE(body.FontBold);
    EXPECT_EQ(body.Text, 0);
    EXPECT_EQ(body.Back, 16777215);
    EXPECT_EQ(body.Top + body.Bottom + body.Before + body.After, 0);
    EXPECT_EQ(body.Level, -666);

    EXPECT_EQ(d.global.Right, 720);
    EXPECT_EQ(d.global.Left, 1440);
    EXPECT_EQ(d.global.Header, QStringLiteral("<db>|<rs>|Page <p> of <n>"));

    const qint16 levels[kStyleCount] = {-666, 0, 1, 2, -1, -666, -98, -99, -100, -666, -666};
    for (int i = 0; i < kStyleCount; ++i)
        EXPECT_EQ(d.styles[i].Level, levels[i]) << i;
    EXPECT_EQ(d.styles[StyleHeading1Top].Text, 12500670);
    EXPECT_EQ(d.styles[StyleHeading1Bottom].After, 300);
    EXPECT_EQ(d.styles[StyleFooters].Before, 150);
}

TEST(BuiltInStyles, LeaveWhatTheyDoNotName)
{
    ReportDefinition d;
    d.global.WidowOK = true;
    d.global.Align = 3;
    d.styles[StyleHeading2Top].FontItalic = true;
    d.styles[StyleHeading2Top].FontUnderline = true;
    d.styles[StyleHeading2Top].FontBold = false;
    ApplyBuiltInStyles(d, builtInTexts());
    EXPECT_TRUE(d.global.WidowOK);
    EXPECT_EQ(d.global.Align, 3);
    EXPECT_TRUE(d.styles[StyleHeading2Top].FontItalic);
    EXPECT_TRUE(d.styles[StyleHeading2Top].FontUnderline);
    EXPECT_TRUE(d.styles[StyleHeading2Top].FontBold);
}

TEST(DefinitionFile, IsWrittenByteForByteInTheFixedLayout)
{
    EXPECT_EQ(definitionFileBytes(richDefinition()),
              readBytes(testDataPath(QStringLiteral("rich.vrd"))));
}

TEST(DefinitionFile, WriteReadWriteGivesTheSameBytes)
{
    const ReportDefinition original = richDefinition();
    const QByteArray first = definitionFileBytes(original);
    DefinitionReadError error;
    const auto staged = stage(first, &error);
    ASSERT_TRUE(staged) << error.key.toStdString();

    ReportDefinition reread;
    reread.DataBaseName = ReadFileValue(parse(first), u"RecordSource", u"DataBaseName");
    reread.RecordSource = ReadFileValue(parse(first), u"RecordSource", u"RecordSource");
    reread.global = staged->global;
    reread.styles = staged->styles;
    reread.fields = staged->fields;
    reread.groups = staged->groups;
    reread.details = staged->details;
    EXPECT_EQ(reread, original);
    EXPECT_EQ(definitionFileBytes(reread), first);
}

TEST(DefinitionFile, TextsLoseBlanksAtTheirEndsOnReading)
{
    // Values are written as they stand and read back trimmed, so the built-in footer's
    // leading blank does not survive a save; the text after it does.
    ReportDefinition d = richDefinition();
    d.global.Footer = QStringLiteral(" | |<tt>, <ddd>");
    DefinitionReadError error;
    const auto staged = stage(definitionFileBytes(d), &error);
    ASSERT_TRUE(staged);
    EXPECT_EQ(staged->global.Footer, QStringLiteral("| |<tt>, <ddd>"));
}

TEST(DefinitionFile, SavingReplacesTheFileWhole)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("report.vrd"));
    writeBytes(path, QByteArray(100000, 'x'));
    QString error;
    ASSERT_TRUE(WriteReportFile(richDefinition(), path, &error));
    EXPECT_EQ(readBytes(path), definitionFileBytes(richDefinition()));

    // A folder that does not exist cannot take the file; the failure says so.
    EXPECT_FALSE(
        WriteReportFile(richDefinition(), dir.filePath(QStringLiteral("no/such.vrd")), &error));
    EXPECT_FALSE(error.isEmpty());
}

TEST(DefinitionFile, ColumnsBelowOneOrNotANumberReadAsOne)
{
    const QByteArray bytes = definitionFileBytes(richDefinition());
    const struct
    {
        QByteArray value;
        QString expected;
    } cases[] = {{"0", QStringLiteral("1")},          {"abc", QStringLiteral("1")},
                 {QByteArray(), QStringLiteral("1")}, {"-2", QStringLiteral("1")},
                 {"3 columns", QStringLiteral("3")},  {"2.5", QStringLiteral("2.5")}};
    for (const auto& c : cases) {
        DefinitionReadError error;
        const auto staged = stage(withValue(bytes, "GlobalInfo", "Columns", c.value), &error);
        ASSERT_TRUE(staged) << c.value.constData();
        EXPECT_EQ(staged->global.Columns, c.expected) << c.value.constData();
    }
}

TEST(DefinitionFile, LongTextsAreCutTo257Characters)
{
    ReportDefinition d = richDefinition();
    d.global.Header = QString(300, u'h');
    DefinitionReadError error;
    const auto staged = stage(definitionFileBytes(d), &error);
    ASSERT_TRUE(staged);
    EXPECT_EQ(staged->global.Header, QString(257, u'h'));
}

TEST(DefinitionFile, GroupAndDetailListsTakeOnlyEntriesThatAreThere)
{
    const QByteArray bytes = definitionFileBytes(richDefinition());
    DefinitionReadError error;

    // A count larger than the entries adds nothing for the missing ones.
    auto staged = stage(withValue(bytes, "Headers", "Count", " 3 "), &error);
    ASSERT_TRUE(staged);
    EXPECT_EQ(staged->groups, QStringList{QStringLiteral("region")});

    staged = stage(withValue(bytes, "Headers", "Count", "0"), &error);
    ASSERT_TRUE(staged);
    EXPECT_TRUE(staged->groups.isEmpty());

    // The entry keys have no blank ("Field0"), unlike the field sections ("[Field 0]").
    staged = stage(withValue(bytes, "Detail", "Field0", "amount\tqty"), &error);
    ASSERT_TRUE(staged);
    EXPECT_EQ(staged->details, (QStringList{QStringLiteral("amount"), QStringLiteral("qty"),
                                            QStringLiteral("qty")}));
}

TEST(DefinitionFile, MissingLenientValuesBecomeZero)
{
    const QByteArray bytes = withValue(
        withValue(definitionFileBytes(richDefinition()), "GlobalInfo", "Top", QByteArray()),
        "Style 3", "FontSize", "big");
    DefinitionReadError error;
    const auto staged = stage(bytes, &error);
    ASSERT_TRUE(staged);
    EXPECT_EQ(staged->global.Top, 0);
    EXPECT_EQ(staged->styles[3].FontSize, 0.0f);
}

TEST(DefinitionFile, EveryStrictKeyMissingOrMalformedStopsTheRead)
{
    const QByteArray bytes = definitionFileBytes(richDefinition());
    const struct
    {
        QByteArray section;
        QByteArray key;
    } strictKeys[] = {
        {"GlobalInfo", "SubtotalPosition"},
        {"GlobalInfo", "WordWrap"},
        {"GlobalInfo", "WidowOK"},
        {"GlobalInfo", "Orientation"},
        {"Style 0", "FontBold"},
        {"Style 4", "FontItalic"},
        {"Style 10", "FontUnderline"},
        {"Style 5", "FontStrikeThru"},
        {"Style 7", "Top"},
        {"Style 7", "Bottom"},
        {"Style 2", "Color"},
        {"Style 2", "Text"},
        {"Style 2", "Back"},
        {"Fields", "Count"},
        {"Field 1", "Sort"},
        {"Field 1", "Align"},
        {"Field 2", "Aggregate"},
        {"Field 2", "Width"},
        {"Headers", "Count"},
        {"Detail", "Count"},
    };
    for (const auto& k : strictKeys) {
        for (const QByteArray& bad : {QByteArray(), QByteArray("x1"), QByteArray("1.5.5")}) {
            DefinitionReadError error;
            EXPECT_FALSE(stage(withValue(bytes, k.section, k.key, bad), &error))
                << k.section.constData() << " " << k.key.constData() << " = " << bad.constData();
            EXPECT_EQ(error.section, QString::fromLatin1(k.section));
            EXPECT_EQ(error.key, QString::fromLatin1(k.key));
        }
    }
}

TEST(DefinitionFile, MalformedFilesFailCleanly)
{
    const QByteArray good = definitionFileBytes(richDefinition());
    const auto fails = [](const QByteArray& bytes) {
        DefinitionReadError error;
        const bool failed = !stage(bytes, &error);
        if (failed) {
            EXPECT_FALSE(error.key.isEmpty());
        }
        return failed;
    };

    // Truncated anywhere before the last list's count is complete.
    const qsizetype lastCount = good.lastIndexOf("Count =  2 ") + 10;
    for (qsizetype cut = 0; cut < lastCount; cut += 23)
        EXPECT_TRUE(fails(good.left(cut))) << cut;

    QRandomGenerator random(20261122);
    QByteArray junk(4096, '\0');
    for (char& c : junk)
        c = static_cast<char>(random.bounded(256));
    EXPECT_TRUE(fails(junk));
    // Junk spliced into a good file must not bring the reader down, whatever it reads.
    for (qsizetype at = 0; at < good.size(); at += 101)
        fails(good.left(at) + junk + good.mid(at));

    EXPECT_TRUE(fails(withValue(good, "GlobalInfo", "SubtotalPosition", QByteArray(1 << 20, '7'))));
    EXPECT_TRUE(fails(withValue(good, "Fields", "Count", "32767")));
    EXPECT_TRUE(fails(withValue(good, "Fields", "Count", "-1")));
}
