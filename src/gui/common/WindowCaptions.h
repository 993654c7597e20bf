#pragma once

#include "localisation/CaptionRegistry.h"

#include <QPointer>
#include <QWidget>

#include <functional>

class QAction;

namespace tabulor {

// Puts the captions of a string file on a window's controls, found by their object names: a
// menu entry's or a button's text, a label's, a frame's title, a tab of a tab strip, the
// entries of a list or combo box, a property of a control. The window's own name stands for
// its title, which goes to titleChanged (the designer composes its title from it).
class WindowCaptions : public CaptionReceiver
{
public:
    explicit WindowCaptions(QWidget& window);

    // Where the window's title goes; by default it becomes the window title.
    void setTitleHandler(std::function<void(const QString&)> handler);
    // The toolbar button numbered n (from 1, separators counted).
    void setToolbarButtons(std::function<QAction*(int)> button);

    void setCaption(const CaptionKey& key, const QString& text) override;
    QStringList listEntries(const CaptionKey& key) const override;
    void setListEntries(const CaptionKey& key, const QStringList& entries) override;

private:
    QObject* find(const CaptionKey& key) const;

    QPointer<QWidget> m_window;
    std::function<void(const QString&)> m_title;
    std::function<QAction*(int)> m_toolbarButton;
};

} // namespace tabulor
