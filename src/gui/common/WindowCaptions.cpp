#include "gui/common/WindowCaptions.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QTabBar>
#include <QTabWidget>

namespace tabulor {

WindowCaptions::WindowCaptions(QWidget& window) : m_window(&window)
{
    m_title = [this](const QString& text) {
        if (m_window)
            m_window->setWindowTitle(text);
    };
}

void WindowCaptions::setTitleHandler(std::function<void(const QString&)> handler)
{
    m_title = std::move(handler);
}

void WindowCaptions::setToolbarButtons(std::function<QAction*(int)> button)
{
    m_toolbarButton = std::move(button);
}

QObject* WindowCaptions::find(const CaptionKey& key) const
{
    if (!m_window)
        return nullptr;
    const QString name = QString::fromLatin1(key.control.data(), qsizetype(key.control.size()));
    if (m_window->objectName() == name)
        return m_window;
    return m_window->findChild<QObject*>(name);
}

void WindowCaptions::setCaption(const CaptionKey& key, const QString& text)
{
    if (key.target == CaptionTarget::ToolTip) {
        if (QAction* button = m_toolbarButton ? m_toolbarButton(key.number) : nullptr)
            button->setToolTip(text);
        return;
    }
    QObject* control = find(key);
    if (!control)
        return;
    switch (key.target) {
    case CaptionTarget::Text:
        if (control == m_window)
            m_title(text);
        else if (auto* menu = qobject_cast<QMenu*>(control))
            menu->setTitle(text);
        else if (auto* action = qobject_cast<QAction*>(control))
            action->setText(text);
        else if (auto* button = qobject_cast<QAbstractButton*>(control))
            button->setText(text);
        else if (auto* label = qobject_cast<QLabel*>(control))
            label->setText(text);
        else if (auto* frame = qobject_cast<QGroupBox*>(control))
            frame->setTitle(text);
        return;
    case CaptionTarget::Tab:
        if (auto* bar = qobject_cast<QTabBar*>(control))
            bar->setTabText(key.number - 1, text);
        else if (auto* tabs = qobject_cast<QTabWidget*>(control))
            tabs->setTabText(key.number - 1, text);
        return;
    case CaptionTarget::Property:
    case CaptionTarget::SampleFormat:
        control->setProperty(key.property.empty() ? "sampleFormat" : key.property.data(), text);
        return;
    case CaptionTarget::ToolTip:
    case CaptionTarget::List:
        return;
    }
}

QStringList WindowCaptions::listEntries(const CaptionKey& key) const
{
    QStringList entries;
    if (auto* combo = qobject_cast<QComboBox*>(find(key))) {
        for (int i = 0; i < combo->count(); ++i)
            entries.append(combo->itemText(i));
    } else if (auto* list = qobject_cast<QListWidget*>(find(key))) {
        for (int i = 0; i < list->count(); ++i)
            entries.append(list->item(i)->text());
    }
    return entries;
}

void WindowCaptions::setListEntries(const CaptionKey& key, const QStringList& entries)
{
    // Entries keep their positions and item data: only the texts are replaced.
    if (auto* combo = qobject_cast<QComboBox*>(find(key))) {
        for (int i = 0; i < std::min<int>(combo->count(), int(entries.size())); ++i)
            combo->setItemText(i, entries.at(i));
    } else if (auto* list = qobject_cast<QListWidget*>(find(key))) {
        for (int i = 0; i < std::min<int>(list->count(), int(entries.size())); ++i)
            list->item(i)->setText(entries.at(i));
    }
}

} // namespace tabulor
