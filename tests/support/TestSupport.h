#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include "QtPrinters.h"

namespace tabulor::test {

#ifdef TABULOR_TEST_DATA
// The folders a test reads, compiled into each test executable (see tests/CMakeLists.txt).
inline QString testDataPath(const QString& name) // tests/<topic>/data/<name>
{
    return QStringLiteral(TABULOR_TEST_DATA "/") + name;
}
inline QString sharedDataPath(const QString& name) // the real databases beside the repository
{
    return QStringLiteral(TABULOR_SHARED_DATA "/") + name;
}
inline QString samplePath(const QString& name) // the built sample database and definitions
{
    return QStringLiteral(TABULOR_SAMPLE_DIR "/") + name;
}
inline QString toolPath() // the tabulor command line
{
    return QStringLiteral(TABULOR_TOOL);
}
#endif

QByteArray readBytes(const QString& path);
void writeBytes(const QString& path, const QByteArray& bytes);

// Copies a file into dir and returns the copy's path, so that tests never change originals.
QString copyInto(const QTemporaryDir& dir, const QString& path);

} // namespace tabulor::test
