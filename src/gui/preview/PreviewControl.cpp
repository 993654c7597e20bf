#include "gui/preview/PreviewControl.h"

#include "gui/common/Icons.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyle>
#include <QToolButton>

namespace tabulor {

namespace {

// The icons of the first, previous, next and last page buttons.
constexpr std::array<const char*, 4> kPageButtons{"go-first", "go-previous", "go-next", "go-last"};

// Room for a page number of five digits.
constexpr int kPageDigits = 5;
constexpr int kZoomBarWidth = 160;

} // namespace

PreviewControl::PreviewControl(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("pcb"));
    for (size_t n = 0; n < m_pageButtons.size(); ++n) {
        auto* button = new QToolButton(this);
        button->setObjectName(QStringLiteral("cmdPage%1").arg(n));
        button->setIcon(themedIcon(kPageButtons[n]));
        button->setAutoRaise(true);
        connect(button, &QToolButton::clicked, this, [this, n] { turnPage(static_cast<int>(n)); });
        m_pageButtons[n] = button;
    }
    m_pageLabel = new QLabel(this);
    m_pageLabel->setObjectName(QStringLiteral("lblPage"));
    m_page = new QLineEdit(this);
    m_page->setObjectName(QStringLiteral("txtPage"));
    m_page->setAlignment(Qt::AlignRight);
    m_page->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QStringLiteral("\\d{0,%1}").arg(kPageDigits)), m_page));
    m_page->setMaximumWidth(m_page->fontMetrics().horizontalAdvance(QString(kPageDigits, '0')) +
                            m_page->fontMetrics().averageCharWidth() * 3);
    m_pageLabel->setBuddy(m_page);
    connect(m_page, &QLineEdit::textEdited, this, &PreviewControl::pageTyped);
    // Until a number is whole, the box may hold what is no page; leaving it shows the page.
    connect(m_page, &QLineEdit::editingFinished, this, &PreviewControl::Synchronize);
    connect(m_page, &QLineEdit::returnPressed, this, &PreviewControl::focusView);
    m_zoomLabel = new QLabel(this);
    m_zoomLabel->setObjectName(QStringLiteral("lblZoom"));
    m_zoom = new QScrollBar(Qt::Horizontal, this);
    m_zoom->setObjectName(QStringLiteral("scrlZoom"));
    m_zoom->setMinimumWidth(kZoomBarWidth);
    m_zoom->installEventFilter(this);
    connect(m_zoom, &QScrollBar::valueChanged, this, &PreviewControl::zoomMoved);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pageButtons[0]);
    layout->addWidget(m_pageButtons[1]);
    layout->addWidget(m_pageLabel);
    layout->addWidget(m_page);
    layout->addWidget(m_pageButtons[2]);
    layout->addWidget(m_pageButtons[3]);
    layout->addSpacing(style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing) * 3);
    layout->addWidget(m_zoomLabel);
    layout->addWidget(m_zoom);
    layout->addStretch();
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setPrinterControl(nullptr, nullptr);
}

void PreviewControl::setPrinterControl(PreviewNavigation* navigation, QWidget* focusTarget)
{
    if (m_navigation)
        disconnect(m_navigation, nullptr, this, nullptr);
    m_navigation = navigation;
    m_focusTarget = focusTarget;
    if (!navigation) {
        for (QToolButton* button : m_pageButtons)
            button->setEnabled(false);
        m_page->clear();
        m_page->setEnabled(false);
        m_zoom->setEnabled(false);
        return;
    }
    {
        // Setting the range may move the bar, which is no zoom the user chose.
        const QSignalBlocker blocker(m_zoom);
        m_zoom->setPageStep(PreviewNavigation::kZoomStep);
        m_zoom->setSingleStep(PreviewNavigation::kZoomStep / 2);
        m_zoom->setRange(PreviewNavigation::kMinimumZoom, PreviewNavigation::kMaximumZoom);
    }
    connect(navigation, &PreviewNavigation::changed, this, &PreviewControl::Synchronize);
    Synchronize();
}

QString PreviewControl::pageCaption() const
{
    return m_pageLabel->text();
}

void PreviewControl::setPageCaption(const QString& caption)
{
    m_pageLabel->setText(caption);
}

QString PreviewControl::zoomCaption() const
{
    return m_zoomLabel->text();
}

void PreviewControl::setZoomCaption(const QString& caption)
{
    m_zoomLabel->setText(caption);
}

void PreviewControl::Synchronize()
{
    if (!m_navigation)
        return;
    const int page = m_navigation->page();
    const int count = m_navigation->pageCount();
    m_pageButtons[0]->setEnabled(page >= 2);
    m_pageButtons[1]->setEnabled(page >= 2);
    m_pageButtons[2]->setEnabled(page < count);
    m_pageButtons[3]->setEnabled(page < count);
    const QString pageText = QString::number(page);
    // Left alone when it already shows the page, so that typing in it keeps its cursor.
    if (m_page->text() != pageText)
        m_page->setText(pageText);
    m_page->setEnabled(count >= 2);
    const int zoom = static_cast<int>(m_navigation->zoom());
    {
        const QSignalBlocker blocker(m_zoom);
        m_zoom->setValue(zoom);
    }
    m_zoom->setToolTip(QStringLiteral("%1%").arg(zoom));
    m_zoom->setEnabled(count >= 1);
}

bool PreviewControl::eventFilter(QObject* watched, QEvent* event)
{
    // The keys page through the view: the zoom bar passes the focus on.
    if (watched == m_zoom && event->type() == QEvent::FocusIn)
        focusView();
    return QWidget::eventFilter(watched, event);
}

void PreviewControl::turnPage(int button)
{
    if (!m_navigation)
        return;
    const int page = m_navigation->page();
    const int pages[] = {1, page - 1, page + 1, m_navigation->pageCount()};
    m_navigation->setPage(pages[button]);
    focusView();
    Synchronize();
}

void PreviewControl::pageTyped(const QString& text)
{
    bool isNumber = false;
    const int page = text.toInt(&isNumber);
    if (!m_navigation || !isNumber)
        return;
    m_navigation->setPage(page);
    Synchronize();
}

void PreviewControl::zoomMoved(int zoom)
{
    if (!m_navigation)
        return;
    // A fitted zoom is the view's to choose: the bar goes back to it.
    if (m_navigation->zoomMode() == ZoomMode::Percent)
        m_navigation->setZoom(zoom);
    Synchronize();
}

void PreviewControl::focusView()
{
    if (m_focusTarget)
        m_focusTarget->setFocus(Qt::OtherFocusReason);
}

} // namespace tabulor
