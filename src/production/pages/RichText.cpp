#include "production/pages/RichText.h"

namespace tabulor {

FontSpec RichTextFormat::font(const FontSpec& style) const
{
    FontSpec fontSpec = style;
    fontSpec.family = family.value_or(style.family);
    fontSpec.pointSize = pointSize.value_or(style.pointSize);
    fontSpec.bold = bold.value_or(style.bold);
    fontSpec.italic = italic.value_or(style.italic);
    fontSpec.underline = underline.value_or(style.underline);
    fontSpec.strikeOut = strikeOut.value_or(style.strikeOut);
    return fontSpec;
}

} // namespace tabulor
