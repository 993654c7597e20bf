#include "FuzzRequire.h"
#include "InputFile.h"

#include "localisation/CaptionRegistry.h"
#include "localisation/StringTable.h"

#include <QHash>

#include <cstddef>
#include <cstdint>
#include <optional>

using namespace tabulor;

namespace {

// A window that keeps what it is given, by the key that gave it, and checks that each caption
// reaches the window it belongs to in the shape its control takes.
class RecordingWindow : public CaptionReceiver
{
public:
    explicit RecordingWindow(CaptionWindow window) : m_window(window)
    {
        applyBuiltInCaptions(window, *this);
    }

    void setCaption(const CaptionKey& key, const QString& text) override
    {
        fuzz::require(key.window == m_window, "a caption reaches its own window");
        fuzz::require(key.target != CaptionTarget::List, "a list is never given one text");
        fuzz::require(key.target != CaptionTarget::SampleFormat || text.startsWith(u";|"),
                      "a sample grid's format starts with ;|");
        m_texts.insert(&key, text);
    }
    QStringList listEntries(const CaptionKey& key) const override { return m_lists.value(&key); }
    void setListEntries(const CaptionKey& key, const QStringList& entries) override
    {
        fuzz::require(key.window == m_window && key.target == CaptionTarget::List,
                      "list entries reach a list of their own window");
        fuzz::require(entries.size() == key.number, "a list keeps its number of entries");
        m_lists.insert(&key, entries);
    }

private:
    CaptionWindow m_window;
    QHash<const CaptionKey*, QString> m_texts;
    QHash<const CaptionKey*, QStringList> m_lists;
};

} // namespace

// A string file read as a host's LoadStrings call reads it, with the main window loaded and the
// layout and properties windows loaded when a key of theirs arrives. Every message keeps a
// text, and a fault names the line it stopped at.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString path = fuzz::writeInputFile(QStringLiteral("Kestrel.str"), data, size);

    RecordingWindow main(CaptionWindow::Main);
    std::optional<RecordingWindow> layout;
    std::optional<RecordingWindow> settings;
    CaptionRegistry registry;
    registry.attach(CaptionWindow::Main, main);
    registry.setLoader(CaptionWindow::Layout,
                       [&] { return &layout.emplace(CaptionWindow::Layout); });
    registry.setLoader(CaptionWindow::Settings,
                       [&] { return &settings.emplace(CaptionWindow::Settings); });

    StringTable table;
    table.setFilePath(path);
    const std::optional<StringFileError> fault = table.LoadStrings(true, &registry);
    fuzz::require(!fault || fault->line >= 1, "a fault names a line");
    fuzz::require(!fault || !table.faultMessage(*fault).isEmpty(), "a fault is told in words");
    for (int i = 0; i < kMessageCount; ++i)
        fuzz::require(!table.text(static_cast<Message>(i)).isEmpty(), "every message has a text");
    return 0;
}
