#include "localisation/CaptionRegistry.h"

#include "localisation/TextHelpers.h"

namespace tabulor {

namespace {

std::size_t slot(CaptionWindow window)
{
    return static_cast<std::size_t>(window);
}

} // namespace

void applyCaption(CaptionReceiver& receiver, const CaptionKey& key, const QString& value)
{
    switch (key.target) {
    case CaptionTarget::List: {
        QStringList entries = receiver.listEntries(key);
        if (FillListFromText(entries, value, key.number))
            receiver.setListEntries(key, entries);
        return;
    }
    case CaptionTarget::SampleFormat:
        receiver.setCaption(key, QStringLiteral(";|") + value);
        return;
    case CaptionTarget::Text:
    case CaptionTarget::ToolTip:
    case CaptionTarget::Tab:
    case CaptionTarget::Property:
        receiver.setCaption(key, value);
        return;
    }
}

void applyBuiltInCaptions(CaptionWindow window, CaptionReceiver& receiver)
{
    for (const CaptionKey& key : captionKeys()) {
        if (key.window == window)
            applyCaption(receiver, key, fromAscii(key.builtIn));
    }
}

void CaptionRegistry::setLoader(CaptionWindow window, Loader loader)
{
    m_loaders[slot(window)] = std::move(loader);
}

void CaptionRegistry::attach(CaptionWindow window, CaptionReceiver& receiver)
{
    m_receivers[slot(window)] = &receiver;
}

void CaptionRegistry::detach(CaptionWindow window, const CaptionReceiver& receiver)
{
    if (m_receivers[slot(window)] == &receiver)
        m_receivers[slot(window)] = nullptr;
}

void CaptionRegistry::apply(const CaptionKey& key, const QString& value)
{
    CaptionReceiver*& receiver = m_receivers[slot(key.window)];
    if (!receiver && m_loaders[slot(key.window)])
        receiver = m_loaders[slot(key.window)]();
    if (receiver)
        applyCaption(*receiver, key, value);
}

} // namespace tabulor
