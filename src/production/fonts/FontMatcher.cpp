#include "production/fonts/FontMatcher.h"

#include <QHash>
#include <QMutex>

#include <fontconfig/fontconfig.h>
#include <hb.h>

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

// The width of the face's "l" in ems, which in a face of one family tells how heavy its
// strokes are; nullopt when the file has no "l". Files are read once per process.
std::optional<double> stemWidth(const FontFile& file)
{
    static QMutex mutex;
    static QHash<QByteArray, std::optional<double>> known;
    const QByteArray key = file.path + '#' + QByteArray::number(file.index);
    const QMutexLocker lock(&mutex);
    const auto found = known.constFind(key);
    if (found != known.cend())
        return *found;
    std::optional<double> width;
    if (hb_blob_t* blob = hb_blob_create_from_file_or_fail(file.path.constData())) {
        hb_face_t* face = hb_face_create(blob, unsigned(file.index));
        hb_font_t* font = hb_font_create(face); // in font units
        hb_codepoint_t glyph = 0;
        hb_glyph_extents_t extents{};
        if (hb_face_get_upem(face) > 0 && hb_font_get_nominal_glyph(font, 'l', &glyph) &&
            hb_font_get_glyph_extents(font, glyph, &extents))
            width = double(extents.width) / hb_face_get_upem(face);
        hb_font_destroy(font);
        hb_face_destroy(face);
        hb_blob_destroy(blob);
    }
    known.insert(key, width);
    return width;
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
    match.syntheticBold =
        bold && (weight < FC_WEIGHT_DEMIBOLD || drawsLikeRegular(match.file, match.family, italic));
    match.syntheticItalic = italic && slant == FC_SLANT_ROMAN;
    match.m_candidates = std::move(candidates);
    return match;
}

bool FontMatcher::drawsLikeRegular(const FontFile& bold, const QString& family, bool italic) const
{
    const std::optional<FontMatch> regular = match(family, false, italic);
    if (!regular || regular->file == bold)
        return false;
    const std::optional<double> boldStem = stemWidth(bold);
    const std::optional<double> regularStem = stemWidth(regular->file);
    // A real bold face has strokes a third or more heavier than its regular face.
    return boldStem && regularStem && *boldStem < *regularStem * 1.15;
}

} // namespace tabulor
