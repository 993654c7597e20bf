#include "production/data/jet/JetSqlFunctions.h"

#include "production/formats/DisplayFormat.h"

#include "production/base/IsoDateTime.h"
#include "production/data/sqlite/SqliteValues.h"

#include <QDateTime>
#include <QHash>
#include <QLocale>
#include <QRegularExpression>

#include <sqlite3.h>

#include <cfenv>
#include <cmath>

namespace tabulor {

namespace {

QString textArg(sqlite3_value* value)
{
    return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_value_text(value)),
                             sqlite3_value_bytes(value));
}

// A date argument: ISO text as the loaded tables and date literals hold it.
QDateTime dateArg(sqlite3_value* value)
{
    const QVariant parsed = parseIsoDateTime(textArg(value));
    if (parsed.metaType() == QMetaType::fromType<QDate>())
        return QDateTime(parsed.toDate(), QTime(0, 0), Qt::UTC);
    return parsed.toDateTime();
}

void resultText(sqlite3_context* context, const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    sqlite3_result_text(context, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
}

// Dates run from the year 100 to the year 9999: no date moved by more days than that is one.
constexpr qint64 kDaysDatesSpan = 3'652'500;

void resultDate(sqlite3_context* context, const QDateTime& when)
{
    if (!when.isValid() || when.date().year() < 100 || when.date().year() > 9999) {
        sqlite3_result_null(context);
        return;
    }
    resultText(context, when.time() == QTime(0, 0)
                            ? when.date().toString(Qt::ISODate)
                            : when.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
}

bool anyNull(int argc, sqlite3_value** argv)
{
    for (int i = 0; i < argc; ++i) {
        if (sqlite3_value_type(argv[i]) == SQLITE_NULL)
            return true;
    }
    return false;
}

double roundHalfEven(double value, int decimals)
{
    const double scale = std::pow(10.0, decimals);
    const int mode = std::fegetround();
    std::fesetround(FE_TONEAREST);
    // The product is rounded to 9 significant decimals first, so that 2.675 (stored as
    // 2.67499999...) still counts as a half.
    const double scaled = std::round(value * scale * 1e6) / 1e6;
    const double rounded = std::nearbyint(scaled);
    std::fesetround(mode);
    return rounded / scale;
}

void likeFunction(sqlite3_context* context, int argc, sqlite3_value** argv)
{
    if (anyNull(argc, argv))
        return sqlite3_result_null(context);
    sqlite3_result_int(context, jetLike(textArg(argv[0]), textArg(argv[1])) ? -1 : 0);
}

void concatFunction(sqlite3_context* context, int, sqlite3_value** argv)
{
    const bool leftNull = sqlite3_value_type(argv[0]) == SQLITE_NULL;
    const bool rightNull = sqlite3_value_type(argv[1]) == SQLITE_NULL;
    if (leftNull && rightNull)
        return sqlite3_result_null(context);
    resultText(context, (leftNull ? QString() : textArg(argv[0])) +
                            (rightNull ? QString() : textArg(argv[1])));
}

void roundFunction(sqlite3_context* context, int argc, sqlite3_value** argv)
{
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL)
        return sqlite3_result_null(context);
    const int decimals = argc > 1 ? sqlite3_value_int(argv[1]) : 0;
    sqlite3_result_double(context, roundHalfEven(sqlite3_value_double(argv[0]), decimals));
}

void intFunction(sqlite3_context* context, int, sqlite3_value** argv)
{
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL)
        return sqlite3_result_null(context);
    sqlite3_result_double(context, std::floor(sqlite3_value_double(argv[0])));
}

void powFunction(sqlite3_context* context, int argc, sqlite3_value** argv)
{
    if (anyNull(argc, argv))
        return sqlite3_result_null(context);
    sqlite3_result_double(context,
                          std::pow(sqlite3_value_double(argv[0]), sqlite3_value_double(argv[1])));
}

void rightFunction(sqlite3_context* context, int argc, sqlite3_value** argv)
{
    if (anyNull(argc, argv))
        return sqlite3_result_null(context);
    const QString text = textArg(argv[0]);
    resultText(context, text.right(std::max(0, sqlite3_value_int(argv[1]))));
}

// DatePart's intervals: yyyy, q, m, y (day of year), d, w (weekday, Sunday 1), ww, h, n, s.
void datePartFunction(sqlite3_context* context, int argc, sqlite3_value** argv)
{
    if (anyNull(argc, argv))
        return sqlite3_result_null(context);
    const QString interval = textArg(argv[0]).toLower();
    const QDateTime when = dateArg(argv[1]);
    if (!when.isValid())
        return sqlite3_result_null(context);
    const QDate date = when.date();
    int part = 0;
    if (interval == u"yyyy")
        part = date.year();
    else if (interval == u"q")
        part = (date.month() - 1) / 3 + 1;
    else if (interval == u"m")
        part = date.month();
    else if (interval == u"y")
        part = date.dayOfYear();
    else if (interval == u"d")
        part = date.day();
    else if (interval == u"w")
        part = date.dayOfWeek() % 7 + 1;
    else if (interval == u"ww")
        part = (date.dayOfYear() + QDate(date.year(), 1, 1).dayOfWeek() % 7 - 1) / 7 + 1;
    else if (interval == u"h")
        part = when.time().hour();
    else if (interval == u"n")
        part = when.time().minute();
    else if (interval == u"s")
        part = when.time().second();
    else
        return sqlite3_result_error(context, "DatePart: unknown interval", -1);
    sqlite3_result_int(context, part);
}

