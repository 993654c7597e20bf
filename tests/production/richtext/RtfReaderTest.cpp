#include "production/richtext/RtfReader.h"

#include "TestSupport.h"

#include <QDir>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <random>
#include <vector>

using namespace tabulor;

namespace {

// A paragraph as one line: its alignment (L, C or R), then each run as {format|text}, the
// format listing only what the run sets. Line breaks and tabs show as \n and \t.
QString describe(const RichTextParagraph& paragraph)
{
    static const char* const alignments[] = {"L", "C", "R"};
    QString line = QLatin1String(alignments[int(paragraph.alignment)]);
    for (const RichTextRun& run : paragraph.runs) {
        const RichTextFormat& f = run.format;
        QStringList set;
        const auto flag = [&](const std::optional<bool>& on, const char* name) {
            if (on)
                set << (*on ? "" : "!") + QLatin1String(name);
        };
        flag(f.bold, "b");
        flag(f.italic, "i");
        flag(f.underline, "u");
        flag(f.strikeOut, "s");
        if (f.pointSize)
            set << QString::number(*f.pointSize) + "pt";
        if (f.color)
            set << f.color->name();
        if (f.family)
            set << "f=" + *f.family;
        QString text = run.text;
        text.replace('\n', QLatin1String("\\n")).replace('\t', QLatin1String("\\t"));
        line += '{' + set.join(' ') + '|' + text + '}';
    }
    return line;
}

QStringList describe(const RichText& text)
{
    QStringList lines;
    for (const RichTextParagraph& paragraph : text.paragraphs)
        lines << describe(paragraph);
    return lines;
}

struct Row
{
    const char* rtf;
    QStringList paragraphs;
};

void expectRows(const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        RtfProblem problem;
        EXPECT_EQ(describe(readRtf(QString::fromUtf8(row.rtf), &problem)), row.paragraphs)
            << row.rtf;
        EXPECT_EQ(problem.message, QString()) << row.rtf;
    }
}

// What holds for anything read, however damaged: each output character and paragraph took at
// least one input character, runs hold text and differ from their neighbours, no control
// characters other than tabs and line breaks come through, and a problem lies in the input.
void expectWellFormed(const QString& rtf, const RichText& text, const RtfProblem& problem)
{
    qsizetype produced = 0;
    for (const RichTextParagraph& paragraph : text.paragraphs) {
        ++produced;
        for (size_t i = 0; i < paragraph.runs.size(); ++i) {
            const RichTextRun& run = paragraph.runs[i];
            ASSERT_FALSE(run.text.isEmpty());
            ASSERT_TRUE(i == 0 || paragraph.runs[i - 1].format != run.format);
            produced += run.text.size();
            for (QChar c : run.text)
                ASSERT_TRUE(c >= u' ' || c == u'\t' || c == u'\n') << int(c.unicode());
        }
    }
    ASSERT_LE(produced, rtf.size() + 1);
    ASSERT_GE(problem.offset, 0);
    ASSERT_LE(problem.offset, rtf.size());
}

QString fixture(const QString& name)
{
    return QString::fromLatin1(test::readBytes(test::testDataPath(name)));
}

} // namespace

TEST(RtfReader, CharacterFormatsAreSetClearedAndRestoredByGroups)
{
    expectRows({
        {R"({\rtf1 plain {\b bold} plain})", {"L{|plain }{b|bold}{| plain}"}},
        {R"({\rtf1\b\i\ul\strike all\b0\i0\ul0\strike0 none})",
         {"L{b i u s|all}{!b !i !u !s|none}"}},
        {R"({\rtf1\b2 on \b-1 on\b0 off})", {"L{b|on on}{!b|off}"}},
        // Every kind of underline is one; \ulc, its colour, does not end it.
        {R"({\rtf1\uldb a\ulc2 b\ulnone c\ulwave d})", {"L{u|ab}{!u|c}{u|d}"}},
        {R"({\rtf1\striked1 x\striked0 y})", {"L{s|x}{!s|y}"}},
        {R"({\rtf1\b\fs30 a\plain b})", {"L{b 15pt|a}{|b}"}},
        {R"({\rtf1 shown{\v hidden}\v  hidden\v0  shown})", {"L{|shown shown}"}},
    });
}

