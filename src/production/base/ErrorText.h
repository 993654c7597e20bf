#pragma once

#include <QString>

namespace tabulor {

// Stores a message for the caller when it asked for one.
inline void setError(QString* error, const QString& message)
{
    if (error)
        *error = message;
}

} // namespace tabulor
