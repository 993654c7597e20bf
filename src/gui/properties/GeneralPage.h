#pragma once

#include <QWidget>

#include <array>
#include <functional>

class QCheckBox;
class QComboBox;
class QLabel;
class QRadioButton;

namespace tabulor {

class SettingsWorkingCopy;

// The General tab: where subtotals stand (with a sample), page borders, columns, the margins
// and printer (through the page setup the caller runs), orphan and widow control, word wrap and
// the maximum height of a row.
class GeneralPage : public QWidget
{
    Q_OBJECT

public:
    // pageSetup runs the page setup (button 0, margins) or the printer setup (button 1) on
    // the report itself.
    GeneralPage(SettingsWorkingCopy& copy, std::function<void(int)> pageSetup, QWidget* parent);

    void fill();

private:
    void showPosition();

    SettingsWorkingCopy& m_copy;
    std::function<void(int)> m_pageSetup;
    std::array<QRadioButton*, 3> m_positions{};
    QLabel* m_above;
    QLabel* m_below;
    QComboBox* m_borders;
    QComboBox* m_columns;
    QCheckBox* m_widow;
    QCheckBox* m_wordWrap;
    QComboBox* m_height;
};

} // namespace tabulor