void dateSerialFunction(sqlite3_context* context, int argc, sqlite3_value** argv)
{
    if (anyNull(argc, argv))
        return sqlite3_result_null(context);
    // Months and days beyond their range carry over, as in DateSerial(1997, 13, 0).
    const QDate date = QDate(sqlite3_value_int(argv[0]), 1, 1)
                           .addMonths(sqlite3_value_int(argv[1]) - 1)
                           .addDays(sqlite3_value_int(argv[2]) - 1);
    resultDate(context, QDateTime(date, QTime(0, 0), Qt::UTC));
}

void dateAddFunction(sqlite3_context* context, int argc, sqlite3_value** argv)
{
    if (anyNull(argc, argv))
        return sqlite3_result_null(context);
    const QString interval = textArg(argv[0]).toLower();
    const int count = sqlite3_value_int(argv[1]);
    if (std::abs(qint64(count)) > kDaysDatesSpan)
        return sqlite3_result_null(context);
    const QDateTime when = dateArg(argv[2]);
    QDateTime moved;
    if (interval == u"yyyy")
        moved = when.addYears(count);
    else if (interval == u"q")
        moved = when.addMonths(3 * count);
    else if (interval == u"m")
        moved = when.addMonths(count);
    else if (interval == u"d" || interval == u"y" || interval == u"w")
        moved = when.addDays(count);
    else if (interval == u"ww")
        moved = when.addDays(7 * qint64(count));
    else if (interval == u"h")
        moved = when.addSecs(3600 * qint64(count));
    else if (interval == u"n")
        moved = when.addSecs(60 * qint64(count));
    else if (interval == u"s")
        moved = when.addSecs(count);
    else
        return sqlite3_result_error(context, "DateAdd: unknown interval", -1);
    resultDate(context, moved);
}

// date + days, date - days, date - date (in days).
void dateArithmeticFunction(sqlite3_context* context, int argc, sqlite3_value** argv)
{
    if (anyNull(argc, argv))
        return sqlite3_result_null(context);
    const bool minus = textArg(argv[1]) == u"-";
    const QDateTime left = dateArg(argv[0]);
    const QDateTime right = dateArg(argv[2]);
    if (left.isValid() && right.isValid())
        return sqlite3_result_double(context, right.secsTo(left) / 86400.0 * (minus ? 1 : -1));
    const QDateTime date = left.isValid() ? left : right;
    const double days = sqlite3_value_double(argv[left.isValid() ? 2 : 0]);
    if (!(std::abs(days) <= double(kDaysDatesSpan)))
        return sqlite3_result_null(context);
    resultDate(context, date.addSecs(qint64(std::llround(days * 86400)) * (minus ? -1 : 1)));
}

void cdateFunction(sqlite3_context* context, int, sqlite3_value** argv)
{
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL)
        return sqlite3_result_null(context);
    resultDate(context, dateArg(argv[0]));
}

// Format() on one connection: the named and the simple custom formats ("Short Date", "Medium
// Date", "Long Date", "General Date", "Long Time", "Short Time", "Currency", "Fixed",
// "Standard", "Percent", "General Number", "Yes/No", date patterns of yyyy yy q mmmm mmm mm m
// dddd ddd dd d hh h nn ss AM/PM and number patterns of 0 # , . %); anything else shows the
// value's own text. Values are formatted in the user's locale at the time of the call. What a
// call builds is kept for the next: the locale's settings until the user's locale changes, and
// the formats in recent use compiled.
class JetFormatter
{
public:
    QString format(const QVariant& value, const QString& format)
    {
        const QLocale locale;
        if (locale != m_locale) {
            m_locale = locale;
            m_formatLocale = FormatLocale::fromQLocale(locale);
        }
        auto found = m_formats.constFind(format);
        if (found == m_formats.cend()) {
            // A query formats its rows with a few formats; one that takes its format from a
            // column only pays for compiling again.
            constexpr qsizetype Capacity = 64;
            if (m_formats.size() >= Capacity)
                m_formats.clear();
            found = m_formats.insert(format, DisplayFormat(format));
        }
        return found->apply(value, m_formatLocale);
    }

private:
    std::optional<QLocale> m_locale;
    FormatLocale m_formatLocale;
    QHash<QString, DisplayFormat> m_formats;
};

