#include "production/data/jet/sql/JetSqlLexer.h"

namespace tabulor {

std::optional<QList<JetSqlLexeme>> tokenizeJetSql(const QString& sql, QString* error)
{
    using Kind = JetSqlLexeme::Kind;
    QList<JetSqlLexeme> tokens;
    qsizetype i = 0;
    const auto fail = [&](const QString& what) {
        *error = what;
        return std::nullopt;
    };
    while (i < sql.size()) {
        const QChar c = sql[i];
        if (c.isSpace()) {
            ++i;
        } else if (c == u'[') {
            const qsizetype end = sql.indexOf(u']', i + 1);
            if (end < 0)
                return fail(QStringLiteral("a name in brackets is not closed"));
            tokens.append({Kind::Bracketed, sql.mid(i + 1, end - i - 1)});
            i = end + 1;
        } else if (c == u'"' || c == u'\'') {
            // A doubled quote stands for one quote inside the text.
            QString text;
            qsizetype j = i + 1;
            for (;; ++j) {
                if (j >= sql.size())
                    return fail(QStringLiteral("a text in quotes is not closed"));
                if (sql[j] == c) {
                    if (j + 1 < sql.size() && sql[j + 1] == c) {
                        text += c;
                        ++j;
                        continue;
                    }
                    break;
                }
                text += sql[j];
            }
            tokens.append({Kind::String, text});
            i = j + 1;
        } else if (c == u'#') {
            const qsizetype end = sql.indexOf(u'#', i + 1);
            if (end < 0)
                return fail(QStringLiteral("a date in # signs is not closed"));
            tokens.append({Kind::Date, sql.mid(i + 1, end - i - 1).trimmed()});
            i = end + 1;
        } else if (c.isDigit() || (c == u'.' && i + 1 < sql.size() && sql[i + 1].isDigit())) {
            qsizetype j = i;
            while (j < sql.size() && (sql[j].isDigit() || sql[j] == u'.'))
                ++j;
            if (j < sql.size() && (sql[j] == u'e' || sql[j] == u'E')) {
                ++j;
                if (j < sql.size() && (sql[j] == u'+' || sql[j] == u'-'))
                    ++j;
                while (j < sql.size() && sql[j].isDigit())
                    ++j;
            }
            tokens.append({Kind::Number, sql.mid(i, j - i)});
            i = j;
        } else if (c.isLetter() || c == u'_') {
            qsizetype j = i;
            while (j < sql.size() && (sql[j].isLetterOrNumber() || sql[j] == u'_'))
                ++j;
            tokens.append({Kind::Name, sql.mid(i, j - i)});
            i = j;
        } else {
            const QString two = sql.mid(i, 2);
            if (two == u"<>" || two == u"<=" || two == u">=") {
                tokens.append({Kind::Symbol, two});
                i += 2;
            } else if (QStringLiteral("=<>+-*/\\^&(),.!;").contains(c)) {
                tokens.append({Kind::Symbol, QString(c)});
                ++i;
            } else {
                return fail(QStringLiteral("the character '%1' is not understood").arg(c));
            }
        }
    }
    tokens.append({Kind::End, {}});
    return tokens;
}

} // namespace tabulor
