#pragma once

#include "definition/ProfileFile.h"
#include "definition/ReportDefinition.h"

#include <QString>

namespace tabulor {

// The settings file: TABULOR_SETTINGS when set, else tabulor/tabulor.ini in the user's
// configuration folder.
QString settingsFilePath();

// One settings value as the classic reader gives it: cut to 127 characters, the default
// when missing or empty.
QString ReadSetting(const ProfileFile& settings, QStringView section, QStringView key,
                    const QString& defaultValue);

// Reads the user's default look over the definition's global settings and styles. A missing
// key keeps the current value; the first value that does not convert stops the load, and the
// values read before it stay. Returns false in that case, with *badKey naming it.
bool LoadDefaultStyle(ReportDefinition& definition, const ProfileFile& settings,
                      QString* badKey = nullptr);

// Writes the definition's global settings and styles as the user's default look. Underline
// and strike-through are never part of it.
void SaveDefaultStyle(const ReportDefinition& definition, ProfileFile& settings);

} // namespace tabulor
