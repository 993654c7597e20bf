#include "gui/properties/TextPage.h"

#include "commands/SettingsWorkingCopy.h"
#include "commands/SpecialTokens.h"
#include "gui/properties/StyleSample.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QSignalBlocker>

namespace tabulor {

namespace {

QString indexed(const char* name, int index)
{
    return QString::fromLatin1(name) + QString::number(index);
}

} // namespace

TextPage::TextPage(SettingsWorkingCopy& copy, QWidget* parent) : QWidget(parent), m_copy(copy)
{
    setObjectName(QStringLiteral("picPage0"));
    auto* layout = new QGridLayout(this);
    m_list = new QListWidget(this);
    m_list->setObjectName(QStringLiteral("lstText"));
    // Entry texts come from the captions; the entries' positions are what counts.
    for (int i = 0; i < 3; ++i)
        m_list->addItem(QString());
    m_list->setMaximumWidth(160);
    layout->addWidget(m_list, 0, 0, 6, 1);

    m_title = new QLabel(this);
    m_title->setObjectName(QStringLiteral("lblText"));
    layout->addWidget(m_title, 0, 1, 1, 2);
    for (int i = 0; i < 3; ++i) {
        m_labels[i] = new QLabel(this);
        m_labels[i]->setObjectName(indexed("lblTxt", i));
        m_boxes[i] = new QLineEdit(this);
        m_boxes[i]->setObjectName(indexed("txt", i));
        m_boxes[i]->installEventFilter(this);
        m_labels[i]->setBuddy(m_boxes[i]);
        if (i == 0)
            m_title->setBuddy(m_boxes[i]);
        layout->addWidget(m_labels[i], 1 + i, 1);
        layout->addWidget(m_boxes[i], 1 + i, 2);
        connect(m_boxes[i], &QLineEdit::textChanged, this, &TextPage::txt_Change);
    }
    m_alignLabel = new QLabel(this);
    m_alignLabel->setObjectName(QStringLiteral("lblAlign"));
    m_align = new QComboBox(this);
    m_align->setObjectName(QStringLiteral("cmbAlign"));
    for (int i = 0; i < 3; ++i)
        m_align->addItem(QString());
    m_alignLabel->setBuddy(m_align);
    layout->addWidget(m_alignLabel, 2, 1);
    layout->addWidget(m_align, 2, 2);

    auto* buttons = new QHBoxLayout;
    m_special = new QPushButton(this);
    m_special->setObjectName(QStringLiteral("cmdSpecial"));
    auto* styleButton = new QPushButton(this);
    styleButton->setObjectName(QStringLiteral("cmdTextStyle"));
    buttons->addWidget(m_special);
    buttons->addStretch(1);
    buttons->addWidget(styleButton);
    layout->addLayout(buttons, 4, 1, 1, 2);
    m_sample = new StyleSample(this);
    m_sample->setObjectName(QStringLiteral("picTextSample"));
    layout->addWidget(m_sample, 5, 1, 1, 2, Qt::AlignTop);
    layout->setColumnStretch(2, 1);
    layout->setRowStretch(5, 1);

    m_specialMenu = new QMenu(this);
    m_specialMenu->setObjectName(QStringLiteral("mSpecialText"));
    for (int entry = 0; entry < kSpecialTokenEntries; ++entry) {
        QAction* action = isSpecialTokenSeparator(entry) ? m_specialMenu->addSeparator()
                                                         : m_specialMenu->addAction(QString());
        action->setObjectName(indexed("mSpecial", entry));
        connect(action, &QAction::triggered, this, [this, entry] { mSpecial_Click(entry); });
    }

    connect(m_list, &QListWidget::currentRowChanged, this, &TextPage::lstText_Click);
    connect(m_align, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (index < 0)
            return;
        m_copy.global().Align = qint16(index);
        showSample();
    });
    connect(m_special, &QPushButton::clicked, this, [this] {
        m_specialMenu->popup(m_special->mapToGlobal(QPoint(0, m_special->height())));
    });
    connect(styleButton, &QPushButton::clicked, this, [this] {
        if (currentText() >= 0)
            Q_EMIT styleRequested(SettingsWorkingCopy::styleOf(SettingsText(currentText())));
    });
}

int TextPage::currentText() const
{
    return m_list->currentRow();
}

void TextPage::fill()
{
    const QSignalBlocker blocker(m_list);
    m_list->setCurrentRow(currentText() < 0 ? 0 : currentText());
    lstText_Click();
}

void TextPage::lstText_Click()
{
    const int text = currentText();
    if (text < 0)
        return;
    const bool title = text == int(SettingsText::Title);
    const TextParts parts = m_copy.textParts(SettingsText(text));
    for (int i = 0; i < 3; ++i) {
        const QSignalBlocker blocker(m_boxes[i]);
        m_boxes[i]->setText(parts[i]);
        m_labels[i]->setVisible(!title);
        m_boxes[i]->setVisible(!title || i == 0);
    }
    m_alignLabel->setVisible(title);
    m_align->setVisible(title);
    const QSignalBlocker blocker(m_align);
    m_align->setCurrentIndex(std::clamp<int>(m_copy.global().Align, 0, 2));
    m_sample->setStyle(m_copy.style(SettingsWorkingCopy::styleOf(SettingsText(text))));
    showSample();
}

void TextPage::txt_Change()
{
    const int text = currentText();
    if (text < 0)
        return;
    m_copy.setTextParts(SettingsText(text),
                        {m_boxes[0]->text(), m_boxes[1]->text(), m_boxes[2]->text()});
    showSample();
}

void TextPage::showSample()
{
    if (currentText() >= 0)
        m_sample->setTexts(m_copy.sampleText(SettingsText(currentText())));
}

bool TextPage::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusOut) {
        for (int i = 0; i < 3; ++i) {
            if (watched == m_boxes[i]) {
                m_currentTextBox = i;
                m_selections[i] = {m_boxes[i]->selectionStart(), m_boxes[i]->selectionLength()};
            }
        }
    }
    return QWidget::eventFilter(watched, event);
}

void TextPage::mSpecial_Click(int entry)
{
    QLineEdit* box = m_boxes[m_currentTextBox];
    const auto [start, length] = m_selections[m_currentTextBox];
    if (start >= 0 && length > 0)
        box->setSelection(start, length);
    box->insert(specialTokenText(entry));
    m_selections[m_currentTextBox] = {};
    box->setFocus(Qt::OtherFocusReason);
}

} // namespace tabulor
