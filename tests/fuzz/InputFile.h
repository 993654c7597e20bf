#pragma once

#include "FuzzRequire.h"

#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>

namespace tabulor::fuzz {

// The input written to a file of the given name, for the readers that open a file by its name.
// The file lives in a folder of its own for as long as the process runs, and is written over
// by every input.
inline QString writeInputFile(const QString& name, const uint8_t* data, size_t size)
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath(name);
    QFile file(path);
    require(file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
                file.write(reinterpret_cast<const char*>(data), qint64(size)) == qint64(size),
            "the input file is written");
    return path;
}

} // namespace tabulor::fuzz
