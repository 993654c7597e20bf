#include "production/RichText.h"

namespace tabulor {

FontSpec RichTextFormat::font(const FontSpec& style) const
{
    FontSpec spec = style;
    spec.family = family.value_or(style.family);
    spec.pointSize = pointSize.value_or(style.pointSize);
    spec.bold = bold.value_or(style.bold);
    spec.italic = italic.value_or(style.italic);
    spec.underline = underline.value_or(style.underline);
    spec.strikeOut = strikeOut.value_or(style.strikeOut);
    return spec;
}

} // namespace tabulor
