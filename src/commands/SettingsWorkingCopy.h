#pragma once

#include "commands/TextParts.h"
#include "definition/ReportDefinition.h"

#include <QList>
#include <QString>
#include <QStringView>

namespace tabulor {

class ReportSession;

// The texts the properties dialog's Text tab edits, as the entries of its list.
enum class SettingsText
{
    Title = 0,
    Header = 1,
    Footer = 2,
};

// The grid's alignment codes that a field may store, as the entries of the Fields tab's
// alignment list: the type's default, left, centre, right.
inline constexpr std::array<qint16, 4> kFieldAlignmentCodes{9, 0, 3, 6};

// What the properties dialog edits: copies of the report's global settings, its eleven styles
// and its field table. Edits change only the copies; apply hands them to the session as one
// change, which one Undo takes back. Dropping them (Cancel) leaves the report untouched.
class SettingsWorkingCopy
{
public:
    explicit SettingsWorkingCopy(ReportSession& session);

    // Loading the dialog: the string file is read again (with the captions of every window
    // attached to the session), then the copies are taken from the report.
    void load();
    // Closing the dialog drops the copies.
    void unload();
    bool loaded() const { return m_loaded; }
    // The dialog came to the front: a dialog whose copies were dropped loads again. Returns
    // whether it did.
    bool activate();

    GlobalSettings& global() { return m_global; }
    const GlobalSettings& global() const { return m_global; }
    ReportStyle& style(int index) { return m_styles.at(std::size_t(index)); }
    const ReportStyle& style(int index) const { return m_styles.at(std::size_t(index)); }
    QList<ReportField>& fields() { return m_fields; }
    const QList<ReportField>& fields() const { return m_fields; }

    // The Text tab's boxes for a text: the title fills the first box alone.
    TextParts textParts(SettingsText text) const;
    void setTextParts(SettingsText text, const TextParts& parts);
    // A text as the first page shows it, its tokens expanded: the title at the side its
    // alignment names, a header or footer in its three parts.
    TextParts sampleText(SettingsText text) const;
    // The style a text is drawn in (the Text tab's Style button leads there).
    static int styleOf(SettingsText text);
    // The style a field's rows are drawn in: the top heading of the group it leads, or the
    // detail body.
    int styleOfField(const QString& fieldId) const;

    // The space before and after the rows of a style, as typed in points.
    void setSpacing(int style, QStringView before, QStringView after);
    // "Orphan/Widow Control" checked means widows are not acceptable.
    void setWidowControl(bool checked) { m_global.WidowOK = !checked; }
    bool widowControl() const { return !m_global.WidowOK; }
    // The columns combo's entry: entry 0 is one column.
    void setColumnsEntry(int entry) { m_global.Columns = QString::number(entry + 1); }
    int columnsEntry() const;
    void setMaximumRowHeight(QStringView inches);

    // The page setup changed the report's margins and orientation: the copy takes them over,
    // so that applying does not put the old ones back.
    void takePageSetup();

    // Hands the copies to the report as one change: the global settings and styles whole, and
    // each field whose place in the field table still holds the same field (a record source
    // changed meanwhile keeps its new fields). The report is marked changed and rebuilt even
    // when nothing differs.
    void apply();

private:
    ReportSession& m_session;
    GlobalSettings m_global;
    StyleTable m_styles;
    QList<ReportField> m_fields;
    bool m_loaded = false;
};

} // namespace tabulor
