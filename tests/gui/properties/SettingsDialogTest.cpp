#include "gui/properties/SettingsDialog.h"
#include "commands/DesignerCommands.h"
#include "commands/PrinterAccess.h"
#include "commands/StyleChooser.h"
#include "component/ReportSession.h"
#include "production/pages/PageDocument.h"

#include "SampleCopy.h"
#include "ScriptedPrompt.h"
#include "TestSupport.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

// A page setup that always moves the left margin and turns the page.
class TurningPrinter : public PrinterAccess
{
public:
    QString deviceName() const override { return QStringLiteral("Desk Printer"); }
    bool print(const PageDocument&, QString*) override { return true; }
    bool setup(int index, PageSetup& page) override
    {
        setupIndexes.append(index);
        page.orientation = 1;
        page.marginLeft = 360;
        return true;
    }
    QList<int> setupIndexes;
};

// Fonts and colours chosen in advance.
class ChosenLook : public StyleChooser
{
public:
    std::optional<ReportStyle> chooseFont(const ReportStyle& style) override
    {
        ReportStyle chosen = style;
        chosen.FontName = QStringLiteral("Courier");
        chosen.FontItalic = true;
        return chosen;
    }
    std::optional<qint32> chooseColour(qint32) override { return colour; }
    std::optional<qint32> colour = 0x0000FF;
};