TEST(RtfReader, FontsSizesAndColoursComeFromTheirTables)
{
    expectRows({
        {R"({\rtf1{\fonttbl{\f0\fswiss\fcharset0 Arial;}{\f12{\*\panose 0}Times New Roman)"
         R"({\*\falt Times};}}\f12 a\f0 b\f7 c})",
         {"L{f=Times New Roman|a}{f=Arial|b}{|c}"}},
        // Entries need not be groups, nor end in ";".
        {R"({\rtf1{\fonttbl\f1 Courier New;\f2 Symbol}\f2 x\f1 y})",
         {"L{f=Symbol|x}{f=Courier New|y}"}},
        {R"({\rtf1\fs17 a\fs b\fs0 c\fs99999 d})", {"L{8.5pt|a}{12pt|bc}{1638pt|d}"}},
        {R"({\rtf1{\colortbl;\red255\green0\blue0;\green128;\red999\green-5\blue0})"
         R"(\cf1 red\cf2 green\cf3 clamped\cf0 auto \cf9 none})",
         {"L{#ff0000|red}{#008000|green}{#ff0000|clamped}{|auto none}"}},
        // An entry without a red, green or blue is the automatic colour, whatever its place.
        {R"({\rtf1{\colortbl\red0\green0\blue255;;}\cf1 auto \cf0 auto too})",
         {"L{|auto auto too}"}},
    });
}

TEST(RtfReader, ParagraphsKeepTheirAlignmentLineBreaksAndTabs)
{
    expectRows({
        {R"({\rtf1\qc centred\par\qr right\par\pard left\par\qj justified\par last})",
         {"C{|centred}", "R{|right}", "L{|left}", "L{|justified}", "L{|last}"}},
        {R"({\rtf1 a\tab b\line c\cell d\row})", {"L{|a\\tb\\nc\\td}"}},
        // The alignment in force at the paragraph's end counts.
        {R"({\rtf1 {\qc early} late\qr\par})", {"R{|early late}"}},
        {"{\\rtf1 one\\par\\par two\\sect three\\page four\\\nfive}",
         {"L{|one}", "L", "L{|two}", "L{|three}", "L{|four}", "L{|five}"}},
        {R"({\rtf1\qc{\b centred to the end}})", {"C{b|centred to the end}"}},
    });
    // An empty paragraph keeps the format of its mark, which sets its height.
    const RichText text = readRtf(uR"({\rtf1 a\par\fs40\par})");
    ASSERT_EQ(text.paragraphs.size(), 2u);
    EXPECT_EQ(text.paragraphs[1].mark.pointSize, 20);
    EXPECT_TRUE(text.paragraphs[1].runs.empty());
}

TEST(RtfReader, ControlSymbolsAndNamedCharacters)
{
    expectRows({
        {R"({\rtf1 \\ \{ \} non\~breaking soft\-hyphen non\_breaking})",
         {"L{|\\ { } non\u00A0breaking softhyphen non\u2011breaking}"}},
        {R"({\rtf1\lquote a\rquote  \ldblquote b\rdblquote\emdash\endash\bullet})",
         {"L{|\u2018a\u2019 \u201Cb\u201D\u2014\u2013\u2022}"}},
        // One blank ends a control word and is part of it; a number ends it without one.
        {R"({\rtf1\b  two\b0three\fs20-four\unknownword5 x})",
         {"L{b| two}{!b|three}{!b 10pt|-fourx}"}},
    });
}

TEST(RtfReader, UnicodeEscapesSkipTheirFallbacks)
{
    expectRows({
        {R"({\rtf1 \u8364? \u-3913? \u61623?})", {"L{|\u20AC \uF0B7 \uF0B7}"}},
        {R"({\rtf1\uc2 \u8220\'93x\uc0\u8221 y})", {"L{|\u201C\u201Dy}"}},
        // \uc belongs to its group; a group's end also ends a fallback.
        {R"({\rtf1{\uc3\u8364 abcd}\u8364 ef{\u8364}g})", {"L{|\u20ACd\u20ACf\u20ACg}"}},
        {R"({\rtf1 \u-10179?\u-8704?})", {"L{|\U0001F600}"}},
        {R"({\rtf1 \u-10179?x\u-8704?\u128512?})", {"L{|\uFFFDx\uFFFD\U0001F600}"}},
        // Characters outside ASCII are already decoded, and stay as they are.
        {"{\\rtf1\\ansicpg1251 Caf\u00E9 \u4E2D}", {"L{|Caf\u00E9 \u4E2D}"}},
    });
}

