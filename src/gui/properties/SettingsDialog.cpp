#include "gui/properties/SettingsDialog.h"

#include "commands/DesignerCommands.h"
#include "component/ReportSession.h"
#include "gui/properties/DialogStyleChooser.h"
#include "gui/properties/FieldsPage.h"
#include "gui/properties/GeneralPage.h"
#include "gui/properties/StylesPage.h"
#include "gui/properties/TextPage.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace tabulor {

namespace {

enum Tab
{
    TextTab,
    FieldsTab,
    StylesTab,
    GeneralTab,
};

} // namespace

SettingsDialog::SettingsDialog(ReportSession& session, DesignerCommands& commands,
                               StyleChooser* chooser)
    : QWidget(nullptr, Qt::Dialog), m_session(session), m_copy(session), m_captions(*this)
{
    setObjectName(QStringLiteral("frmSettings"));
    setAttribute(Qt::WA_DeleteOnClose);
    if (!chooser) {
        m_ownChooser = std::make_unique<DialogStyleChooser>(this);
        chooser = m_ownChooser.get();
    }
    auto* layout = new QVBoxLayout(this);
    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("tb"));
    m_text = new TextPage(m_copy, m_tabs);
    m_fields = new FieldsPage(m_copy, session.data().grid(), m_tabs);
    m_styles = new StylesPage(m_copy, *chooser, m_tabs);
    m_general = new GeneralPage(
        m_copy,
        [this, &commands](int button) {
            // The margins are the page setup's, the printer the printer setup's.
            m_settingUpPage = true;
            commands.mPrintSetup_Click(button == 0 ? 1 : 0);
            m_settingUpPage = false;
        },
        m_tabs);
    for (QWidget* page : {static_cast<QWidget*>(m_text), static_cast<QWidget*>(m_fields),
                          static_cast<QWidget*>(m_styles), static_cast<QWidget*>(m_general)})
        m_tabs->addTab(page, QString());
    layout->addWidget(m_tabs, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    for (int i = 0; i < 3; ++i) {
        auto* button = new QPushButton(this);
        button->setObjectName(QStringLiteral("cmd%1").arg(i));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, i] { cmd_Click(i); });
        buttons->addWidget(button);
    }
    layout->addLayout(buttons);

    const auto showStyle = [this](int style) {
        m_tabs->setCurrentIndex(StylesTab);
        m_styles->selectStyle(style);
    };
    connect(m_text, &TextPage::styleRequested, this, showStyle);
    connect(m_fields, &FieldsPage::styleRequested, this, showStyle);

    applyBuiltInCaptions(CaptionWindow::Settings, m_captions);
    m_session.captions().attach(CaptionWindow::Settings, m_captions);
    load();
    resize(620, 400);
}

SettingsDialog::~SettingsDialog()
{
    m_session.captions().detach(CaptionWindow::Settings, m_captions);
}

void SettingsDialog::load()
{
    m_copy.load();
    m_text->fill();
    m_fields->fill();
    m_styles->fill();
    m_general->fill();
}

void SettingsDialog::openAt(const QString& tab, const QString& item)
{
    if (tab == QStringLiteral("General")) {
        m_tabs->setCurrentIndex(GeneralTab);
    } else if (tab == QStringLiteral("Fields")) {
        m_tabs->setCurrentIndex(FieldsTab);
        m_fields->selectField(item);
    } else if (tab == QStringLiteral("Styles")) {
        m_tabs->setCurrentIndex(StylesTab);
        m_styles->selectStyleNamed(item);
    }
    show();
    raise();
    activateWindow();
}

void SettingsDialog::ApplySettings()
{
    m_copy.apply();
}

void SettingsDialog::cmd_Click(int button)
{
    if (button != 1)
        ApplySettings();
    if (button != 2)
        close();
}

bool SettingsDialog::isOwn(const QWidget* window) const
{
    for (const QWidget* w = window; w; w = w->parentWidget()) {
        if (w == this)
            return true;
    }
    return false;
}

bool SettingsDialog::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate && m_copy.activate()) {
        m_text->fill();
        m_fields->fill();
        m_styles->fill();
        m_general->fill();
    }
    // Another window of the designer came to the front: the edits are applied as by OK. A
    // chooser or setup dialog of this one does not count, nor does another program.
    if (event->type() == QEvent::WindowDeactivate && m_copy.loaded() && !m_settingUpPage) {
        const QWidget* active = QApplication::activeWindow();
        if (active && !isOwn(active) && !QApplication::activeModalWidget()) {
            ApplySettings();
            close();
        }
    }
    return QWidget::event(event);
}

void SettingsDialog::closeEvent(QCloseEvent* event)
{
    m_copy.unload();
    QWidget::closeEvent(event);
}

} // namespace tabulor
