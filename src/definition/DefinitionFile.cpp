#include "definition/DefinitionFile.h"

#include "definition/AtomicSave.h"
#include "definition/ValueText.h"

namespace tabulor {

namespace {

const QString kGeneral = QStringLiteral("General");
const QString kRecordSource = QStringLiteral("RecordSource");
const QString kGlobalInfo = QStringLiteral("GlobalInfo");
const QString kFields = QStringLiteral("Fields");
const QString kHeaders = QStringLiteral("Headers");
const QString kDetail = QStringLiteral("Detail");

QString styleSection(int index)
{
    return QStringLiteral("Style %1").arg(index);
}
QString fieldSection(int index)
{
    return QStringLiteral("Field %1").arg(index);
}
QString listKey(int index)
{
    return QStringLiteral("Field%1").arg(index);
}

// Numbers stand with a blank in front (a minus sign for negative ones) and one behind.
QString numberText(const QString& digits)
{
    return (digits.startsWith(u'-') ? QString() : QStringLiteral(" ")) + digits + u' ';
}

class Writer
{
public:
    void section(const QString& name)
    {
        if (!m_text.isEmpty())
            m_text += "\r\n";
        line(u'[' + name + u']');
    }
    void text(const QString& key, const QString& value)
    {
        line(key + QStringLiteral(" = ") + value);
    }
    void integer(const QString& key, qint64 value)
    {
        text(key, numberText(QString::number(value)));
    }
    void single(const QString& key, float value)
    {
        text(key, numberText(shortestSingleText(value)));
    }
    void boolean(const QString& key, bool value) { text(key, booleanText(value)); }
    void list(const QStringList& entries)
    {
        integer(QStringLiteral("Count"), entries.size());
        for (int i = 0; i < entries.size(); ++i)
            text(listKey(i), entries.at(i));
    }
    QByteArray finish()
    {
        m_text += "\r\n";
        return m_text;
    }

private:
    void line(const QString& text)
    {
        m_text += text.toUtf8();
        m_text += "\r\n";
    }
    QByteArray m_text;
};

// Reads keys of one section and remembers the first one that does not convert.
class Reader
{
public:
    Reader(const ProfileFile& file, DefinitionReadError* error) : m_file(file), m_error(error) {}

    void setSection(const QString& section) { m_section = section; }
    bool failed() const { return m_failed; }

    QString text(const QString& key) const { return ReadFileValue(m_file, m_section, key); }

    template <typename T> T lenient(const QString& key, std::optional<T> (*convert)(double))
    {
        const QString value = text(key);
        return checked(key, value, convert(leadingNumber(value)));
    }
    template <typename T> T strict(const QString& key, std::optional<T> (*convert)(double))
    {
        const QString value = text(key);
        const auto number = strictNumber(value);
        return checked(key, value, number ? convert(*number) : std::nullopt);
    }
    bool strictBool(const QString& key)
    {
        const QString value = text(key);
        return checked(key, value, strictBoolean(value));
    }

private:
    template <typename T> T checked(const QString& key, const QString& value, std::optional<T> v)
    {
        if (v)
            return *v;
        if (!m_failed)
            *m_error = DefinitionReadError{m_section, key, value};
        m_failed = true;
        return T{};
    }

