#include "FuzzRequire.h"

#include "definition/DefinitionFile.h"
#include "definition/TextDecoding.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

using namespace tabulor;

namespace {

QString recordSourceValue(const ProfileFile& file, QStringView key)
{
    return ReadFileValue(file, u"RecordSource", key);
}

// Whether a line gives a value in quotes. Reading takes the quotes off and saving writes a
// text as it stands, so the format itself cannot keep such a value through a save.
bool givesQuotedValue(const QString& line)
{
    const qsizetype equals = line.indexOf(u'=');
    if (equals < 0)
        return false;
    const QString rest = line.mid(equals + 1);
    const QString value = rest.left(rest.indexOf(QChar(u'\0'))).trimmed(); // the whole without NUL
    return value.size() >= 2 && value.startsWith(u'"') && value.endsWith(u'"');
}

} // namespace

// A definition file read as ReportSession::OpenReportFile reads it: decoded, split into
// sections and keys, then every setting staged. A refusal names where the file went wrong;
// what is staged comes back unchanged from the file that saving it writes, so that opening and
// saving a report loses nothing but what the format cannot hold.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));
    const QString text = decodeText(bytes);
    const ProfileFile file = ProfileFile::fromText(text);
    const StyleTable current = namedStyleTable();
    DefinitionReadError error;
    const std::optional<StagedDefinition> staged = readStagedDefinition(file, current, &error);
    if (!staged) {
        fuzz::require(!error.section.isEmpty() && !error.key.isEmpty(),
                      "a refused definition names the section and key at fault");
        return 0;
    }

    if (std::ranges::any_of(splitLines(text), givesQuotedValue))
        return 0;

    ReportDefinition saved;
    saved.DataBaseName = recordSourceValue(file, u"DataBaseName");
    saved.RecordSource = recordSourceValue(file, u"RecordSource");
    saved.global = staged->global;
    saved.styles = staged->styles;
    saved.fields = staged->fields;
    saved.groups = staged->groups;
    saved.details = staged->details;
    const ProfileFile written = ProfileFile::fromText(decodeText(definitionFileBytes(saved)));
    fuzz::require(!ReadFileValue(written, u"General", u"Version").isEmpty(),
                  "a saved definition has a version");
    fuzz::require(recordSourceValue(written, u"DataBaseName") == saved.DataBaseName &&
                      recordSourceValue(written, u"RecordSource") == saved.RecordSource,
                  "the data source is saved as it was read");

    DefinitionReadError rereadError;
    const std::optional<StagedDefinition> reread =
        readStagedDefinition(written, current, &rereadError);
    fuzz::require(reread.has_value(), "a saved definition reads back");
    fuzz::require(reread->global == staged->global, "the global settings are saved as read");
    fuzz::require(reread->styles == staged->styles, "the styles are saved as read");
    fuzz::require(reread->fields == staged->fields, "the fields are saved as read");
    fuzz::require(reread->groups == staged->groups && reread->details == staged->details,
                  "the group and detail lists are saved as read");
    return 0;
}
