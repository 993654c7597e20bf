#pragma once

#include "commands/LayoutEdits.h"
#include "gui/common/WindowCaptions.h"

#include <QWidget>

#include <array>
#include <functional>
#include <optional>

class QComboBox;
class QLabel;
class QListView;
class QToolButton;

namespace tabulor {

class DesignerCommands;
class FieldListModel;
class ReportSession;

// The layout window (frmStruct): a tool window beside the designer in which the user picks the
// record source (cmbRecordSet) and lays the report out by moving fields between the available
// fields (lstField0), the groups (lstField1) and the details (lstField2), by drag and drop or
// from the keyboard: Alt+G sends the selected field to the groups, Alt+D to the details,
// Delete back to the fields, and Ctrl+Up and Ctrl+Down move it within its list. It follows the
// session; closing it only hides it, so that it keeps its lists for the next time it is shown.
class LayoutWindow : public QWidget
{
    Q_OBJECT

public:
    LayoutWindow(ReportSession& session, DesignerCommands& commands, QWidget* parent = nullptr);
    ~LayoutWindow() override;

    // The window's controls as a string file names them.
    WindowCaptions& captions() { return m_captions; }
    QListView* listView(LayoutList list) const { return m_views.at(size_t(list)); }

    // Shows the window and brings it forward; the first time beside the given window, on
    // the screen.
    void showBeside(const QWidget& window);

    // Kept above every other window (the pin), or an ordinary window.
    bool alwaysOnTop() const;
    void setAlwaysOnTop(bool onTop);

Q_SIGNALS:
    // A field was double-clicked: its properties are wanted.
    void fieldPropertiesRequested(const QString& field);

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showRecordSources();
    QListView* addList(LayoutList list, const QString& name, QLabel* label);
    void addShortcut(const QKeySequence& keys, const QString& name, std::function<void()> move);
    // The selected field's row in the list that has (or last had) the focus; -1 for none.
    int selectedRow() const;
    void select(LayoutList list, int row);
    // The selected field to the end of another list, or one place up or down in its own.
    void send(LayoutList to);
    void shift(int step);
    void placed(LayoutList list, const std::optional<int>& row);

    DesignerCommands& m_commands;
    LayoutEdits m_edits;
    WindowCaptions m_captions;
    QComboBox* m_recordSources = nullptr;
    QToolButton* m_pin = nullptr;
    std::array<FieldListModel*, 3> m_models{};
    std::array<QListView*, 3> m_views{};
    LayoutList m_active = LayoutList::Fields;
    bool m_placed = false;
};

} // namespace tabulor