TEST(RtfReader, HexEscapesAreDecodedInTheCodePageOfTheirFont)
{
    expectRows({
        {R"({\rtf1\ansi \'80\'e9\'ff})", {"L{|\u20AC\u00E9\u00FF}"}},
        {R"({\rtf1\ansi\ansicpg1251 \'c4\'e0})", {"L{|\u0414\u0430}"}},
        {R"({\rtf1\ansi\ansicpg1251{\fonttbl{\f0\fcharset0 A;}{\f1\fcharset161 G;}{\f2\fcharset238 C;})"
         R"({\f3\fcharset204 R;}{\f4\fcharset1 D;}{\f5\fcharset0\cpg1253 P;}})"
         R"(\f0\'e1\f1\'e1\f2\'e1\'9f\f3\'e1\f4\'e1\f5\'e1})",
         {"L{f=A|\u00E1}{f=G|\u03B1}{f=C|\u00E1\u017A}{f=R|\u0431}{f=D|\u0431}{f=P|\u03B1}"}},
        // The default font's character set applies until a font is chosen.
        {R"({\rtf1\deff1{\fonttbl{\f1\fcharset204 R;}}\'e1\f1\'e1\plain\'e1})",
         {"L{|\u0431}{f=R|\u0431}{|\u0431}"}},
        // Double-byte code pages: a trail byte may be written as a plain character or \\.
        {R"({\rtf1\ansicpg932 \'82\'a0\'83e\'95\\})", {"L{|\u3042\u30C6\u8868}"}},
        // A code page without a converter is read as Western; control bytes are dropped.
        {R"({\rtf1\ansicpg9999 \'e9\'07\'09x})", {"L{|\u00E9\\tx}"}},
        {R"({\rtf1{\fonttbl{\f0\fcharset204 \'d2\'e0\'e9\'ec\'f1;}}\f0 x})",
         {"L{f=\u0422\u0430\u0439\u043C\u0441|x}"}},
    });
}

TEST(RtfReader, DestinationsWithoutVisibleTextAreSkipped)
{
    expectRows({
        {R"({\rtf1{\*\generator x;}{\stylesheet{\s0 Normal;}}{\info{\title T}{\author A}})"
         R"({\header head\par}{\footer foot\par}{\*\unknown {nested} text}a})",
         {"L{|a}"}},
        // Binary picture data may hold braces and backslashes.
        {R"({\rtf1{\pict\wmetafile8\bin5 }{\\x}b})", {"L{|b}"}},
        {R"({\rtf1{\field{\*\fldinst HYPERLINK "x"}{\fldrslt shown}}})", {"L{|shown}"}},
        {R"({\rtf1{\pntext\'b7\tab}{\*\pn\pnlvlblt{\pntxtb\'b7}}item\par})", {"L{|\u00B7\\titem}"}},
    });
}

TEST(RtfReader, DamagedTextIsReadAsFarAsItGoes)
{
    struct Damaged
    {
        const char* rtf;
        QStringList paragraphs;
        RtfProblem problem;
    };
    const std::vector<Damaged> rows = {
        {R"({\rtf1 a)", {"L{|a}"}, {8, "A group is not closed."}},
        {R"({\rtf1 a}b)",
         {"L{|a}"},
         {9, "The text after the document's closing brace is left out."}},
        {R"({\rtf1 a} )", {"L{|a}"}, {}},
        {R"(}{\rtf1 a})", {"L{|a}"}, {0, "The text does not begin with {\\rtf."}},
        {R"({plain})", {"L{|plain}"}, {0, "The text does not begin with {\\rtf."}},
        {R"({\rtf1 a\'4)", {"L{|a}"}, {8, "\\' is not followed by two hexadecimal digits."}},
        {R"({\rtf1 a\'4g})", {"L{|ag}"}, {8, "\\' is not followed by two hexadecimal digits."}},
        {R"({\rtf1 a\)", {"L{|a}"}, {8, "The text ends in a backslash."}},
        {R"({\rtf1 a{\pict\bin999 xyz})",
         {"L{|a}"},
         {14, "Binary data runs past the end of the text."}},
        {R"({\rtf1\fs99999999999999999999 a\u99999999999999?b\cf99999999999 c})",
         {"L{1638pt|a\uFFFDbc}"},
         {}},
    };
    for (const Damaged& row : rows) {
        RtfProblem problem;
        EXPECT_EQ(describe(readRtf(QString::fromUtf8(row.rtf), &problem)), row.paragraphs)
            << row.rtf;
        EXPECT_EQ(problem, row.problem) << row.rtf;
    }
}

TEST(RtfReader, DeepNestingIsSkippedBelowTheLimit)
{
    const QString deep = "{\\rtf1 a" + QString(100000, '{') + 'x' + QString(100000, '}') + "b}";
    RtfProblem problem;
    EXPECT_EQ(describe(readRtf(deep, &problem)), QStringList{"L{|ab}"});
    EXPECT_EQ(problem.message,
              "Groups are nested more than 100 deep; the deeper groups are left out.");

    const QString allowed = "{\\rtf1 " + QString(99, '{') + "\\b x" + QString(99, '}') + "}";
    EXPECT_EQ(describe(readRtf(allowed)), QStringList{"L{b|x}"});
}

TEST(RtfReader, TitleSavedByAWordProcessor)
{
    RtfProblem problem;
    EXPECT_EQ(describe(readRtf(fixture("title-editor.rtf"), &problem)),
              QStringList({
                  "C{b 16pt #1f497d f=Arial|Harbourside Traders}",
                  "C{!b 11pt f=Arial|Quarterly Sales \u2013 Caf\u00E9 & Bistro Division}",
                  "L{!b i 9pt f=Calibri|Region:\\tNorth\\nPrepared for:\\tThe Board}",
                  "L{!b !i u 9pt #c0504d f=Calibri|\u0395\u03BB\u03BB\u03AC\u03B4\u03B1}"
                  "{!b !i !u 9pt f=Calibri| \u20AC}",
              }));
    EXPECT_EQ(problem.message, QString());
}

