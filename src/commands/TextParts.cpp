#include "commands/TextParts.h"

namespace tabulor {

QString joinTextParts(const TextParts& parts)
{
    return parts[0] + u'|' + parts[1] + u'|' + parts[2];
}

TextParts splitTextParts(const QString& text)
{
    TextParts parts;
    qsizetype start = 0;
    for (int i = 0; i < 2; ++i) {
        const qsizetype bar = text.indexOf(u'|', start);
        if (bar < 0) {
            parts[i] = text.mid(start);
            return parts;
        }
        parts[i] = text.mid(start, bar - start);
        start = bar + 1;
    }
    parts[2] = text.mid(start);
    return parts;
}

} // namespace tabulor
