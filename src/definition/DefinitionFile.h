#pragma once

#include "definition/ProfileFile.h"
#include "definition/ReportDefinition.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace tabulor {

// The value of "Version" in [General]: the file description and the version numbers.
QString definitionFileVersion();

// The definition file's text: CRLF line ends, "key = value" lines, sections in their fixed
// order, UTF-8.
QByteArray definitionFileBytes(const ReportDefinition& definition);

// Writes the definition to path through a temporary file, so that a failed save keeps the
// previous file. Returns false with *error in words for the user.
[[nodiscard]] bool WriteReportFile(const ReportDefinition& definition, const QString& path,
                                   QString* error);

// One value of a definition file, read as the classic profile reader does: cut to 257
// characters, the default when missing or empty.
QString ReadFileValue(const ProfileFile& file, QStringView section, QStringView key,
                      const QString& defaultValue = QString());

// Where a definition file stopped being readable: the key that is missing (value empty) or
// whose value is not valid.
struct DefinitionReadError
{
    QString section;
    QString key;
    QString value;
};

// Everything a definition file sets besides its data source, read but not yet applied.
struct StagedDefinition
{
    GlobalSettings global;
    StyleTable styles;
    QList<ReportField> fields;
    QStringList groups;
    QStringList details;
};

// Reads [GlobalInfo], the styles, the fields and the group and detail lists. Styles start as
// copies of current's so that their names and row kinds stay. Stops at the first key that is
// required and missing or malformed.
std::optional<StagedDefinition> readStagedDefinition(const ProfileFile& file,
                                                     const StyleTable& current,
                                                     DefinitionReadError* error);

} // namespace tabulor
