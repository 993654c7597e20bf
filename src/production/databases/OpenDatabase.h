#pragma once

#include "production/data/DataSource.h"

#include <QString>

#include <memory>

namespace tabulor {

// Opens the database that a definition names: a file path or a server URI. Null on failure,
// with *error saying why in words for the user.
std::unique_ptr<DataSource> openDatabase(const QString& name, QString* error);

} // namespace tabulor
