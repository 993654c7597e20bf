#include "production/formats/FormatProgram.h"

#include "production/formats/FormatChars.h"
#include "production/formats/FormatDateTimeCompiler.h"
#include "production/formats/FormatNumberCompiler.h"
#include "production/formats/FormatTextCompiler.h"

#include <algorithm>

namespace tabulor {

namespace {

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
        compileNumberSection(chars, section);
    } else if (charPlaceholder) {
        section.kind = SectionKind::Text;
        compileTextSection(chars, section);
    } else if (compileDateTimeSection(chars, section)) {
        section.kind = SectionKind::DateTime;
    } else {
        section = FormatSection();
        if (textCode) {
            section.kind = SectionKind::Text;
            compileTextSection(chars, section);
        } else {
            section.kind = SectionKind::Literal;
            for (const FormatChar& fc : chars)
                section.addLiteral(fc.c);
        }
    }
    return section;
}

struct NamedFormat
{
    QLatin1StringView name;
    QLatin1StringView custom;                             // the same as a custom format
    FormatPattern FormatLocale::*localePattern = nullptr; // defined by the locale
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

void FormatSection::addOp(FormatOp op, qint32 a, qint32 b)
{
    tokens.push_back({op, a, b});
}

void FormatSection::addLiteral(QChar c)
{
    const qint32 at = static_cast<qint32>(literals.size());
    literals += c;
    if (!tokens.empty()) {
        FormatToken& last = tokens.back();
        if (last.op == FormatOp::Literal && last.a + last.b == at) {
            ++last.b;
            return;
        }
    }
    addOp(FormatOp::Literal, at, 1);
}

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
        for (const FormatChars& chars : splitFormatSections(custom))
            program->sections.push_back(compileSection(chars));
    }
    return program;
}

} // namespace tabulor