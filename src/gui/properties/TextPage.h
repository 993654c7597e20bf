#pragma once

#include <QWidget>

#include <array>

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QMenu;
class QPushButton;

namespace tabulor {

class SettingsWorkingCopy;
class StyleSample;

// The Text tab: the report title, page header and page footer, each chosen in a list and
// edited in one box (the title) or three (left, centre and right part); the title's
// alignment; a menu of special texts inserted into the box that was left last; and a sample
// of the chosen text with its tokens expanded.
class TextPage : public QWidget
{
    Q_OBJECT

public:
    TextPage(SettingsWorkingCopy& copy, QWidget* parent);

    // Fills the controls from the working copy.
    void fill();
    // Inserts the text of a special-token menu entry into the box that last lost the focus
    // (the first box before any did), over its selection, and gives that box the focus.
    void mSpecial_Click(int entry);

Q_SIGNALS:
    void styleRequested(int style);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void lstText_Click();
    void txt_Change();
    void showSample();
    int currentText() const;

    SettingsWorkingCopy& m_copy;
    QListWidget* m_list;
    QLabel* m_title;
    std::array<QLabel*, 3> m_labels{};
    std::array<QLineEdit*, 3> m_boxes{};
    QLabel* m_alignLabel;
    QComboBox* m_align;
    QPushButton* m_special;
    QMenu* m_specialMenu;
    StyleSample* m_sample;
    int m_currentTextBox = 0;
    // Where the selection of each box stood when it lost the focus: a click on a button
    // clears it, and the menu's text replaces it.
    std::array<std::pair<int, int>, 3> m_selections{};
};

} // namespace tabulor
