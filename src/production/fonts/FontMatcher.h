#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

namespace tabulor {

// One face in a font file (a collection file holds several).
struct FontFile
{
    QByteArray path;
    int index = 0;

    bool operator==(const FontFile&) const = default;
};

// The faces found for one font request: the closest face first, then the others in order of
// closeness, for the characters the first lacks.
class FontMatch
{
public:
    FontFile file;
    // The family of the closest face, as fontconfig names it.
    QString family;
    // The face lies in a folder that only this configuration searches, so that other users of
    // fonts (Qt's font database among them) know it only once it is registered with them.
    bool privateFile = false;
    // Bold asked for, but the face found is not bold, or is bold in name only: its strokes
    // are no heavier than its regular face's. The glyphs are drawn thickened instead.
    bool syntheticBold = false;
    bool syntheticItalic = false; // italic asked for, but the face found is upright

    // The closest face that has character c, if any face has it.
    std::optional<FontFile> fileCovering(char32_t c) const;

private:
    friend class FontMatcher;
    struct Candidates;
    std::shared_ptr<const Candidates> m_candidates;
};

// Finds installed outline fonts through fontconfig: the one place where a family that a style
// names becomes a font file, for measuring the layout and for embedding in a PDF alike. The
// Windows-compatibility fonts (among them the stand-in for the classic default face) are
// installed outside the font search path; they are added here, to a configuration of our own,
// so that other users of fontconfig are left alone.
class FontMatcher
{
public:
    FontMatcher();

    // The closest installed face; nullopt only when no outline font is installed at all.
    std::optional<FontMatch> match(const QString& family, bool bold, bool italic) const;

private:
    // Whether a face that calls itself bold has strokes no heavier than the family's regular
    // face; the compatibility package's bold stand-in for the classic default face is one.
    bool drawsLikeRegular(const FontFile& bold, const QString& family, bool italic) const;
};

// How much thickened glyphs grow: the width of the outline drawn around them, as a part of the
// font size.
inline constexpr double kSyntheticBoldStroke = 0.03;

} // namespace tabulor
