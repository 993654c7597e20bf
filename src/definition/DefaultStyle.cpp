#include "definition/DefaultStyle.h"

#include "definition/ValueText.h"

#include <QDir>
#include <QStandardPaths>

#include <variant>

namespace tabulor {

namespace {

// One saved setting: its section, its key and the field it belongs to.
struct SettingKey
{
    QString section;
    QString key;
    std::variant<QString*, qint16*, qint32*, bool*, float*> field;
};

// The 26 keys in the order in which they are read and written: the global ones, then per
// style.
QList<SettingKey> settingKeys(ReportDefinition& definition)
{
    GlobalSettings& g = definition.global;
    const QString global = QStringLiteral("Global");
    QList<SettingKey> keys = {
        {global, QStringLiteral("ReportTitle"), &g.ReportTitle},
        {global, QStringLiteral("Align"), &g.Align},
        {global, QStringLiteral("Header"), &g.Header},
        {global, QStringLiteral("Footer"), &g.Footer},
        {global, QStringLiteral("Columns"), &g.Columns},
        {global, QStringLiteral("PageBorders"), &g.PageBorders},
        {global, QStringLiteral("Top"), &g.Top},
        {global, QStringLiteral("Bottom"), &g.Bottom},
        {global, QStringLiteral("Left"), &g.Left},
        {global, QStringLiteral("Right"), &g.Right},
        {global, QStringLiteral("SubtotalPosition"), &g.SubtotalPosition},
        {global, QStringLiteral("WordWrap"), &g.WordWrap},
        {global, QStringLiteral("WidowOK"), &g.WidowOK},
        {global, QStringLiteral("MaxHeight"), &g.MaxHeight},
        {global, QStringLiteral("Orientation"), &g.Orientation},
    };
    for (int i = 0; i < kStyleCount; ++i) {
        ReportStyle& s = definition.styles[i];
        const QString section = QStringLiteral("Style %1").arg(i);
        keys += {
            {section, QStringLiteral("FontName"), &s.FontName},
            {section, QStringLiteral("FontSize"), &s.FontSize},
            {section, QStringLiteral("FontBold"), &s.FontBold},
            {section, QStringLiteral("FontItalic"), &s.FontItalic},
            {section, QStringLiteral("Text"), &s.Text},
            {section, QStringLiteral("Top"), &s.Top},
            {section, QStringLiteral("Bottom"), &s.Bottom},
            {section, QStringLiteral("Color"), &s.Color},
            {section, QStringLiteral("Back"), &s.Back},
            {section, QStringLiteral("Before"), &s.Before},
            {section, QStringLiteral("After"), &s.After},
        };
    }
    return keys;
}

struct ToText
{
    QString operator()(const QString* v) const { return *v; }
    QString operator()(const qint16* v) const { return QString::number(*v); }
    QString operator()(const qint32* v) const { return QString::number(*v); }
    QString operator()(const bool* v) const { return booleanText(*v); }
    QString operator()(const float* v) const { return shortestSingleText(*v); }
};

// Converts text into the field; false when it does not convert.
struct FromText
{
    const QString& text;

    bool operator()(QString* v) const
    {
        *v = text;
        return true;
    }
    bool operator()(qint16* v) const { return assign(v, toInt16); }
    bool operator()(qint32* v) const { return assign(v, toInt32); }
    bool operator()(bool* v) const
    {
        const auto b = strictBoolean(text);
        if (b)
            *v = *b;
        return b.has_value();
    }
    // The font size takes the leading number of the text and never fails.
    bool operator()(float* v) const
    {
        *v = toSingle(leadingNumber(text)).value_or(0.0f);
        return true;
    }

    template <typename T> bool assign(T* v, std::optional<T> (*convert)(double)) const
    {
        const auto number = strictNumber(text);
        const auto converted = number ? convert(*number) : std::nullopt;
        if (converted)
            *v = *converted;
        return converted.has_value();
    }
};

} // namespace

QString settingsFilePath()
{
    const QString overridden = qEnvironmentVariable("TABULOR_SETTINGS");
    if (!overridden.isEmpty())
        return overridden;
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return QDir(config).filePath(QStringLiteral("tabulor/tabulor.ini"));
}

QString ReadSetting(const ProfileFile& settings, QStringView section, QStringView key,
                    const QString& defaultValue)
{
    const QString value = settings.value(section, key, ProfileFile::kSettingsBuffer);
    return value.isEmpty() ? defaultValue : value;
}

bool LoadDefaultStyle(ReportDefinition& definition, const ProfileFile& settings, QString* badKey)
{
    for (const SettingKey& k : settingKeys(definition)) {
        const QString current = std::visit(ToText{}, k.field);
        const QString text = ReadSetting(settings, k.section, k.key, current);
        if (!std::visit(FromText{text}, k.field)) {
            if (badKey)
                *badKey = QStringLiteral("[%1] %2").arg(k.section, k.key);
            return false;
        }
    }
    return true;
}

void SaveDefaultStyle(const ReportDefinition& definition, ProfileFile& settings)
{
    ReportDefinition values = definition;
    for (const SettingKey& k : settingKeys(values))
        settings.setValue(k.section, k.key, std::visit(ToText{}, k.field));
}

} // namespace tabulor
