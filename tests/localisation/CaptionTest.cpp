#include "localisation/CaptionRegistry.h"
#include "localisation/StringTable.h"

#include "TestSupport.h"

#include <QMap>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <map>
#include <memory>

namespace tabulor {
namespace {

QString str(std::string_view text)
{
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

// Where a caption lands, written as the window would address it.
QString targetName(const CaptionKey& key)
{
    switch (key.target) {
    case CaptionTarget::ToolTip:
    case CaptionTarget::Tab:
        return str(key.control) + u'#' + QString::number(key.number);
    case CaptionTarget::Property:
        return str(key.control) + u'.' + str(key.property);
    case CaptionTarget::Text:
    case CaptionTarget::List:
    case CaptionTarget::SampleFormat:
        break;
    }
    return str(key.control);
}

// A window reduced to what the string table can change in it.
class FakeWindow : public CaptionReceiver
{
public:
    explicit FakeWindow(CaptionWindow window) { applyBuiltInCaptions(window, *this); }

    void setCaption(const CaptionKey& key, const QString& text) override
    {
        captions[targetName(key)] = text;
    }
    QStringList listEntries(const CaptionKey& key) const override
    {
        return lists.value(targetName(key));
    }
    void setListEntries(const CaptionKey& key, const QStringList& entries) override
    {
        lists[targetName(key)] = entries;
    }

    QMap<QString, QString> captions;
    QMap<QString, QStringList> lists;
};

TEST(CaptionKeys, TableIsComplete)
{
    QSet<QString> names;
    QSet<QString> targets;
    for (const CaptionKey& key : captionKeys()) {
        names.insert(str(key.name));
        targets.insert(QString::number(static_cast<int>(key.window)) + u'/' + targetName(key));
        const auto all = findCaptionKeys(str(key.name));
        EXPECT_TRUE(&key >= all.data() && &key < all.data() + all.size())
            << "targets of one key must stand together: " << key.name;
        if (key.target == CaptionTarget::List) {
            EXPECT_EQ(str(key.builtIn).split(u'|').size(), key.number) << key.name;
        }
    }
    EXPECT_EQ(names.size(), 106);
    EXPECT_EQ(targets.size(), qsizetype(captionKeys().size())) << "two keys share a target";
    for (int i = 0; i < kMessageCount; ++i)
        EXPECT_FALSE(names.contains(StringTable::keyName(static_cast<Message>(i))));

    EXPECT_EQ(findCaptionKeys(u"mtOpen").size(), 1u);
    EXPECT_TRUE(findCaptionKeys(u"mttOpen").empty());
    EXPECT_TRUE(findCaptionKeys(u"MMFILE").empty());
    EXPECT_EQ(findCaptionKeys(u"spsBorderList").size(), 2u);
}

TEST(CaptionKeys, NewWindowsShowTheirBuiltInCaptions)
{
    const FakeWindow settings(CaptionWindow::Settings);
    EXPECT_EQ(settings.captions.value("fa"), QStringLiteral(";|This is a sample entry"));
    EXPECT_EQ(settings.lists.value("lstStyles").at(3), QStringLiteral("  Heading 3 Top"));
    EXPECT_FALSE(settings.captions.contains("mFile"));
}

// A string file read with a registry of the three windows, of which only the main window is
// loaded; the others are loaded when a key needs them.
class CaptionFileTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        m_table.setFilePath(m_dir.filePath(QStringLiteral("Kestrel.str")));
        m_registry.attach(CaptionWindow::Main, m_main);
        for (CaptionWindow window : {CaptionWindow::Layout, CaptionWindow::Settings}) {
            m_registry.setLoader(window, [this, window]() {
                ++m_loads[window];
                auto& loaded = m_loaded[window];
                loaded = std::make_unique<FakeWindow>(window);
                return loaded.get();
            });
        }
    }

    std::optional<StringFileError> load(const QByteArray& bytes, bool applyCaptions = true)
    {
        test::writeBytes(m_table.filePath(), bytes);
        return m_table.LoadStrings(applyCaptions, &m_registry);
    }