// The real dialog over a copy of the sample report, opened as the designer opens it.
class SettingsDialogTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        const QString report = copySampleReport(dir, session);
        ASSERT_FALSE(report.isEmpty());
        session.strings().setFilePath(dir.filePath(QStringLiteral("strings.str")));
        ASSERT_TRUE(session.OpenReportFile(report));
        before = session.definition();
    }
    void TearDown() override { delete dialog; }

    void open(const QString& tab, const QString& item = QString())
    {
        dialog = new SettingsDialog(session, commands, &look);
        dialog->openAt(tab, item);
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog));
    }

    template <typename T> T* find(const char* name)
    {
        T* widget = dialog->findChild<T*>(QString::fromLatin1(name));
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }

    // Clicks a button; a check box or option button on its indicator.
    void click(const char* name)
    {
        auto* button = find<QAbstractButton>(name);
        const bool indicator =
            qobject_cast<QCheckBox*>(button) || qobject_cast<QRadioButton*>(button);
        QTest::mouseClick(button, Qt::LeftButton, {},
                          indicator ? QPoint(6, button->height() / 2) : button->rect().center());
    }

    // The dialog deletes itself once closed.
    bool closed()
    {
        return QTest::qWaitFor([&] { return dialog.isNull(); });
    }

    void clickRow(const char* list, int row)
    {
        auto* widget = find<QListWidget>(list);
        const QRect rect = widget->visualItemRect(widget->item(row));
        QTest::mouseClick(widget->viewport(), Qt::LeftButton, {}, rect.center());
    }

    // Picks an entry of a closed combo box with the keyboard.
    void choose(const char* name, int entry)
    {
        auto* combo = find<QComboBox>(name);
        combo->setFocus();
        QTest::keyClick(combo, Qt::Key_Home);
        for (int i = 0; i < entry; ++i)
            QTest::keyClick(combo, Qt::Key_Down);
        ASSERT_EQ(combo->currentIndex(), entry);
    }

    // Replaces the text of a line edit (or an editable combo's) as the user types.
    void type(QWidget* box, const QString& text)
    {
        if (auto* combo = qobject_cast<QComboBox*>(box))
            box = combo->lineEdit();
        box->setFocus();
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(box, Qt::Key_Delete);
        QTest::keyClicks(box, text);
    }

    void writeStrings(const QByteArray& text)
    {
        QFile file(session.strings().filePath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    QTemporaryDir dir;
    ScriptedPrompt prompt;
    ReportSession session{&prompt};
    TurningPrinter printer;
    DesignerCommands commands{session, printer};
    ChosenLook look;
    ReportDefinition before;
    QPointer<SettingsDialog> dialog;
};

TEST_F(SettingsDialogTest, FieldsTabStoresCodesNotTexts)
{
    writeStrings("*spfAlignmentList\nStandard|Links|Mitte|Rechts\n");
    open(QStringLiteral("Fields"), QStringLiteral("Sales"));
    EXPECT_EQ(find<QTabWidget>("tb")->currentIndex(), 1);
    auto* fields = find<QListWidget>("lstFields");
    ASSERT_EQ(fields->currentItem()->text(), QStringLiteral("Sales"));

    EXPECT_EQ(find<QComboBox>("cmbFldAlign")->itemText(2), QStringLiteral("Mitte"));
    choose("cmbFldAlign", 2);
    choose("cmbFldTotal", 7);
    choose("cmbFldSort", 2);
    type(find<QComboBox>("cmbFldFormat"), QStringLiteral("0.000 \"EUR\""));
    type(find<QLineEdit>("txtFldTitle"), QStringLiteral("Revenue"));
    click("cmd0");
    EXPECT_TRUE(closed()); // OK closes

    const ReportField& sales = session.definition().fields[6];
    EXPECT_EQ(sales.Align, 3);
    EXPECT_EQ(sales.Aggregate, 7);
    EXPECT_EQ(sales.Sort, 2);
    EXPECT_EQ(sales.Format, QStringLiteral("0.000 \"EUR\""));
    EXPECT_EQ(sales.Title, QStringLiteral("Revenue"));
    EXPECT_EQ(session.definition().fields[0], before.fields[0]);
}

TEST_F(SettingsDialogTest, FieldsWithUnknownNamesOrCodesAreLeftAlone)
{
    session.definition().fields[1].Align = 5; // a hand-edited file
    open(QStringLiteral("Fields"), QStringLiteral("NoSuchField"));
    EXPECT_EQ(find<QListWidget>("lstFields")->currentRow(), -1);
    EXPECT_FALSE(find<QLineEdit>("txtFldTitle")->isEnabled());

    clickRow("lstFields", 3); // OrderID, right-aligned
    auto* align = find<QComboBox>("cmbFldAlign");
    EXPECT_EQ(align->currentIndex(), 3);
    clickRow("lstFields", 1); // the unknown code keeps the entry showing
    EXPECT_EQ(align->currentIndex(), 3);
    EXPECT_EQ(find<QLineEdit>("txtFldTitle")->text(), QStringLiteral("Country"));
    click("cmd2");
    EXPECT_EQ(session.definition().fields[1].Align, 5);
    EXPECT_FALSE(dialog.isNull()); // Apply stays open
}

TEST_F(SettingsDialogTest, StylesTabSpacingBordersFontsAndColours)
{
    open(QStringLiteral("Styles"), QStringLiteral("Detail Body"));
    EXPECT_EQ(find<QListWidget>("lstStyles")->currentRow(), int(StyleDetailBody));

    auto* before = find<QComboBox>("cmbSpacing0");
    type(before, QStringLiteral("4.5"));
    find<QComboBox>("cmbBorder1")->setFocus(); // leaving the box takes the value
    type(find<QComboBox>("cmbSpacing1"), QStringLiteral("7 "));
    EXPECT_EQ(dialog->workingCopy().style(StyleDetailBody).After, 140); // at the blank
    type(before, QStringLiteral("-3"));
    QTest::keyClick(before->lineEdit(), Qt::Key_Return);
    EXPECT_EQ(dialog->workingCopy().style(StyleDetailBody).Before, 0);
    type(before, QStringLiteral("4.5"));
    QTest::keyClick(before->lineEdit(), Qt::Key_Return);
    choose("cmbBorder1", 3);
    click("cmdStyle0");
    click("cmdStyle1");
    look.colour.reset(); // the rule colour's chooser is cancelled
    click("cmdStyle2");
    click("cmd0");

    const ReportStyle& body = session.definition().styles[StyleDetailBody];
    EXPECT_EQ(body.Before, 90);
    EXPECT_EQ(body.After, 140);
    EXPECT_EQ(body.Bottom, 3);
    EXPECT_EQ(body.FontName, QStringLiteral("Courier"));
    EXPECT_TRUE(body.FontItalic);
    EXPECT_EQ(body.Back, 0x0000FF);
    EXPECT_EQ(body.Color, this->before.styles[StyleDetailBody].Color);
}

TEST_F(SettingsDialogTest, TextTabJoinsHeaderBoxesAndInsertsSpecialTexts)
{
    open(QStringLiteral("Text"));
    clickRow("lstText", 1);
    auto* left = find<QLineEdit>("txt0");
    auto* centre = find<QLineEdit>("txt1");
    auto* right = find<QLineEdit>("txt2");
    EXPECT_EQ(right->text(), QStringLiteral("Page <p> of <n>"));
    type(left, QStringLiteral("Sales"));
    type(centre, QString());
    EXPECT_EQ(dialog->workingCopy().global().Header, QStringLiteral("Sales||Page <p> of <n>"));

    // The box left last takes the text, over its selection.
    right->setFocus();
    right->setSelection(5, 3); // "<p>"
    click("cmdSpecial");
    auto* menu = find<QMenu>("mSpecialText");
    ASSERT_TRUE(QTest::qWaitForWindowExposed(menu));
    find<QAction>("mSpecial0")->trigger();
    menu->close();
    EXPECT_EQ(right->text(), QStringLiteral("Page % of <n>"));
    EXPECT_TRUE(right->hasFocus());
    find<QAction>("mSpecial3")->trigger(); // a separator inserts nothing
    EXPECT_EQ(right->text(), QStringLiteral("Page % of <n>"));

    // The title: one box, and its alignment.
    clickRow("lstText", 0);
    EXPECT_FALSE(centre->isVisible());
    choose("cmbAlign", 2);
    click("cmd2");
    EXPECT_EQ(session.definition().global.Header, QStringLiteral("Sales||Page % of <n>"));
    EXPECT_EQ(session.definition().global.Align, 2);
}

TEST_F(SettingsDialogTest, GeneralTabStoresItsCodes)
{
    open(QStringLiteral("General"));
    EXPECT_EQ(find<QTabWidget>("tb")->currentIndex(), 3);
    EXPECT_EQ(find<QComboBox>("cmbHeight")->currentText(), QStringLiteral("2\""));
    click("opPosition1");
    EXPECT_FALSE(find<QLabel>("lblPosition")->isVisible());
    EXPECT_TRUE(find<QLabel>("lblPositionBelow")->isVisible());
    choose("cmbBorders", 6);
    choose("cmbColumns", 3);
    ASSERT_FALSE(find<QCheckBox>("chkWidow")->isChecked()); // widows are fine in the sample
    click("chkWidow");
    click("chkWordWrap");
    type(find<QComboBox>("cmbHeight"), QStringLiteral("2.25"));
    click("cmdSetup0"); // margins: the page setup
    EXPECT_EQ(printer.setupIndexes, QList<int>{1});
    click("cmd0");

    const GlobalSettings& g = session.definition().global;
    EXPECT_EQ(g.SubtotalPosition, 1);
    EXPECT_EQ(g.PageBorders, 6);
    EXPECT_EQ(g.Columns, QStringLiteral("4"));
    EXPECT_FALSE(g.WidowOK);
    EXPECT_FALSE(g.WordWrap);
    EXPECT_EQ(g.MaxHeight, 3240);
    EXPECT_EQ(g.Left, 360); // the page setup is not undone by the apply
    EXPECT_EQ(g.Orientation, 1);
}

TEST_F(SettingsDialogTest, CancelLeavesTheReportAndApplyIsOneUndo)
{
    open(QStringLiteral("General"));
    choose("cmbBorders", 7);
    click("cmd1");
    EXPECT_TRUE(closed());
    EXPECT_EQ(session.definition(), before);
    EXPECT_EQ(session.history().stack().count(), 0);

    open(QStringLiteral("General"));
    EXPECT_EQ(find<QComboBox>("cmbBorders")->currentIndex(), before.global.PageBorders);
    choose("cmbBorders", 7);
    type(find<QComboBox>("cmbHeight"), QStringLiteral("1"));
    click("cmd2");
    EXPECT_EQ(session.definition().global.PageBorders, 7);
    ASSERT_EQ(session.history().stack().count(), 1);
    session.history().stack().undo();
    EXPECT_EQ(session.definition().global, before.global);
}

TEST_F(SettingsDialogTest, LeavingForAnotherWindowApplies)
{
    QWidget designer;
    designer.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&designer));
    open(QStringLiteral("General"));
    choose("cmbBorders", 4);
    // Another program coming to the front leaves the dialog as it is.
    QApplication::setActiveWindow(nullptr);
    QTest::qWait(20);
    ASSERT_FALSE(dialog.isNull());
    EXPECT_EQ(session.definition().global.PageBorders, before.global.PageBorders);
    QApplication::setActiveWindow(dialog);
    QApplication::setActiveWindow(&designer);
    EXPECT_TRUE(closed());
    EXPECT_EQ(session.definition().global.PageBorders, 4);
    EXPECT_TRUE(session.definition().Dirty);
}

TEST_F(SettingsDialogTest, CaptionsComeFromTheStringFile)
{
    writeStrings("*sCaption\nEigenschaften\n*stbFields\nFelder\n*sptAlignmentList\nLinks|Rechts\n"
                 "*spsSampleEntry\nBeispiel\n*sbtApply\n");
    open(QStringLiteral("Styles"), QStringLiteral("headers"));
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Eigenschaften"));
    EXPECT_EQ(find<QTabWidget>("tb")->tabText(1), QStringLiteral("Felder"));
    EXPECT_EQ(find<QTabWidget>("tb")->tabText(0), QStringLiteral("Text"));
    EXPECT_EQ(find<QComboBox>("cmbAlign")->itemText(1), QStringLiteral("Center"));
    EXPECT_EQ(find<QWidget>("fa")->property("sampleFormat").toString(),
              QStringLiteral(";|Beispiel"));
    EXPECT_EQ(find<QListWidget>("lstStyles")->currentRow(), int(StyleHeaders));
    // The last key has no value: reading stops there, and the user is told.
    EXPECT_EQ(find<QPushButton>("cmd2")->text(), QStringLiteral("Apply"));
    EXPECT_EQ(prompt.messages.size(), 1);
}

} // namespace
