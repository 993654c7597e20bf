#pragma once

#include "localisation/CaptionKeys.h"

#include <QString>
#include <QStringList>

#include <array>
#include <functional>

namespace tabulor {

// A loaded window as the string table sees it: something whose controls can be relabelled by
// caption key.
class CaptionReceiver
{
public:
    virtual ~CaptionReceiver() = default;

    // Sets the text that key targets (any target but a list). A sample grid's format string
    // arrives complete, with its ";|" in front.
    virtual void setCaption(const CaptionKey& key, const QString& text) = 0;

    // The entries that the list named by key holds now, and their replacement.
    virtual QStringList listEntries(const CaptionKey& key) const = 0;
    virtual void setListEntries(const CaptionKey& key, const QStringList& entries) = 0;
};

// Gives value to the control that key targets: a list is refilled only when value holds
// exactly as many entries as the list must have.
void applyCaption(CaptionReceiver& receiver, const CaptionKey& key, const QString& value);

// Gives every control of window that has a caption key its built-in text; for a window that
// has just been created.
void applyBuiltInCaptions(CaptionWindow window, CaptionReceiver& receiver);

// The windows that caption keys can reach. A window attaches itself while it is loaded and
// detaches when it is unloaded. A window that is not loaded when one of its keys arrives is
// loaded through its loader, which creates it without showing it and returns it.
class CaptionRegistry
{
public:
    using Loader = std::function<CaptionReceiver*()>;

    void setLoader(CaptionWindow window, Loader loader);
    void attach(CaptionWindow window, CaptionReceiver& receiver);
    // Does nothing unless receiver is the one attached for window.
    void detach(CaptionWindow window, const CaptionReceiver& receiver);

    // Applies value to key's target, loading its window first when needed. Without a window
    // and without a way to load one the value is dropped.
    void apply(const CaptionKey& key, const QString& value);

private:
    std::array<CaptionReceiver*, kCaptionWindowCount> m_receivers{};
    std::array<Loader, kCaptionWindowCount> m_loaders;
};

} // namespace tabulor