    QTemporaryDir m_dir;
    StringTable m_table;
    CaptionRegistry m_registry;
    FakeWindow m_main{CaptionWindow::Main};
    std::map<CaptionWindow, std::unique_ptr<FakeWindow>> m_loaded;
    std::map<CaptionWindow, int> m_loads;
};

TEST_F(CaptionFileTest, CaptionsReachTheirControls)
{
    EXPECT_EQ(load("*mmFile\n&Datei\n"
                   "*mtOpen\n\xC3\x96"
                   "ffnen\n"
                   "*mttOpen\nnever\n"
                   "*mtbPreview\nVorschau\n"
                   "*mpbZoom\nZoom:\n"
                   "*UNTITLED\nOhne Titel\n"),
              std::nullopt);
    EXPECT_EQ(m_main.captions.value("mFile"), QStringLiteral("&Datei"));
    EXPECT_EQ(m_main.captions.value("Toolbar#3"), QStringLiteral("\u00D6ffnen"));
    EXPECT_EQ(m_main.captions.value("zrtab#2"), QStringLiteral("Vorschau"));
    EXPECT_EQ(m_main.captions.value("zrtab#1"), QStringLiteral("Design"));
    EXPECT_EQ(m_main.captions.value("pcb.ZoomCaption"), QStringLiteral("Zoom:"));
    EXPECT_EQ(m_table.text(Message::UNTITLED), QStringLiteral("Ohne Titel"));
    EXPECT_TRUE(m_loaded.empty()) << "no key of the other windows was read";
}

TEST_F(CaptionFileTest, WindowIsLoadedOnceForItsFirstKey)
{
    EXPECT_EQ(load("*lGroups\nGruppen\n*lDetails\nDetails\n*lGroups\nGruppierung\n"
                   "*spsSampleEntry\nEin Beispiel\n"),
              std::nullopt);
    EXPECT_EQ(m_loads[CaptionWindow::Layout], 1);
    EXPECT_EQ(m_loaded[CaptionWindow::Layout]->captions.value("lblHeadings"),
              QStringLiteral("Gruppierung"));
    EXPECT_EQ(m_loaded[CaptionWindow::Settings]->captions.value("fa"),
              QStringLiteral(";|Ein Beispiel"));

    // Unloaded windows are loaded again; loaded ones are used as they are.
    m_registry.detach(CaptionWindow::Layout, *m_loaded[CaptionWindow::Layout]);
    EXPECT_EQ(load("*lFields\nFelder\n*sCaption\nEinstellungen\n"), std::nullopt);
    EXPECT_EQ(m_loads[CaptionWindow::Layout], 2);
    EXPECT_EQ(m_loads[CaptionWindow::Settings], 1);
    EXPECT_EQ(m_loaded[CaptionWindow::Layout]->captions.value("lblFields"),
              QStringLiteral("Felder"));
    EXPECT_EQ(m_loaded[CaptionWindow::Layout]->captions.value("lblHeadings"),
              QStringLiteral("Groups"));
}

TEST_F(CaptionFileTest, ListsAreReplacedOnlyWithTheRightNumberOfEntries)
{
    EXPECT_EQ(load("*sptAlignmentList\nLinks|Rechts\n"
                   "*spfSortingList\n||\n"
                   "*spsBorderList\nKeine|D\xC3\xBCnn|Mittel|Dick\n"
                   "*spsList\n\t Titel| Kopf 1|  Kopf 2|   Kopf 3|D|D|K3|K2|K1|Kopf|Fu\xC3\x9F \n"),
              std::nullopt);
    const FakeWindow& settings = *m_loaded[CaptionWindow::Settings];
    EXPECT_EQ(settings.lists.value("cmbAlign"), (QStringList{"Left", "Center", "Right"}));
    EXPECT_EQ(settings.lists.value("cmbFldSort"), (QStringList{"", "", ""}));
    const QStringList borders{"Keine", QStringLiteral("D\u00FCnn"), "Mittel", "Dick"};
    EXPECT_EQ(settings.lists.value("cmbBorder0"), borders);
    EXPECT_EQ(settings.lists.value("cmbBorder1"), borders);
    EXPECT_EQ(settings.lists.value("lstStyles").first(), QStringLiteral("Titel"));
    EXPECT_EQ(settings.lists.value("lstStyles").at(2), QStringLiteral("  Kopf 2"));
    EXPECT_EQ(settings.lists.value("lstStyles").last(), QStringLiteral("Fu\u00DF"));
}

TEST_F(CaptionFileTest, CaptionsWaitForALoadThatAppliesThem)
{
    EXPECT_EQ(load("*mmFile\n&Datei\n*lFields\nFelder\n*REPORT\nBericht\n", false), std::nullopt);
    EXPECT_EQ(m_main.captions.value("mFile"), QStringLiteral("&File"));
    EXPECT_TRUE(m_loaded.empty());
    EXPECT_EQ(m_table.text(Message::REPORT), QStringLiteral("Bericht"));

    // Without a registry, or without a way to load a window, captions have nowhere to go.
    test::writeBytes(m_table.filePath(), "*lFields\nFelder\n*REPORT\nReport\n");
    EXPECT_EQ(m_table.LoadStrings(true), std::nullopt);
    CaptionRegistry unloadable;
    EXPECT_EQ(m_table.LoadStrings(true, &unloadable), std::nullopt);
    EXPECT_TRUE(m_loaded.empty());
    EXPECT_EQ(m_table.text(Message::REPORT), QStringLiteral("Report"));
}

TEST_F(CaptionFileTest, MissingFileChangesNoCaption)
{
    const FakeWindow fresh(CaptionWindow::Main);
    EXPECT_EQ(m_table.LoadStrings(true, &m_registry), std::nullopt);
    EXPECT_EQ(m_main.captions, fresh.captions);
    EXPECT_TRUE(m_loaded.empty());
}

} // namespace
} // namespace tabulor
