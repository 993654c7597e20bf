#pragma once

#include "commands/StyleChooser.h"

#include <QPointer>
#include <QWidget>

namespace tabulor {

// Fonts and colours chosen in Qt's font and colour dialogs, in front of the window given.
class DialogStyleChooser : public StyleChooser
{
public:
    explicit DialogStyleChooser(QWidget* parent);

    std::optional<ReportStyle> chooseFont(const ReportStyle& style) override;
    std::optional<qint32> chooseColour(qint32 colour) override;

private:
    QPointer<QWidget> m_parent;
};

} // namespace tabulor
