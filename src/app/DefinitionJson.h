#pragma once

#include "definition/ReportDefinition.h"

#include <QJsonObject>

namespace tabulor::cli {

// The definition as JSON under the definition file's own key names.
QJsonObject definitionJson(const ReportDefinition& definition);

} // namespace tabulor::cli
