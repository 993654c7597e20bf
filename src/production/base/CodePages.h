#pragma once

namespace tabulor {

// The name under which the platform's text converters know a Windows code page (the code
// pages that definition files, rich text and old databases are written in), or null for one
// they do not know.
const char* codePageEncoding(int codePage);

} // namespace tabulor
