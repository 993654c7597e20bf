#include "gui/properties/FieldsPage.h"

#include "commands/FieldSample.h"
#include "commands/SettingsWorkingCopy.h"
#include "gui/properties/StyleSample.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QSignalBlocker>

namespace tabulor {

namespace {

// A combo box with count entries whose texts the captions give.
QComboBox* codeCombo(QWidget* parent, const QString& name, int count)
{
    auto* combo = new QComboBox(parent);
    combo->setObjectName(name);
    for (int i = 0; i < count; ++i)
        combo->addItem(QString());
    return combo;
}

void addRow(QFormLayout* form, QWidget* parent, const QString& labelName, QWidget* field)
{
    auto* label = new QLabel(parent);
    label->setObjectName(labelName);
    label->setBuddy(field);
    form->addRow(label, field);
}

} // namespace

FieldsPage::FieldsPage(SettingsWorkingCopy& copy, const OutlineGrid& grid, QWidget* parent)
    : QWidget(parent), m_copy(copy), m_grid(grid)
{
    setObjectName(QStringLiteral("picPage1"));
    auto* layout = new QHBoxLayout(this);
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("lstFields"));
    m_list->setMaximumWidth(180);
    layout->addWidget(m_list);

    m_editors = new QWidget(this);
    m_editors->setObjectName(QStringLiteral("fraField"));
    auto* form = new QFormLayout(m_editors);
    m_title = new QLineEdit(m_editors);
    m_title->setObjectName(QStringLiteral("txtFldTitle"));
    addRow(form, m_editors, QStringLiteral("lblFldTitle"), m_title);
    m_format = new QComboBox(m_editors);
    m_format->setObjectName(QStringLiteral("cmbFldFormat"));
    m_format->setEditable(true);
    m_format->setInsertPolicy(QComboBox::NoInsert);
    m_format->addItems(
        {QStringLiteral("#.##"), QStringLiteral("#,###.##"), QStringLiteral("($#,###.##)")});
    addRow(form, m_editors, QStringLiteral("lblFldFormat"), m_format);
    m_align = codeCombo(m_editors, QStringLiteral("cmbFldAlign"), 0);
    for (const qint16 code : kFieldAlignmentCodes)
        m_align->addItem(QString(), int{code});
    addRow(form, m_editors, QStringLiteral("lblFldAlign"), m_align);
    m_sort = codeCombo(m_editors, QStringLiteral("cmbFldSort"), 3);
    addRow(form, m_editors, QStringLiteral("lblFldSort"), m_sort);
    m_total = codeCombo(m_editors, QStringLiteral("cmbFldTotal"), 8);
    addRow(form, m_editors, QStringLiteral("lblFldTotal"), m_total);
    auto* styleButton = new QPushButton(m_editors);
    styleButton->setObjectName(QStringLiteral("cmdFieldsStyle"));
    form->addRow(QString(), styleButton);
    m_titleSample = new StyleSample(m_editors);
    m_titleSample->setObjectName(QStringLiteral("picFieldTitle"));
    m_valueSample = new StyleSample(m_editors);
    m_valueSample->setObjectName(QStringLiteral("picFieldValue"));
    form->addRow(m_titleSample);
    form->addRow(m_valueSample);
    layout->addWidget(m_editors, 1);

    connect(m_list, &QListWidget::currentRowChanged, this, &FieldsPage::lstFields_Click);
    connect(m_title, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (ReportField* field = currentField())
            field->Title = text;
        showSample();
    });
    // Typing a format and choosing one from the list both change the edited text.
    connect(m_format, &QComboBox::editTextChanged, this, [this](const QString& text) {
        if (ReportField* field = currentField())
            field->Format = text;
        showSample();
    });
    connect(m_align, &QComboBox::currentIndexChanged, this, [this](int index) {
        ReportField* field = currentField();
        if (field && index >= 0)
            field->Align = qint16(m_align->itemData(index).toInt());
        showSample();
    });
    connect(m_sort, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (ReportField* field = currentField(); field && index >= 0)
            field->Sort = qint16(index);
    });
    connect(m_total, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (ReportField* field = currentField(); field && index >= 0)
            field->Aggregate = qint16(index);
    });
    connect(styleButton, &QPushButton::clicked, this, [this] {
        if (const ReportField* field = currentField())
            Q_EMIT styleRequested(m_copy.styleOfField(field->ID));
    });
}

void FieldsPage::fill()
{
    const QSignalBlocker blocker(m_list);
    m_list->clear();
    const QList<ReportField>& fields = m_copy.fields();
    for (qsizetype i = 0; i < fields.size(); ++i) {
        auto* item = new QListWidgetItem(fields[i].ID, m_list);
        item->setData(Qt::UserRole, int(i));
    }
    m_list->setCurrentRow(-1);
    lstFields_Click();
}

void FieldsPage::selectField(const QString& name)
{
    for (int row = 0; row < m_list->count(); ++row) {
        if (m_list->item(row)->text() == name) {
            m_list->setCurrentRow(row);
            return;
        }
    }
    m_list->setCurrentRow(-1);
}

ReportField* FieldsPage::currentField()
{
    const QListWidgetItem* item = m_list->currentItem();
    if (!item || m_list->currentRow() < 0)
        return nullptr;
    const int index = item->data(Qt::UserRole).toInt();
    if (index < 0 || index >= m_copy.fields().size())
        return nullptr;
    return &m_copy.fields()[index];
}

void FieldsPage::lstFields_Click()
{
    const ReportField* field = currentField();
    m_editors->setEnabled(field != nullptr);
    if (!field)
        return;
    const QSignalBlocker titleBlocker(m_title);
    const QSignalBlocker formatBlocker(m_format);
    const QSignalBlocker alignBlocker(m_align);
    const QSignalBlocker sortBlocker(m_sort);
    const QSignalBlocker totalBlocker(m_total);
    m_title->setText(field->Title);
    m_format->setEditText(field->Format);
    // A code no entry has (a hand-edited file) leaves the entry that was showing.
    if (const int entry = m_align->findData(int{field->Align}); entry >= 0)
        m_align->setCurrentIndex(entry);
    m_sort->setCurrentIndex(field->Sort);
    m_total->setCurrentIndex(field->Aggregate);
    showSample();
}

void FieldsPage::showSample()
{
    const ReportField* field = currentField();
    if (!field)
        return;
    m_titleSample->setStyle(m_copy.style(StyleDetailTitle));
    m_valueSample->setStyle(m_copy.style(StyleDetailBody));
    const FieldSample sample = fieldSample(m_grid, *field, FormatLocale::fromQLocale(QLocale()));
    TextParts title;
    TextParts value;
    title[std::size_t(sample.placement)] = field->Title;
    value[std::size_t(sample.placement)] = sample.text;
    m_titleSample->setTexts(title);
    m_valueSample->setTexts(value);
}

} // namespace tabulor