TEST(RtfReader, TitleSavedWithAFullDocumentAround)
{
    RtfProblem problem;
    EXPECT_EQ(describe(readRtf(fixture("title-document.rtf"), &problem)),
              QStringList({
                  "C{b 16pt #0000ff f=Arial|\u041E\u0442\u0447\u0451\u0442 \u043E "
                  "\u043F\u0440\u043E\u0434\u0430\u0436\u0430\u0445}",
                  "R{i 11pt f=Calibri|Harbourside Traders}"
                  "{11pt f=Calibri|\u00A0\u2013\u00A0}"
                  "{11pt f=Times New Roman CE|\u0141\u00F3d\u017A, }"
                  "{u 11pt #0000ff f=Calibri|example.com}",
              }));
    EXPECT_EQ(problem.message, QString());
}

TEST(RichTextFormat, SetsOnlyWhatItSaysOverTheStyleFont)
{
    const FontSpec style{"Tahoma", 8.25, true, false, false, true};
    RichTextFormat format;
    EXPECT_EQ(format.font(style), style);
    format.family = "Arial";
    format.bold = false;
    format.underline = true;
    format.pointSize = 14;
    EXPECT_EQ(format.font(style), (FontSpec{"Arial", 14, false, false, true, true}));
}

TEST(RtfReader, KeptDamagedInputsStayWellFormed)
{
    const QDir folder(test::testDataPath("damaged"));
    const QStringList names = folder.entryList({"*.rtf"}, QDir::Files);
    ASSERT_FALSE(names.isEmpty());
    for (const QString& name : names) {
        SCOPED_TRACE(name.toStdString());
        const QString rtf = QString::fromLatin1(test::readBytes(folder.filePath(name)));
        RtfProblem problem;
        const RichText text = readRtf(rtf, &problem);
        expectWellFormed(rtf, text, problem);
    }
}

// Mutates the fixtures at random, the way damaged files and careless hand edits do, and reads
// each result. The seed is fixed so that a failure repeats; TABULOR_RTF_MUTATIONS runs more.
TEST(RtfReader, MutatedTitlesAreReadQuicklyAndStayWellFormed)
{
    const std::vector<QByteArray> seeds = {
        test::readBytes(test::testDataPath("title-editor.rtf")),
        test::readBytes(test::testDataPath("title-document.rtf"))};
    static const char* const pieces[] = {"{",          "}",           "\\",       "\\'",   "\\'e",
                                         "\\u-",       "\\u55296 ",   "\\bin40 ", "\\*",   "\\uc5 ",
                                         "{\\fonttbl", "{\\colortbl", "\\f",      "\\par", ";",
                                         "9999999999", "\\v"};
    const int asked = qEnvironmentVariableIntValue("TABULOR_RTF_MUTATIONS");
    const int mutations = asked > 0 ? asked : 2000;
    std::mt19937 random(20240611);
    const auto below = [&](qsizetype n) { return qsizetype(random() % std::max<qsizetype>(n, 1)); };

    for (int i = 0; i < mutations; ++i) {
        QByteArray bytes = seeds[size_t(i) % seeds.size()];
        for (int edits = 1 + int(below(8)); edits > 0; --edits) {
            const qsizetype at = below(bytes.size());
            switch (below(6)) {
            case 0:
                if (!bytes.isEmpty())
                    bytes[at] = char(bytes[at] ^ (1 << below(8)));
                break;
            case 1:
                bytes.insert(at, char(random()));
                break;
            case 2:
                bytes.insert(at, pieces[below(std::size(pieces))]);
                break;
            case 3:
                bytes.remove(at, below(64));
                break;
            case 4:
                bytes.insert(at, bytes.mid(at, below(512)).repeated(1 + int(below(4))));
                break;
            default:
                bytes.truncate(at);
                break;
            }
        }
        const QString rtf = QString::fromLatin1(bytes);
        RtfProblem problem;
        QElapsedTimer timer;
        timer.start();
        const RichText text = readRtf(rtf, &problem);
        // Reading is linear; this only catches a reader that loops.
        EXPECT_LT(timer.elapsed(), 1000);
        expectWellFormed(rtf, text, problem);
        if (testing::Test::HasFailure()) {
            const QString kept = QDir::temp().filePath(QString("rtf-mutation-%1.rtf").arg(i));
            test::writeBytes(kept, bytes);
            FAIL() << "mutation " << i << " kept as " << kept.toStdString();
        }
    }
}
