#include "production/richtext/RtfCodePages.h"

#include "production/base/CodePages.h"

namespace tabulor {

int codePageOfCharset(int charset)
{
    switch (charset) {
    case 0: // ANSI
        return 1252;
    case 77: // Mac Roman
        return 10000;
    case 128: // Shift JIS
        return 932;
    case 129: // Hangul
        return 949;
    case 134: // GB 2312
        return 936;
    case 136: // Big5
        return 950;
    case 161: // Greek
        return 1253;
    case 162: // Turkish
        return 1254;
    case 163: // Vietnamese
        return 1258;
    case 177: // Hebrew
        return 1255;
    case 178: // Arabic
        return 1256;
    case 186: // Baltic
        return 1257;
    case 204: // Cyrillic
        return 1251;
    case 222: // Thai
        return 874;
    case 238: // Central European
        return 1250;
    case 255: // OEM
        return 437;
    default: // 1 "default", 2 symbol, and character sets without a code page of their own
        return 0;
    }
}

bool RtfCodePages::isKnown(int codePage)
{
    return codePageEncoding(codePage) != nullptr;
}

QString RtfCodePages::decode(int codePage, QByteArrayView bytes)
{
    if (!isKnown(codePage))
        codePage = Western;
    auto it = m_decoders.find(codePage);
    if (it == m_decoders.end()) {
        QStringDecoder decoder(codePageEncoding(codePage), QStringDecoder::Flag::Stateless);
        // Without converters for the other code pages, Latin-1 still reads ASCII.
        if (!decoder.isValid())
            decoder = QStringDecoder(QStringDecoder::Latin1, QStringDecoder::Flag::Stateless);
        it = m_decoders.emplace(codePage, std::move(decoder)).first;
    }
    return it->second.decode(bytes);
}

} // namespace tabulor
