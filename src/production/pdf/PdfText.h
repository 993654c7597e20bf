#pragma once

#include "production/fonts/FontMatcher.h"
#include "production/pages/DisplayList.h"
#include "production/pdf/PdfFont.h"
#include "production/pdf/PdfSyntax.h"
#include "production/pdf/ShapedText.h"

#include <QHash>

#include <memory>
#include <vector>

namespace tabulor {

class PdfOutput;

// How the text of one font request is drawn beyond its glyphs; lengths in 1/1000 point, offsets
// up from the baseline.
struct PdfTextStyle
{
    qint64 size = 0;
    bool syntheticBold = false;   // drawn filled and stroked
    bool syntheticItalic = false; // drawn slanted
    qint64 underlineOffset = 0;
    qint64 underlineSize = 0;
    qint64 strikeoutOffset = 0;
    qint64 strikeoutSize = 0;
};

// A line of text as content stream operators: shown from the text position with the font
// firstFont selected (fonts for characters it lacks are selected inside), leaving lastFont
// selected.
struct EncodedRun
{
    PdfBuffer ops;
    int firstFont = 0;
    int lastFont = 0;
    qint64 width = 0; // 1/1000 point
};

// Turns text runs into content stream operators: finds the fonts, shapes the text, gives each
// glyph its code in an embedded font, and remembers the runs it encoded, because report cells
// repeat the same texts page after page.
class PdfText
{
public:
    explicit PdfText(PdfOutput& out);
    ~PdfText();
    PdfText(const PdfText&) = delete;
    PdfText& operator=(const PdfText&) = delete;

    // The request for a font, or -1 (see errorString()) when no font can be found for it.
    int request(const FontSpec& font);
    const PdfTextStyle& style(int request) const;
    // Valid until the next call.
    const EncodedRun& encode(int request, const QString& text);

    // "/F1 12 0 R..." for the fonts used so far.
    void writeFontResources(PdfBuffer& out) const;
    [[nodiscard]] bool writeFonts(QString* error);
    QString errorString() const { return m_error; }

private:
    struct Request;
    // The font of a face, embedded the first time it is asked for; -1 if it cannot be loaded.
    int fontFor(const FontFile& file);

    PdfOutput& m_out;
    FontMatcher m_matcher;
    TextShaper m_shaper;
    ShapedText m_shaped;
    EncodedRun m_scratch;
    std::vector<std::unique_ptr<PdfFont>> m_fonts; // resource /F<n> is m_fonts[n - 1]
    std::vector<std::unique_ptr<Request>> m_requests;
    QHash<QString, int> m_requestIds;
    QString m_error;
};

} // namespace tabulor
