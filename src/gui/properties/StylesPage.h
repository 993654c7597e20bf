#pragma once

#include <QWidget>

#include <array>

class QComboBox;
class QListWidget;

namespace tabulor {

class SettingsWorkingCopy;
class StyleChooser;
class StyleSample;

// The Styles tab: the eleven styles of the report, each with its font, back and rule colours
// (chosen through the chooser), the spaces before and after its rows in points and the rules
// above and below them, and a sample row in the style.
class StylesPage : public QWidget
{
    Q_OBJECT

public:
    StylesPage(SettingsWorkingCopy& copy, StyleChooser& chooser, QWidget* parent);

    void fill();
    void selectStyle(int style);
    // Chooses the first style whose name is name; none when no style has it.
    void selectStyleNamed(const QString& name);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int currentStyle() const;
    void lstStyles_Click();
    void cmbSpacing_Click();
    void cmdStyle_Click(int button);
    void showSample();

    SettingsWorkingCopy& m_copy;
    StyleChooser& m_chooser;
    QListWidget* m_list;
    QWidget* m_editors;
    std::array<QComboBox*, 2> m_spacing{};
    std::array<QComboBox*, 2> m_borders{};
    StyleSample* m_sample;
};

} // namespace tabulor
