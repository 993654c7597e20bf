#pragma once

#include <QWidget>

class QComboBox;
class QLineEdit;
class QListWidget;

namespace tabulor {

class OutlineGrid;
class SettingsWorkingCopy;
class StyleSample;
struct ReportField;

// The Fields tab: one field at a time, its column title, display format (typed or chosen),
// alignment, sorting and the total its subtotal rows show, with its title and first value as
// the report shows them.
class FieldsPage : public QWidget
{
    Q_OBJECT

public:
    FieldsPage(SettingsWorkingCopy& copy, const OutlineGrid& grid, QWidget* parent);

    // Fills the list of fields from the working copy; no field is chosen.
    void fill();
    // Chooses the first field whose name is name; none when no field has it.
    void selectField(const QString& name);

Q_SIGNALS:
    void styleRequested(int style);

private:
    // The field chosen in the list, or null.
    ReportField* currentField();
    void lstFields_Click();
    void showSample();

    SettingsWorkingCopy& m_copy;
    const OutlineGrid& m_grid;
    QListWidget* m_list;
    QWidget* m_editors;
    QLineEdit* m_title;
    QComboBox* m_format;
    QComboBox* m_align;
    QComboBox* m_sort;
    QComboBox* m_total;
    StyleSample* m_titleSample;
    StyleSample* m_valueSample;
};

} // namespace tabulor
