#include "production/fonts/FontMatcher.h"

#include <fontconfig/fontconfig.h>

#include <cstring>
#include <vector>

namespace tabulor {

namespace {

// Debian's Windows-compatibility fonts, outside fontconfig's search path.
const char* const kCompatibilityFontDir = "/usr/share/wine/fonts";

// Built once per process: loading the configuration and its caches takes milliseconds, and a
// configuration is safe to share between threads.
FcConfig* configuration()
{
    static FcConfig* const config = [] {
        FcConfig* loaded = FcInitLoadConfigAndFonts();
        if (loaded)
            FcConfigAppFontAddDir(loaded, reinterpret_cast<const FcChar8*>(kCompatibilityFontDir));
        return loaded;
    }();
    return config;
}

// Faces this writer can embed: scalable outlines in a TrueType or OpenType file, not variable.
bool embeddable(FcPattern* font)
{
    FcBool outline = FcFalse;
    FcBool variable = FcFalse;
    FcChar8* format = nullptr;
    int index = 0;
    if (FcPatternGetBool(font, FC_OUTLINE, 0, &outline) != FcResultMatch || !outline)
        return false;
    if (FcPatternGetBool(font, FC_VARIABLE, 0, &variable) == FcResultMatch && variable)
        return false;
    if (FcPatternGetInteger(font, FC_INDEX, 0, &index) == FcResultMatch && index > 0xFFFF)
        return false; // a named instance of a variable font
    if (FcPatternGetString(font, FC_FONTFORMAT, 0, &format) != FcResultMatch)
        return false;
    const char* name = reinterpret_cast<const char*>(format);
    return std::strcmp(name, "TrueType") == 0 || std::strcmp(name, "CFF") == 0;
}

QString familyOf(FcPattern* font)
{
    FcChar8* family = nullptr;
    if (FcPatternGetString(font, FC_FAMILY, 0, &family) != FcResultMatch)
        return {};
    return QString::fromUtf8(reinterpret_cast<const char*>(family));
}

FontFile fileOf(FcPattern* font)
{
    FcChar8* path = nullptr;
    int index = 0;
    FcPatternGetString(font, FC_FILE, 0, &path);
    FcPatternGetInteger(font, FC_INDEX, 0, &index);
    return {QByteArray(reinterpret_cast<const char*>(path)), index};
}

} // namespace

struct FontMatch::Candidates
{
    FcFontSet* set = nullptr;
    std::vector<FcPattern*> fonts; // the embeddable ones, closest first

    ~Candidates()
    {
        if (set)
            FcFontSetDestroy(set);
    }
};

std::optional<FontFile> FontMatch::fileCovering(char32_t c) const
{
    for (FcPattern* font : m_candidates->fonts) {
        FcCharSet* charset = nullptr;
        if (FcPatternGetCharSet(font, FC_CHARSET, 0, &charset) == FcResultMatch &&
            FcCharSetHasChar(charset, c))
            return fileOf(font);
    }
    return std::nullopt;
}

FontMatcher::FontMatcher()
{
    configuration();
}

std::optional<FontMatch> FontMatcher::match(const QString& family, bool bold, bool italic) const
{
    FcConfig* config = configuration();
    if (!config)
        return std::nullopt;
    FcPattern* pattern = FcPatternCreate();
    const QByteArray name = family.toUtf8();
    if (!name.isEmpty())
        FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(name.constData()));
    FcPatternAddInteger(pattern, FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(pattern, FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(pattern, FC_OUTLINE, FcTrue);
    FcConfigSubstitute(config, pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);
    FcResult result = FcResultNoMatch;
    auto candidates = std::make_shared<FontMatch::Candidates>();
    candidates->set = FcFontSort(config, pattern, FcTrue, nullptr, &result);
    FcPatternDestroy(pattern);
    if (candidates->set) {
        for (int i = 0; i < candidates->set->nfont; ++i) {
            if (embeddable(candidates->set->fonts[i]))
                candidates->fonts.push_back(candidates->set->fonts[i]);
        }
    }
    if (candidates->fonts.empty())
        return std::nullopt;

    FcPattern* best = candidates->fonts.front();
    FontMatch match;
    match.file = fileOf(best);
    match.family = familyOf(best);
    match.privateFile = match.file.path.startsWith(QByteArray(kCompatibilityFontDir) + '/');
    int weight = FC_WEIGHT_REGULAR;
    int slant = FC_SLANT_ROMAN;
    FcPatternGetInteger(best, FC_WEIGHT, 0, &weight);
    FcPatternGetInteger(best, FC_SLANT, 0, &slant);
    match.syntheticBold = bold && weight < FC_WEIGHT_DEMIBOLD;
    match.syntheticItalic = italic && slant == FC_SLANT_ROMAN;
    match.m_candidates = std::move(candidates);
    return match;
}

} // namespace tabulor
