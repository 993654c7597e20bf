#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace tabulor::test {

// Folders handed to the tests by CTest (see tests/CMakeLists.txt).
QString testDataPath(const QString& name);   // tests/<topic>/data/<name>
QString sharedDataPath(const QString& name); // the real databases beside the repository
QString samplePath(const QString& name);     // the built sample database and definitions
QString toolPath();                          // the tabulor command line

QByteArray readBytes(const QString& path);
void writeBytes(const QString& path, const QByteArray& bytes);

// Copies a file into dir and returns the copy's path, so that tests never change originals.
QString copyInto(const QTemporaryDir& dir, const QString& path);

} // namespace tabulor::test
