#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringDecoder>

#include <map>

namespace tabulor {

// The Windows code page that an RTF font's character set (\fcharsetN) writes its bytes in, or
// 0 when the character set leaves that to the document (\ansicpgN).
int codePageOfCharset(int charset);

// Decodes bytes of the single- and double-byte Windows code pages that RTF documents are
// written in. A code page that is not known is read as Windows-1252; a byte sequence that the
// code page does not define becomes U+FFFD.
class RtfCodePages
{
public:
    static constexpr int Western = 1252;

    static bool isKnown(int codePage);
    QString decode(int codePage, QByteArrayView bytes);

private:
    std::map<int, QStringDecoder> m_decoders;
};

} // namespace tabulor
