#include "gui/properties/FontColourDialog.h"

#include <QColorDialog>
#include <QDialogButtonBox>
#include <QFontDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QVBoxLayout>

namespace tabulor {

FontColourDialog::FontColourDialog(const QFont& font, const QColor& colour, QWidget* parent)
    : QDialog(parent), m_fonts(new QFontDialog(font, this)), m_colour(colour)
{
    setObjectName(QStringLiteral("dlgFont"));
    setWindowTitle(m_fonts->windowTitle());
    // The font dialog lives inside this one, without buttons of its own; a key that would
    // close it (Escape) closes this dialog instead.
    m_fonts->setObjectName(QStringLiteral("fontChooser"));
    m_fonts->setWindowFlags(Qt::Widget);
    m_fonts->setOptions(QFontDialog::NoButtons | QFontDialog::DontUseNativeDialog);
    m_fonts->setSizeGripEnabled(false);
    connect(m_fonts, &QDialog::finished, this, [this](int result) {
        m_fonts->setVisible(true);
        done(result);
    });

    // The colour row lines up with the font dialog's own controls.
    auto* colourRow = new QHBoxLayout;
    if (const QLayout* fontsLayout = m_fonts->layout()) {
        const QMargins margins = fontsLayout->contentsMargins();
        colourRow->setContentsMargins(margins.left(), 0, margins.right(), 0);
    }
    auto* label = new QLabel(QStringLiteral("&Color:"), this);
    m_colourButton = new QPushButton(this);
    m_colourButton->setObjectName(QStringLiteral("cmdTextColor"));
    label->setBuddy(m_colourButton);
    connect(m_colourButton, &QPushButton::clicked, this, &FontColourDialog::chooseColour);
    colourRow->addWidget(label);
    colourRow->addWidget(m_colourButton);
    colourRow->addStretch(1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->setObjectName(QStringLiteral("buttons"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_fonts);
    layout->addLayout(colourRow);
    layout->addWidget(buttons);
    showColour();
}

QFont FontColourDialog::font() const
{
    return m_fonts->currentFont();
}

void FontColourDialog::chooseColour()
{
    const QColor chosen = QColorDialog::getColor(m_colour, this);
    if (!chosen.isValid())
        return;
    m_colour = chosen;
    showColour();
}

void FontColourDialog::showColour()
{
    QPixmap swatch(32, 14);
    swatch.fill(m_colour);
    m_colourButton->setIcon(swatch);
    m_colourButton->setIconSize(swatch.size());
    m_colourButton->setText(m_colour.name());
}

} // namespace tabulor