    const ProfileFile& m_file;
    DefinitionReadError* m_error;
    QString m_section;
    bool m_failed = false;
};

std::optional<float> singleFromNumber(double value)
{
    return toSingle(value);
}

QStringList readList(Reader& reader, const QString& section)
{
    reader.setSection(section);
    const qint16 count = reader.strict<qint16>(QStringLiteral("Count"), toInt16);
    QStringList entries;
    for (int i = 0; i < count && !reader.failed(); ++i) {
        // Entries travel as one tab-separated text, so a tab inside an entry splits it and
        // missing or empty entries vanish.
        const QStringList pieces = reader.text(listKey(i)).split(u'\t', Qt::SkipEmptyParts);
        entries += pieces;
    }
    return entries;
}

} // namespace

QString definitionFileVersion()
{
    return QStringLiteral("Tabulor Report Definition (%1.%2.%3)")
        .arg(TABULOR_VERSION_MAJOR)
        .arg(TABULOR_VERSION_MINOR)
        .arg(TABULOR_VERSION_PATCH);
}

QByteArray definitionFileBytes(const ReportDefinition& definition)
{
    Writer w;
    w.section(kGeneral);
    w.text(QStringLiteral("Version"), definitionFileVersion());

    w.section(kRecordSource);
    w.text(QStringLiteral("DataBaseName"), definition.DataBaseName);
    w.text(QStringLiteral("RecordSource"), definition.RecordSource);

    const GlobalSettings& g = definition.global;
    w.section(kGlobalInfo);
    w.text(QStringLiteral("ReportTitle"), g.ReportTitle);
    w.integer(QStringLiteral("Align"), g.Align);
    w.text(QStringLiteral("Header"), g.Header);
    w.text(QStringLiteral("Footer"), g.Footer);
    w.text(QStringLiteral("Columns"), g.Columns);
    w.integer(QStringLiteral("PageBorders"), g.PageBorders);
    w.integer(QStringLiteral("Top"), g.Top);
    w.integer(QStringLiteral("Bottom"), g.Bottom);
    w.integer(QStringLiteral("Left"), g.Left);
    w.integer(QStringLiteral("Right"), g.Right);
    w.integer(QStringLiteral("SubtotalPosition"), g.SubtotalPosition);
    w.boolean(QStringLiteral("WordWrap"), g.WordWrap);
    w.boolean(QStringLiteral("WidowOK"), g.WidowOK);
    w.integer(QStringLiteral("MaxHeight"), g.MaxHeight);
    w.integer(QStringLiteral("Orientation"), g.Orientation);

    for (int i = 0; i < kStyleCount; ++i) {
        const ReportStyle& s = definition.styles[i];
        w.section(styleSection(i));
        w.text(QStringLiteral("FontName"), s.FontName);
        w.single(QStringLiteral("FontSize"), s.FontSize);
        w.boolean(QStringLiteral("FontBold"), s.FontBold);
        w.boolean(QStringLiteral("FontItalic"), s.FontItalic);
        w.boolean(QStringLiteral("FontUnderline"), s.FontUnderline);
        w.boolean(QStringLiteral("FontStrikeThru"), s.FontStrikeThru);
        w.integer(QStringLiteral("Before"), s.Before);
        w.integer(QStringLiteral("After"), s.After);
        w.integer(QStringLiteral("Top"), s.Top);
        w.integer(QStringLiteral("Bottom"), s.Bottom);
        w.integer(QStringLiteral("Color"), s.Color);
        w.integer(QStringLiteral("Text"), s.Text);
        w.integer(QStringLiteral("Back"), s.Back);
    }

    w.section(kFields);
    w.integer(QStringLiteral("Count"), definition.fields.size());
    for (int i = 0; i < definition.fields.size(); ++i) {
        const ReportField& f = definition.fields.at(i);
        w.section(fieldSection(i));
        w.text(QStringLiteral("ID"), f.ID);
        w.text(QStringLiteral("Title"), f.Title);
        w.integer(QStringLiteral("Sort"), f.Sort);
        w.integer(QStringLiteral("Align"), f.Align);
        w.text(QStringLiteral("Format"), f.Format);
        w.integer(QStringLiteral("Aggregate"), f.Aggregate);
        w.single(QStringLiteral("Width"), f.Width);
    }

    w.section(kHeaders);
    w.list(definition.groups);
    w.section(kDetail);
    w.list(definition.details);
    return w.finish();
}

bool WriteReportFile(const ReportDefinition& definition, const QString& path, QString* error)
{
    return saveAtomically(path, definitionFileBytes(definition), error);
}

QString ReadFileValue(const ProfileFile& file, QStringView section, QStringView key,
                      const QString& defaultValue)
{
    const QString value = file.value(section, key, ProfileFile::kDefinitionBuffer);
    return value.isEmpty() ? defaultValue : value;
}

std::optional<StagedDefinition>
readStagedDefinition(const ProfileFile& file, const StyleTable& current, DefinitionReadError* error)
{
    StagedDefinition staged;
    Reader r(file, error);

    GlobalSettings& g = staged.global;
    r.setSection(kGlobalInfo);
    g.ReportTitle = r.text(QStringLiteral("ReportTitle"));
    g.Align = r.lenient<qint16>(QStringLiteral("Align"), toInt16);
    g.Header = r.text(QStringLiteral("Header"));
    g.Footer = r.text(QStringLiteral("Footer"));
    const double columns = leadingNumber(r.text(QStringLiteral("Columns")));
    g.Columns = columns < 1 ? QStringLiteral("1") : QString::number(columns, 'g', 15);
    g.PageBorders = r.lenient<qint16>(QStringLiteral("PageBorders"), toInt16);
    g.Top = r.lenient<qint32>(QStringLiteral("Top"), toInt32);
    g.Bottom = r.lenient<qint32>(QStringLiteral("Bottom"), toInt32);
    g.Left = r.lenient<qint32>(QStringLiteral("Left"), toInt32);
    g.Right = r.lenient<qint32>(QStringLiteral("Right"), toInt32);
    g.SubtotalPosition = r.strict<qint32>(QStringLiteral("SubtotalPosition"), toInt32);
    g.WordWrap = r.strictBool(QStringLiteral("WordWrap"));
    g.WidowOK = r.strictBool(QStringLiteral("WidowOK"));
    g.MaxHeight = r.lenient<qint32>(QStringLiteral("MaxHeight"), toInt32);
    g.Orientation = r.strict<qint16>(QStringLiteral("Orientation"), toInt16);
    if (r.failed())
        return std::nullopt;

    staged.styles = current;
    for (int i = 0; i < kStyleCount; ++i) {
        ReportStyle& s = staged.styles[i];
        r.setSection(styleSection(i));
        s.FontName = r.text(QStringLiteral("FontName"));
        s.FontSize = r.lenient<float>(QStringLiteral("FontSize"), singleFromNumber);
        s.FontBold = r.strictBool(QStringLiteral("FontBold"));
        s.FontItalic = r.strictBool(QStringLiteral("FontItalic"));
        s.FontUnderline = r.strictBool(QStringLiteral("FontUnderline"));
        s.FontStrikeThru = r.strictBool(QStringLiteral("FontStrikeThru"));
        s.Before = r.lenient<qint32>(QStringLiteral("Before"), toInt32);
        s.After = r.lenient<qint32>(QStringLiteral("After"), toInt32);
        s.Top = r.strict<qint16>(QStringLiteral("Top"), toInt16);
        s.Bottom = r.strict<qint16>(QStringLiteral("Bottom"), toInt16);
        s.Color = r.strict<qint32>(QStringLiteral("Color"), toInt32);
        s.Text = r.strict<qint32>(QStringLiteral("Text"), toInt32);
        s.Back = r.strict<qint32>(QStringLiteral("Back"), toInt32);
        if (r.failed())
            return std::nullopt;
    }

    r.setSection(kFields);
    const qint16 count = r.strict<qint16>(QStringLiteral("Count"), toInt16);
    if (!r.failed() && count < 0)
        *error = DefinitionReadError{kFields, QStringLiteral("Count"), QString::number(count)};
    if (r.failed() || count < 0)
        return std::nullopt;
    staged.fields.reserve(count);
    for (int i = 0; i < count; ++i) {
        ReportField f;
        r.setSection(fieldSection(i));
        f.ID = r.text(QStringLiteral("ID"));
        f.Title = r.text(QStringLiteral("Title"));
        f.Sort = r.strict<qint16>(QStringLiteral("Sort"), toInt16);
        f.Align = r.strict<qint16>(QStringLiteral("Align"), toInt16);
        f.Format = r.text(QStringLiteral("Format"));
        f.Aggregate = r.strict<qint16>(QStringLiteral("Aggregate"), toInt16);
        f.Width = r.strict<float>(QStringLiteral("Width"), singleFromNumber);
        if (r.failed())
            return std::nullopt;
        staged.fields.append(f);
    }

    staged.groups = readList(r, kHeaders);
    staged.details = readList(r, kDetail);
    if (r.failed())
        return std::nullopt;
    return staged;
}

} // namespace tabulor
