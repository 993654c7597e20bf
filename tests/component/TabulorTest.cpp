#include "component/Tabulor.h"
#include "component/Designer.h"
#include "component/ReportSession.h"
#include "production/pages/PageDocument.h"
#include "production/pages/PreviewCapable.h"
#include "production/pages/PreviewNavigation.h"

#include "MemoryRecordset.h"
#include "ScriptedPrompt.h"
#include "TestSupport.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tabulor;
using namespace tabulor::test;

namespace {

// Records what the component asks of the designer window, in order.
class RecordingDesigner : public Designer
{
public:
    explicit RecordingDesigner(ReportSession& session) : m_session(session) {}

    void applyAccessMode(const AccessModeActions& actions) override { applied.append(actions); }
    void setToolbarAllowed(bool allowed) override { toolbar = allowed; }
    void setCaption(const QString& text) override { caption = text; }
    PageDocument& document() override { return own; }
    void show(bool showLayoutWindow) override
    {
        calls << QStringLiteral("show");
        layoutShown = showLayoutWindow;
    }
    void reportLoaded() override
    {
        calls << QStringLiteral("loaded ") + m_session.definition().CurrentFileName;
    }
    void setHostDocument(PageDocument* document) override { host = document; }
    void waitUntilClosed() override { calls << QStringLiteral("wait"); }

    QList<AccessModeActions> applied;
    std::optional<bool> toolbar;
    QStringList calls;
    bool layoutShown = false;
    QString caption;
    PageDocument own;
    PageDocument* host = nullptr;

private:
    ReportSession& m_session;
};

// A host's document that also offers a preview.
class PreviewableDocument : public PageDocument, public PreviewCapable
{
public:
    PreviewNavigation& preview() override { return navigation; }
    PreviewNavigation navigation{*this};
};

} // namespace

TEST(Tabulor, StartsWithItsDocumentedSettings)
{
    Tabulor component;
    EXPECT_TRUE(component.ShowTabulor());
    EXPECT_TRUE(component.AllowToolBar());
    EXPECT_FALSE(component.ShowLayoutWindow());
    EXPECT_EQ(component.AccessMode(), zrUse);
}

TEST(Tabulor, AccessModesDecideWhichCommandsTheDesignerOffers)
{
    Tabulor component;
    RecordingDesigner designer(component.session());
    component.setDesigner(&designer);
    designer.applied.clear();

    component.setAccessMode(zrUse);
    component.setAccessMode(zrUseModify);
    component.setAccessMode(zrUseModifyCreate);
    ASSERT_EQ(designer.applied.size(), 3);
    const AccessModeActions& use = designer.applied[0];
    const AccessModeActions& modify = designer.applied[1];
    const AccessModeActions& create = designer.applied[2];
    EXPECT_EQ(use, AccessModeActions{});
    EXPECT_TRUE(modify.mOpen && modify.mSave && modify.mSaveAs && modify.toolbarOpenSave);
    EXPECT_FALSE(modify.mNew || modify.mOpenDatabase || modify.dataControlEnabled ||
                 modify.toolbarNew);
    EXPECT_TRUE(create.mNew && create.mOpenDatabase && create.mSepDatabase &&
                create.dataControlEnabled);

    // A value that is no mode is kept and changes nothing else.
    component.setAccessMode(3);
    EXPECT_EQ(component.AccessMode(), 3);
    EXPECT_EQ(component.session().accessMode(), 3);
    EXPECT_EQ(designer.applied.size(), 3);

    component.setAllowToolBar(false);
    EXPECT_EQ(designer.toolbar, false);
}

TEST(Tabulor, DoReportLoadsTheDefinitionHeadless)
{
    QTemporaryDir dir;
    copyInto(dir, sharedDataPath(QStringLiteral("sqlite_Chinook.sqlite")));
    ReportDefinition d;
    ApplyBuiltInStyles(d, {});
    d.DataBaseName = QStringLiteral("sqlite_Chinook.sqlite");
    d.RecordSource = QStringLiteral("Artist");
    const QString path = dir.filePath(QStringLiteral("artists.vrd"));
    QString error;
    ASSERT_TRUE(WriteReportFile(d, path, &error));

    ScriptedPrompt prompt;
    Tabulor component(&prompt);
    component.session().setSettingsPath(dir.filePath(QStringLiteral("none.ini")));
    component.setShowTabulor(false);
    ASSERT_TRUE(component.DoReport(path));
    EXPECT_EQ(component.session().definition().CurrentFileName, path);
    EXPECT_FALSE(component.session().definition().Dirty);
    EXPECT_TRUE(component.session().data().RecordSourceOpen());
    EXPECT_TRUE(prompt.messages.isEmpty());
}

