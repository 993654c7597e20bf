#include "gui/properties/StyleSample.h"

#include "gui/design/RowLook.h"

#include <QFontMetrics>
#include <QPainter>

namespace tabulor {

namespace {

constexpr int kPadding = 4; // pixels between the row's edges and its texts

RowLook lookOf(const ReportStyle& style, const FontCatalog& fonts, double dpi)
{
    const QFont font = fonts.font(style);
    RowLook look;
    look.font = font;
    look.thickened = fonts.thickened(FontCatalog::fontSpec(style));
    look.text = FontCatalog::colour(style.Text);
    look.back = FontCatalog::colour(style.Back);
    look.rule = FontCatalog::colour(style.Color);
    look.ruleAbove = std::clamp<int>(style.Top, 0, 3);
    look.ruleBelow = std::clamp<int>(style.Bottom, 0, 3);
    look.before = twipsToPixels(style.Before, dpi);
    look.after = twipsToPixels(style.After, dpi);
    look.textHeight = QFontMetrics(font).height();
    look.padding = kPadding;
    return look;
}

} // namespace

StyleSample::StyleSample(QWidget* parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void StyleSample::setStyle(const ReportStyle& style)
{
    m_style = style;
    updateGeometry();
    update();
}

void StyleSample::setTexts(const TextParts& texts)
{
    m_texts = texts;
    update();
}

void StyleSample::setSampleFormat(const QString& format)
{
    m_sampleFormat = format;
    setTexts({format.startsWith(QStringLiteral(";|")) ? format.mid(2) : format, {}, {}});
}

QSize StyleSample::sizeHint() const
{
    const RowLook look = lookOf(m_style, m_fonts, logicalDpiY());
    // Room for a style with generous spaces, so that the dialog does not jump as they change.
    return {240, std::max(look.height(), 2 * QFontMetrics(font()).height()) + 2 * kPadding};
}

void StyleSample::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    RowLook look = lookOf(m_style, m_fonts, logicalDpiY());
    const QRect row(kPadding, kPadding, width() - 2 * kPadding, look.height());
    const Qt::Alignment placements[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
    look.paintCell(painter, row, {}, Qt::AlignLeft);
    // The texts go over the row painted once, without painting its back again.
    look.back = look.rule = Qt::transparent;
    for (std::size_t i = 0; i < m_texts.size(); ++i) {
        if (!m_texts[i].isEmpty())
            look.paintCell(painter, row, m_texts[i].split(u'\n'), placements[i]);
    }
}

} // namespace tabulor
