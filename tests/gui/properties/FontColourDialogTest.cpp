#include "gui/properties/FontColourDialog.h"

#include <QFontDialog>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace tabulor;

TEST(FontColourDialog, StartsFromTheStyleAndEscapeInTheFontChooserCancelsTheWhole)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSize(14);
    font.setBold(true);
    FontColourDialog dialog(font, QColor(0x12, 0x34, 0x56), nullptr);
    dialog.show();
    EXPECT_EQ(dialog.font().pointSize(), 14);
    EXPECT_TRUE(dialog.font().bold());
    EXPECT_EQ(dialog.colour(), QColor(0x12, 0x34, 0x56));
    EXPECT_EQ(dialog.findChild<QPushButton*>(QStringLiteral("cmdTextColor"))->text(),
              QStringLiteral("#123456"));

    // The font chooser inside takes Escape as its own; the dialog as a whole is cancelled and
    // the chooser is still there when it is shown again.
    auto* chooser = dialog.findChild<QFontDialog*>(QStringLiteral("fontChooser"));
    ASSERT_NE(chooser, nullptr);
    QTest::keyClick(chooser, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_FALSE(chooser->isHidden());
}
