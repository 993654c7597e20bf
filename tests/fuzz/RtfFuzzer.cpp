#include "FuzzRequire.h"

#include "definition/TextDecoding.h"
#include "production/richtext/RtfReader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

using namespace tabulor;

namespace {

bool isAllowedInRun(QChar c)
{
    return c >= u' ' || c == u'\t' || c == u'\n';
}

} // namespace

// A report title decoded as a definition file's text is, then read as rich text. Reading never
// fails, but what it gives stays in proportion to the input: every paragraph and character
// took at least one character of the title, runs hold text and no control characters, and a
// problem lies inside the title.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString title =
        decodeText(QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size)));
    RtfProblem problem;
    const RichText text = readRtf(title, &problem);

    qsizetype produced = 0;
    for (const RichTextParagraph& paragraph : text.paragraphs) {
        ++produced;
        for (const RichTextRun& run : paragraph.runs) {
            fuzz::require(!run.text.isEmpty(), "a run holds text");
            fuzz::require(std::all_of(run.text.begin(), run.text.end(), isAllowedInRun),
                          "a run holds no control characters but tabs and line feeds");
            produced += run.text.size();
        }
    }
    fuzz::require(produced <= title.size() + 1, "the text read is no longer than the title");
    fuzz::require(problem.offset >= 0 && problem.offset <= title.size(),
                  "a problem lies inside the title");
    return 0;
}
