#include "production/report/LayoutLimits.h"

#include "production/pages/FontCatalog.h"
#include "production/pagination/GridPaginator.h"

#include <algorithm>
#include <cmath>

namespace tabulor {

namespace {

// Replaces values that cannot be laid out, and says so: "[Style 3] FontSize = 0 cannot be laid
// out; 1 is used".
class Clamper
{
public:
    explicit Clamper(const std::function<void(const QString&)>& warn) : m_warn(warn) {}

    void replace(const QString& section, const QString& key, const QString& value,
                 const QString& used) const
    {
        if (m_warn) {
            m_warn(QStringLiteral("[%1] %2 = %3 cannot be laid out; %4 is used")
                       .arg(section, key, value, used));
        }
    }

    void notNegative(const QString& section, const QString& key, qint32& value) const
    {
        if (value >= 0)
            return;
        replace(section, key, QString::number(value), QStringLiteral("0"));
        value = 0;
    }

    // Two margins across a span of the page that leave less than kSmallestPrintableSpan
    // between them give up the shortfall in proportion to their sizes.
    void leaveRoom(const QString& section, double span, const QString& firstKey, qint32& first,
                   const QString& secondKey, qint32& second) const
    {
        const double margins = double(first) + double(second);
        const double allowed = std::max(0.0, span - kSmallestPrintableSpan);
        if (margins <= allowed)
            return;
        const double scale = allowed / margins;
        for (auto [key, margin] : {std::pair<const QString&, qint32&>{firstKey, first},
                                   std::pair<const QString&, qint32&>{secondKey, second}}) {
            const auto used = static_cast<qint32>(std::floor(margin * scale));
            replace(section, key, QString::number(margin), QString::number(used));
            margin = used;
        }
    }

private:
    const std::function<void(const QString&)>& m_warn;
};

// The most newspaper columns that each keep kNarrowestNewspaperColumn across printableWidth.
int columnsThatFit(double printableWidth)
{
    const double perColumn = kNarrowestNewspaperColumn + GridPaginator::kColumnGap;
    const double fit = std::floor((printableWidth + GridPaginator::kColumnGap) / perColumn);
    return static_cast<int>(std::clamp(fit, 1.0, double(GridPaginator::kMostColumns)));
}

} // namespace

ReportDefinition layoutableDefinition(const ReportDefinition& definition, QSizeF pageSize,
                                      const std::function<void(const QString&)>& warn)
{
    ReportDefinition laidOut = definition;
    const Clamper clamp(warn);
    const QString global = QStringLiteral("GlobalInfo");
    GlobalSettings& g = laidOut.global;
    clamp.notNegative(global, QStringLiteral("Top"), g.Top);
    clamp.notNegative(global, QStringLiteral("Bottom"), g.Bottom);
    clamp.notNegative(global, QStringLiteral("Left"), g.Left);
    clamp.notNegative(global, QStringLiteral("Right"), g.Right);
    clamp.leaveRoom(global, pageSize.width(), QStringLiteral("Left"), g.Left,
                    QStringLiteral("Right"), g.Right);
    clamp.leaveRoom(global, pageSize.height(), QStringLiteral("Top"), g.Top,
                    QStringLiteral("Bottom"), g.Bottom);

    // Columns is text; a fraction within range is laid out as its whole part, as ever.
    const double columns = g.Columns.toDouble();
    const int fit = columnsThatFit(pageSize.width() - g.Left - g.Right);
    if (!std::isfinite(columns) || columns < 1 || columns >= fit + 1) {
        const int used = columns >= fit + 1 ? fit : 1;
        clamp.replace(global, QStringLiteral("Columns"), g.Columns, QString::number(used));
        g.Columns = QString::number(used);
    }

    for (int i = 0; i < kStyleCount; ++i) {
        const QString section = QStringLiteral("Style %1").arg(i);
        ReportStyle& s = laidOut.styles[i];
        clamp.notNegative(section, QStringLiteral("Before"), s.Before);
        clamp.notNegative(section, QStringLiteral("After"), s.After);
        // A style without a size is drawn at the default one.
        const double drawn = FontCatalog::fontSpec(s).pointSize;
        const double used = std::clamp(drawn, 1.0, kLargestFontSize);
        if (used != drawn) {
            clamp.replace(section, QStringLiteral("FontSize"), QString::number(s.FontSize),
                          QString::number(used));
            s.FontSize = static_cast<float>(used);
        }
    }
    return laidOut;
}

} // namespace tabulor