TEST(Tabulor, DoReportTellsTheUserWhenTheFileIsNoDefinition)
{
    ScriptedPrompt prompt;
    Tabulor component(&prompt);
    component.setShowTabulor(false);
    MemoryRecordset host = MemoryRecordset::numbered(5);
    EXPECT_FALSE(component.DoReport(QStringLiteral("/no/such/report.vrd"), nullptr, &host));
    ASSERT_EQ(prompt.messages.size(), 1);
    EXPECT_EQ(prompt.messages.first(),
              QStringLiteral("Invalid Data File, please try another.\r\n'/no/such/report.vrd'"));
    // The host's recordset is let go.
    EXPECT_EQ(component.session().data().hostRecordset(), nullptr);
}

TEST(Tabulor, OnlyARecordsetIsAdoptedAsTheSource)
{
    Tabulor component;
    component.setShowTabulor(false);
    NotARecordset other;
    ASSERT_TRUE(component.DoReport(QString(), nullptr, &other));
    EXPECT_EQ(component.session().data().hostRecordset(), nullptr);

    MemoryRecordset host = MemoryRecordset::numbered(2);
    ASSERT_TRUE(component.DoReport(QString(), nullptr, &host));
    EXPECT_EQ(component.session().data().hostRecordset(), &host);
}

TEST(Tabulor, WithTheDesignerShownDoReportWaitsForIt)
{
    Tabulor component;
    QTemporaryDir dir;
    component.session().setSettingsPath(dir.filePath(QStringLiteral("settings.ini")));
    RecordingDesigner designer(component.session());
    component.setDesigner(&designer);
    component.setShowLayoutWindow(true);
    ASSERT_TRUE(component.DoReport(QString()));
    EXPECT_EQ(designer.calls, (QStringList{"show", "wait"}));
    EXPECT_TRUE(designer.layoutShown);
    EXPECT_EQ(designer.caption, QStringLiteral("Brintel Tabulor"));
    EXPECT_EQ(component.OutputDocument(), &designer.own);
    EXPECT_EQ(component.PreviewDocument(), &designer.own);

    // The window is shown before the report is loaded into it, and the host's document is
    // left for the window to render into when it closes; a document that offers a preview
    // is the one the designer's preview goes to.
    designer.calls.clear();
    const QString report = samplePath(QStringLiteral("sales_by_region.vrd"));
    PageDocument plain;
    ASSERT_TRUE(component.DoReport(report, &plain));
    EXPECT_EQ(designer.calls, (QStringList{"show", "loaded " + report, "wait"}));
    EXPECT_EQ(designer.host, &plain);
    EXPECT_EQ(plain.PageCount(), 0) << "the host's document is rendered when the window closes";
    EXPECT_EQ(component.PreviewDocument(), &designer.own);
    PreviewableDocument previewable;
    ASSERT_TRUE(component.DoReport(report, &previewable));
    EXPECT_EQ(component.PreviewDocument(), &previewable);
    EXPECT_EQ(component.OutputDocument(), &designer.own);
    EXPECT_FALSE(QFile::exists(component.session().settingsPath()))
        << "the designer keeps its recent files itself";
}

TEST(Tabulor, DoReportRendersIntoTheHostsDocument)
{
    ScriptedPrompt prompt;
    Tabulor component(&prompt);
    component.setShowTabulor(false);
    QTemporaryDir dir;
    component.session().setSettingsPath(dir.filePath(QStringLiteral("none.ini")));

    PageDocument plain;
    ASSERT_TRUE(component.DoReport(samplePath(QStringLiteral("order_lines.vrd")), &plain));
    ASSERT_GT(plain.PageCount(), 10);
    EXPECT_EQ(component.OutputDocument(), &plain);
    EXPECT_EQ(component.PreviewDocument(), nullptr) << "no designer, and no preview offered";
    // The report joins the recent files the designer lists.
    EXPECT_TRUE(readBytes(component.session().settingsPath())
                    .contains("0file=" + samplePath(QStringLiteral("order_lines.vrd")).toUtf8()));
    // Every record of the view, not only the working view's 250.
    EXPECT_EQ(component.session().data().grid().recordCount(), 2000);
    const auto hasText = [](const PageDocument& d, int page, const QString& text) {
        for (const DisplayItem& item : d.pages()[static_cast<size_t>(page)].items) {
            const auto* run = std::get_if<TextRun>(&item);
            if (run && run->text == text)
                return true;
        }
        return false;
    };
    // A host's document gets no page header unless it asks for one.
    EXPECT_FALSE(hasText(plain, 0, QStringLiteral("Order Details Extended")));

    PageDocument withHeaders;
    withHeaders.OverlayHeadersAndFooters = true;
    ASSERT_TRUE(component.DoReport(samplePath(QStringLiteral("order_lines.vrd")), &withHeaders));
    EXPECT_EQ(withHeaders.PageCount(), plain.PageCount());
    EXPECT_TRUE(hasText(withHeaders, 0, QStringLiteral("Order Details Extended")));
    EXPECT_TRUE(
        hasText(withHeaders, withHeaders.PageCount() - 1, QStringLiteral("order_lines.vrd")));
    EXPECT_TRUE(prompt.messages.isEmpty());
}
