#include "production/base/CodePages.h"

namespace tabulor {

const char* codePageEncoding(int codePage)
{
    switch (codePage) {
    case 437:
        return "IBM437";
    case 850:
        return "IBM850";
    case 852:
        return "IBM852";
    case 866:
        return "IBM866";
    case 874:
        return "windows-874";
    case 932:
        return "Shift_JIS";
    case 936:
        return "GBK";
    case 949:
        return "windows-949";
    case 950:
        return "Big5";
    case 1250:
        return "windows-1250";
    case 1251:
        return "windows-1251";
    case 1252:
        return "windows-1252";
    case 1253:
        return "windows-1253";
    case 1254:
        return "windows-1254";
    case 1255:
        return "windows-1255";
    case 1256:
        return "windows-1256";
    case 1257:
        return "windows-1257";
    case 1258:
        return "windows-1258";
    case 10000:
        return "macintosh";
    case 65001:
        return "UTF-8";
    default:
        return nullptr;
    }
}

} // namespace tabulor
