#include "gui/properties/GeneralPage.h"

#include "commands/SettingsWorkingCopy.h"
#include "commands/TypedLengths.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace tabulor {

namespace {

const QString kDefaultHeight = QStringLiteral("(default)");

QString indexed(const char* name, int index)
{
    return QString::fromLatin1(name) + QString::number(index);
}

QLabel* sampleLabel(QWidget* parent, const QString& name, const QString& text, bool bold)
{
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    QFont font = label->font();
    font.setBold(bold);
    label->setFont(font);
    return label;
}

} // namespace

GeneralPage::GeneralPage(SettingsWorkingCopy& copy, std::function<void(int)> pageSetup,
                         QWidget* parent)
    : QWidget(parent), m_copy(copy), m_pageSetup(std::move(pageSetup))
{
    setObjectName(QStringLiteral("picPage3"));
    auto* layout = new QGridLayout(this);

    auto* position = new QGroupBox(this);
    position->setObjectName(QStringLiteral("fraPosition"));
    auto* positionLayout = new QGridLayout(position);
    for (int i = 0; i < 3; ++i) {
        m_positions[i] = new QRadioButton(position);
        m_positions[i]->setObjectName(indexed("opPosition", i));
        positionLayout->addWidget(m_positions[i], i, 0);
        connect(m_positions[i], &QRadioButton::toggled, this, [this, i](bool on) {
            if (!on)
                return;
            m_copy.global().SubtotalPosition = i;
            showPosition();
        });
    }
    // The sample: a group's subtotal above its rows, below them, or both.
    auto* sample = new QFrame(position);
    sample->setObjectName(QStringLiteral("picPosition"));
    sample->setFrameShape(QFrame::StyledPanel);
    sample->setBackgroundRole(QPalette::Base);
    sample->setAutoFillBackground(true);
    auto* sampleLayout = new QVBoxLayout(sample);
    m_above = sampleLabel(sample, QStringLiteral("lblPosition"), QStringLiteral("Total North: 123"),
                          true);
    auto* body = sampleLabel(sample, QStringLiteral("lblBody"),
                             QStringLiteral("    North  Smith  100\n    North  Jones  23"), false);
    m_below = sampleLabel(sample, QStringLiteral("lblPositionBelow"),
                          QStringLiteral("Total North: 123"), true);
    sampleLayout->addWidget(m_above);
    sampleLayout->addWidget(body);
    sampleLayout->addWidget(m_below);
    sampleLayout->addStretch(1);
    positionLayout->addWidget(sample, 0, 1, 4, 1);
    positionLayout->setColumnStretch(1, 1);
    layout->addWidget(position, 0, 0);

    auto* page = new QGroupBox(this);
    page->setObjectName(QStringLiteral("fraPagePrinter"));
    auto* pageLayout = new QFormLayout(page);
    m_borders = new QComboBox(page);
    m_borders->setObjectName(QStringLiteral("cmbBorders"));
    for (int i = 0; i < 8; ++i)
        m_borders->addItem(QString());
    m_columns = new QComboBox(page);
    m_columns->setObjectName(QStringLiteral("cmbColumns"));
    m_columns->addItems(
        {QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("4")});
    for (const auto& [labelName, field] :
         {std::pair{"lblBorders", m_borders}, std::pair{"lblColumns", m_columns}}) {
        auto* label = new QLabel(page);
        label->setObjectName(QString::fromLatin1(labelName));
        label->setBuddy(field);
        pageLayout->addRow(label, field);
    }
    auto* setupButtons = new QHBoxLayout;
    for (int i = 0; i < 2; ++i) {
        auto* button = new QPushButton(page);
        button->setObjectName(indexed("cmdSetup", i));
        connect(button, &QPushButton::clicked, this, [this, i] {
            m_pageSetup(i);
            m_copy.takePageSetup();
        });
        setupButtons->addWidget(button);
    }
    pageLayout->addRow(setupButtons);
    layout->addWidget(page, 0, 1);

    auto* breaks = new QGroupBox(this);
    breaks->setObjectName(QStringLiteral("fraBreaks"));
    auto* breaksLayout = new QFormLayout(breaks);
    m_widow = new QCheckBox(breaks);
    m_widow->setObjectName(QStringLiteral("chkWidow"));
    m_wordWrap = new QCheckBox(breaks);
    m_wordWrap->setObjectName(QStringLiteral("chkWordWrap"));
    m_height = new QComboBox(breaks);
    m_height->setObjectName(QStringLiteral("cmbHeight"));
    m_height->setEditable(true);
    m_height->setInsertPolicy(QComboBox::NoInsert);
    m_height->addItems(
        {kDefaultHeight, QStringLiteral("0.5\""), QStringLiteral("1\""), QStringLiteral("1.5\"")});
    auto* heightLabel = new QLabel(breaks);
    heightLabel->setObjectName(QStringLiteral("lblHeight"));
    heightLabel->setBuddy(m_height);
    breaksLayout->addRow(m_widow);
    breaksLayout->addRow(m_wordWrap);
    breaksLayout->addRow(heightLabel, m_height);
    layout->addWidget(breaks, 1, 0, 1, 2);
    layout->setRowStretch(2, 1);

    connect(m_borders, &QComboBox::currentIndexChanged, this, [this](int entry) {
        if (entry >= 0)
            m_copy.global().PageBorders = qint16(entry);
    });
    connect(m_columns, &QComboBox::currentIndexChanged, this, [this](int entry) {
        if (entry >= 0)
            m_copy.setColumnsEntry(entry);
    });
    connect(m_widow, &QCheckBox::toggled, this,
            [this](bool checked) { m_copy.setWidowControl(checked); });
    connect(m_wordWrap, &QCheckBox::toggled, this,
            [this](bool checked) { m_copy.global().WordWrap = checked; });
    connect(m_height, &QComboBox::editTextChanged, this,
            [this](const QString& text) { m_copy.setMaximumRowHeight(text); });
}

void GeneralPage::fill()
{
    const GlobalSettings& g = m_copy.global();
    const QSignalBlocker borders(m_borders);
    const QSignalBlocker columns(m_columns);
    const QSignalBlocker widow(m_widow);
    const QSignalBlocker wordWrap(m_wordWrap);
    const QSignalBlocker height(m_height);
    const int position = std::clamp(g.SubtotalPosition, 0, 2);
    for (int i = 0; i < 3; ++i) {
        const QSignalBlocker blocker(m_positions[i]);
        m_positions[i]->setChecked(i == position);
    }
    m_borders->setCurrentIndex(g.PageBorders);
    m_columns->setCurrentIndex(m_copy.columnsEntry());
    m_widow->setChecked(m_copy.widowControl());
    m_wordWrap->setChecked(g.WordWrap);
    m_height->setEditText(rowHeightText(g.MaxHeight, kDefaultHeight));
    showPosition();
}

void GeneralPage::showPosition()
{
    const int position = m_copy.global().SubtotalPosition;
    m_above->setVisible(position != 1);
    m_below->setVisible(position != 0);
    m_above->setText(position == 2 ? QStringLiteral("North") : QStringLiteral("Total North: 123"));
}

} // namespace tabulor
