#include "gui/properties/StylesPage.h"

#include "commands/SettingsWorkingCopy.h"
#include "commands/StyleChooser.h"
#include "commands/TypedLengths.h"
#include "gui/properties/StyleSample.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>

namespace tabulor {

namespace {

QString indexed(const char* name, int index)
{
    return QString::fromLatin1(name) + QString::number(index);
}

// A frame with two labelled combo boxes, one a row.
QGroupBox* pairFrame(QWidget* parent, const QString& name, const char* labelName,
                     const std::array<QComboBox*, 2>& combos)
{
    auto* frame = new QGroupBox(parent);
    frame->setObjectName(name);
    auto* layout = new QGridLayout(frame);
    for (int i = 0; i < 2; ++i) {
        auto* label = new QLabel(frame);
        label->setObjectName(indexed(labelName, i));
        label->setBuddy(combos[std::size_t(i)]);
        combos[std::size_t(i)]->setParent(frame);
        layout->addWidget(label, i, 0);
        layout->addWidget(combos[std::size_t(i)], i, 1);
    }
    return frame;
}

} // namespace

StylesPage::StylesPage(SettingsWorkingCopy& copy, StyleChooser& chooser, QWidget* parent)
    : QWidget(parent), m_copy(copy), m_chooser(chooser)
{
    setObjectName(QStringLiteral("picPage2"));
    auto* layout = new QHBoxLayout(this);
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("lstStyles"));
    for (int i = 0; i < kStyleCount; ++i)
        m_list->addItem(QString());
    m_list->setMaximumWidth(180);
    layout->addWidget(m_list);

    m_editors = new QWidget(this);
    auto* editors = new QGridLayout(m_editors);
    auto* buttons = new QHBoxLayout;
    for (int i = 0; i < 3; ++i) {
        auto* button = new QPushButton(m_editors);
        button->setObjectName(indexed("cmdStyle", i));
        connect(button, &QPushButton::clicked, this, [this, i] { cmdStyle_Click(i); });
        buttons->addWidget(button);
    }
    editors->addLayout(buttons, 0, 0, 1, 2);
    for (int i = 0; i < 2; ++i) {
        m_spacing[i] = new QComboBox;
        m_spacing[i]->setObjectName(indexed("cmbSpacing", i));
        m_spacing[i]->setEditable(true);
        m_spacing[i]->setInsertPolicy(QComboBox::NoInsert);
        m_spacing[i]->addItems({QStringLiteral("0 pt"), QStringLiteral("3 pt"),
                                QStringLiteral("6 pt"), QStringLiteral("12 pt")});
        m_spacing[i]->lineEdit()->installEventFilter(this);
        connect(m_spacing[i], &QComboBox::activated, this, &StylesPage::cmbSpacing_Click);
        m_borders[i] = new QComboBox;
        m_borders[i]->setObjectName(indexed("cmbBorder", i));
        for (int entry = 0; entry < 4; ++entry)
            m_borders[i]->addItem(QString());
        connect(m_borders[i], &QComboBox::currentIndexChanged, this, [this, i](int entry) {
            const int style = currentStyle();
            if (style < 0 || entry < 0)
                return;
            (i == 0 ? m_copy.style(style).Top : m_copy.style(style).Bottom) = qint16(entry);
            showSample();
        });
    }
    editors->addWidget(pairFrame(m_editors, QStringLiteral("fraSpacing"), "lblSpacing", m_spacing),
                       1, 0);
    editors->addWidget(pairFrame(m_editors, QStringLiteral("fraBorders"), "lblBorder", m_borders),
                       1, 1);
    auto* preview = new QLabel(m_editors);
    preview->setObjectName(QStringLiteral("lblPreview"));
    editors->addWidget(preview, 2, 0, 1, 2);
    m_sample = new StyleSample(m_editors);
    m_sample->setObjectName(QStringLiteral("fa"));
    editors->addWidget(m_sample, 3, 0, 1, 2);
    editors->setRowStretch(4, 1);
    layout->addWidget(m_editors, 1);

    connect(m_list, &QListWidget::currentRowChanged, this, &StylesPage::lstStyles_Click);
}

int StylesPage::currentStyle() const
{
    const int row = m_list->currentRow();
    return row >= 0 && row < kStyleCount ? row : -1;
}

void StylesPage::fill()
{
    const QSignalBlocker blocker(m_list);
    if (currentStyle() < 0)
        m_list->setCurrentRow(0);
    lstStyles_Click();
}

void StylesPage::selectStyle(int style)
{
    m_list->setCurrentRow(style);
}

void StylesPage::selectStyleNamed(const QString& name)
{
    for (int style = 0; style < kStyleCount; ++style) {
        if (m_copy.style(style).name == name) {
            selectStyle(style);
            return;
        }
    }
}

void StylesPage::lstStyles_Click()
{
    const int style = currentStyle();
    m_editors->setEnabled(style >= 0);
    if (style < 0)
        return;
    const ReportStyle& s = m_copy.style(style);
    m_spacing[0]->setEditText(spacingText(s.Before));
    m_spacing[1]->setEditText(spacingText(s.After));
    const QSignalBlocker top(m_borders[0]);
    const QSignalBlocker bottom(m_borders[1]);
    m_borders[0]->setCurrentIndex(s.Top);
    m_borders[1]->setCurrentIndex(s.Bottom);
    showSample();
}

void StylesPage::cmbSpacing_Click()
{
    const int style = currentStyle();
    if (style < 0)
        return;
    m_copy.setSpacing(style, m_spacing[0]->currentText(), m_spacing[1]->currentText());
    showSample();
}

bool StylesPage::eventFilter(QObject* watched, QEvent* event)
{
    const bool spacingBox =
        watched == m_spacing[0]->lineEdit() || watched == m_spacing[1]->lineEdit();
    if (spacingBox && event->type() == QEvent::FocusOut)
        cmbSpacing_Click();
    if (spacingBox && event->type() == QEvent::KeyPress) {
        // Enter and a blank take the typed value at once; the blank is typed as well.
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space)
            cmbSpacing_Click();
    }
    return QWidget::eventFilter(watched, event);
}

void StylesPage::cmdStyle_Click(int button)
{
    const int style = currentStyle();
    if (style < 0)
        return;
    ReportStyle& s = m_copy.style(style);
    if (button == 0) {
        if (const auto chosen = m_chooser.chooseFont(s))
            s = *chosen;
    } else if (const auto colour = m_chooser.chooseColour(button == 1 ? s.Back : s.Color)) {
        (button == 1 ? s.Back : s.Color) = *colour;
    }
    showSample();
}

void StylesPage::showSample()
{
    if (const int style = currentStyle(); style >= 0)
        m_sample->setStyle(m_copy.style(style));
}

} // namespace tabulor
