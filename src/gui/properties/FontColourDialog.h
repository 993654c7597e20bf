#pragma once

#include <QColor>
#include <QDialog>
#include <QFont>

class QFontDialog;
class QPushButton;

namespace tabulor {

// Qt's font dialog with a text colour beside it: a style's font and the colour of its text
// are chosen together, the colour through Qt's colour dialog.
class FontColourDialog : public QDialog
{
    Q_OBJECT

public:
    FontColourDialog(const QFont& font, const QColor& colour, QWidget* parent);

    QFont font() const;
    QColor colour() const { return m_colour; }

private:
    void chooseColour();
    void showColour();

    QFontDialog* m_fonts;
    QPushButton* m_colourButton;
    QColor m_colour;
};

} // namespace tabulor
