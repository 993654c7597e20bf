#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace tabulor {

// One piece of Jet SQL text.
struct JetSqlLexeme
{
    enum class Kind
    {
        Name,
        Bracketed, // a [name], without its brackets
        String,    // a text in double or single quotes, doubled quotes made single
        Number,
        Date, // a #date#, without its # signs
        Symbol,
        End
    };

    Kind kind = Kind::End;
    QString text;
};

// Splits Jet SQL into names, [bracketed names], strings, numbers, #dates# and symbols, the last
// lexeme of kind End; nullopt with *error set when a bracket, quote or # sign is not closed or
// a character is not understood.
std::optional<QList<JetSqlLexeme>> tokenizeJetSql(const QString& sql, QString* error);

} // namespace tabulor