void formatFunction(sqlite3_context* context, int, sqlite3_value** argv)
{
    QVariant value;
    switch (sqlite3_value_type(argv[0])) {
    case SQLITE_NULL:
        return sqlite3_result_null(context);
    case SQLITE_INTEGER:
        value = qint64(sqlite3_value_int64(argv[0]));
        break;
    case SQLITE_FLOAT:
        value = sqlite3_value_double(argv[0]);
        break;
    default: {
        const QString text = textArg(argv[0]);
        const QVariant date = parseIsoDateTime(text);
        value = date.isValid() ? date : QVariant(text);
    }
    }
    auto* formatter = static_cast<JetFormatter*>(sqlite3_user_data(context));
    resultText(context, formatter->format(value, textArg(argv[1])));
}

// First and Last keep the first and the last value of their group in row order.
template <bool last> void edgeStep(sqlite3_context* context, int, sqlite3_value** argv)
{
    auto** kept =
        static_cast<sqlite3_value**>(sqlite3_aggregate_context(context, sizeof(sqlite3_value*)));
    if (!kept)
        return sqlite3_result_error_nomem(context);
    if (*kept && !last)
        return;
    sqlite3_value_free(*kept);
    *kept = sqlite3_value_dup(argv[0]);
}

void edgeFinal(sqlite3_context* context)
{
    auto** kept = static_cast<sqlite3_value**>(sqlite3_aggregate_context(context, 0));
    if (!kept || !*kept)
        return sqlite3_result_null(context);
    sqlite3_result_value(context, *kept);
    sqlite3_value_free(*kept);
}

} // namespace

bool jetLike(QStringView text, QStringView pattern)
{
    qsizetype t = 0;
    qsizetype p = 0;
    // The last * seen and where the text stood then, to backtrack to.
    qsizetype starP = -1;
    qsizetype starT = 0;
    while (t < text.size()) {
        bool matched = false;
        qsizetype nextP = p;
        if (p < pattern.size()) {
            const QChar c = pattern[p];
            if (c == u'*') {
                starP = p++;
                starT = t;
                continue;
            }
            if (c == u'?') {
                matched = true;
                nextP = p + 1;
            } else if (c == u'#') {
                matched = text[t].isDigit();
                nextP = p + 1;
            } else if (c == u'[') {
                const qsizetype close = pattern.indexOf(u']', p + 1);
                if (close < 0) {
                    matched = text[t].toCaseFolded() == c;
                    nextP = p + 1;
                } else {
                    QStringView set = pattern.sliced(p + 1, close - p - 1);
                    const bool negated = set.startsWith(u'!');
                    if (negated)
                        set = set.sliced(1);
                    bool inSet = false;
                    const QChar ch = text[t].toCaseFolded();
                    for (qsizetype i = 0; i < set.size(); ++i) {
                        if (i + 2 < set.size() && set[i + 1] == u'-') {
                            inSet = inSet || (ch >= set[i].toCaseFolded() &&
                                              ch <= set[i + 2].toCaseFolded());
                            i += 2;
                        } else {
                            inSet = inSet || ch == set[i].toCaseFolded();
                        }
                    }
                    matched = inSet != negated;
                    nextP = close + 1;
                }
            } else {
                matched = text[t].toCaseFolded() == c.toCaseFolded();
                nextP = p + 1;
            }
        }
        if (matched) {
            p = nextP;
            ++t;
        } else if (starP >= 0) {
            p = starP + 1;
            t = ++starT;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == u'*')
        ++p;
    return p == pattern.size();
}

bool registerJetFunctions(sqlite3* db)
{
    struct Scalar
    {
        const char* name;
        int args;
        void (*function)(sqlite3_context*, int, sqlite3_value**);
    };
    const Scalar scalars[] = {
        {"jet_like", 2, likeFunction},         {"jet_concat", 2, concatFunction},
        {"jet_round", 2, roundFunction},       {"jet_int", 1, intFunction},
        {"jet_pow", 2, powFunction},           {"jet_right", 2, rightFunction},
        {"jet_datepart", 2, datePartFunction}, {"jet_dateserial", 3, dateSerialFunction},
        {"jet_dateadd", 3, dateAddFunction},   {"jet_datearith", 3, dateArithmeticFunction},
        {"jet_cdate", 1, cdateFunction},
    };
    const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    for (const Scalar& s : scalars) {
        if (sqlite3_create_function(db, s.name, s.args, flags, nullptr, s.function, nullptr,
                                    nullptr) != SQLITE_OK)
            return false;
    }
    // The connection owns its formatter and deletes it when it closes (or refuses it).
    const auto deleteFormatter = [](void* formatter) {
        delete static_cast<JetFormatter*>(formatter);
    };
    if (sqlite3_create_function_v2(db, "jet_format", 2, flags, new JetFormatter, formatFunction,
                                   nullptr, nullptr, deleteFormatter) != SQLITE_OK)
        return false;
    return sqlite3_create_function(db, "jet_first", 1, SQLITE_UTF8, nullptr, nullptr,
                                   edgeStep<false>, edgeFinal) == SQLITE_OK &&
           sqlite3_create_function(db, "jet_last", 1, SQLITE_UTF8, nullptr, nullptr, edgeStep<true>,
                                   edgeFinal) == SQLITE_OK;
}

} // namespace tabulor
