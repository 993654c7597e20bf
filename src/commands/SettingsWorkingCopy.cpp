#include "commands/SettingsWorkingCopy.h"

#include "commands/TypedLengths.h"
#include "component/ReportSession.h"
#include "production/report/Tokens.h"

namespace tabulor {

SettingsWorkingCopy::SettingsWorkingCopy(ReportSession& session) : m_session(session) {}

void SettingsWorkingCopy::load()
{
    m_session.loadStrings(true);
    const ReportDefinition& definition = m_session.definition();
    m_global = definition.global;
    m_styles = definition.styles;
    m_fields = definition.fields;
    m_loaded = true;
}

void SettingsWorkingCopy::unload()
{
    m_global = GlobalSettings();
    m_styles = StyleTable();
    m_fields.clear();
    m_loaded = false;
}

bool SettingsWorkingCopy::activate()
{
    if (m_loaded)
        return false;
    load();
    return true;
}

TextParts SettingsWorkingCopy::textParts(SettingsText text) const
{
    switch (text) {
    case SettingsText::Title:
        return {m_global.ReportTitle, QString(), QString()};
    case SettingsText::Header:
        return splitTextParts(m_global.Header);
    case SettingsText::Footer:
        return splitTextParts(m_global.Footer);
    }
    return {};
}

void SettingsWorkingCopy::setTextParts(SettingsText text, const TextParts& parts)
{
    switch (text) {
    case SettingsText::Title:
        m_global.ReportTitle = parts[0];
        return;
    case SettingsText::Header:
        m_global.Header = joinTextParts(parts);
        return;
    case SettingsText::Footer:
        m_global.Footer = joinTextParts(parts);
        return;
    }
}

TextParts SettingsWorkingCopy::sampleText(SettingsText text) const
{
    TokenContext context = m_session.tokenContext();
    context.pageCount = 1;
    TextParts sample;
    if (text == SettingsText::Title) {
        sample[std::size_t(std::clamp<int>(m_global.Align, 0, 2))] =
            ExpandTokens(m_global.ReportTitle, context);
        return sample;
    }
    const QStringList parts = headerParts(ExpandTokens(joinTextParts(textParts(text)), context), 1);
    for (qsizetype i = 0; i < std::min<qsizetype>(parts.size(), 3); ++i)
        sample[std::size_t(i)] = parts[i];
    return sample;
}

int SettingsWorkingCopy::styleOf(SettingsText text)
{
    switch (text) {
    case SettingsText::Title:
        return StyleReportTitle;
    case SettingsText::Header:
        return StyleHeaders;
    case SettingsText::Footer:
        return StyleFooters;
    }
    return StyleReportTitle;
}

int SettingsWorkingCopy::styleOfField(const QString& fieldId) const
{
    const qsizetype level = m_session.definition().groups.indexOf(fieldId);
    if (level >= 0 && level < 3)
        return StyleHeading1Top + int(level);
    return StyleDetailBody;
}

void SettingsWorkingCopy::setSpacing(int style, QStringView before, QStringView after)
{
    if (style < 0 || style >= kStyleCount)
        return;
    ReportStyle& s = this->style(style);
    s.Before = spacingTwips(before);
    s.After = spacingTwips(after);
}

int SettingsWorkingCopy::columnsEntry() const
{
    return std::clamp(m_global.Columns.toInt(), 1, 4) - 1;
}

void SettingsWorkingCopy::setMaximumRowHeight(QStringView inches)
{
    m_global.MaxHeight = rowHeightTwips(inches);
}

void SettingsWorkingCopy::takePageSetup()
{
    const GlobalSettings& page = m_session.definition().global;
    m_global.Top = page.Top;
    m_global.Bottom = page.Bottom;
    m_global.Left = page.Left;
    m_global.Right = page.Right;
    m_global.Orientation = page.Orientation;
}

void SettingsWorkingCopy::apply()
{
    m_session.changeDefinition(
        QStringLiteral("Settings"), [this](ReportDefinition& d, QStringList&) {
            d.global = m_global;
            d.styles = m_styles;
            const qsizetype count = std::min(d.fields.size(), m_fields.size());
            for (qsizetype i = 0; i < count; ++i) {
                if (d.fields[i].ID == m_fields[i].ID)
                    d.fields[i] = m_fields[i];
            }
        });
}

} // namespace tabulor
