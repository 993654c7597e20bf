#pragma once

#include "production/base/Export.h"
#include "production/pages/PreviewNavigation.h"

#include <QPointer>
#include <QWidget>

#include <array>

class QLabel;
class QLineEdit;
class QScrollBar;
class QToolButton;

namespace tabulor {

// The navigation bar above a preview: buttons to the first, previous, next and last page, the
// page number, and the zoom on a scroll bar. It shows no pages itself: it reads and sets the
// page and zoom of the navigation it is bound to, and follows it whoever changes it.
class TABULOR_EXPORT PreviewControl : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString PageCaption READ pageCaption WRITE setPageCaption)
    Q_PROPERTY(QString ZoomCaption READ zoomCaption WRITE setZoomCaption)

public:
    explicit PreviewControl(QWidget* parent = nullptr);

    // Binds the bar to navigation (none: unbound, and everything disabled). The focus goes
    // back to focusTarget, the view that shows the pages, after each action of the bar.
    void setPrinterControl(PreviewNavigation* navigation, QWidget* focusTarget);
    PreviewNavigation* printerControl() const { return m_navigation; }

    // The labels in front of the page number and the zoom.
    QString pageCaption() const;
    void setPageCaption(const QString& caption);
    QString zoomCaption() const;
    void setZoomCaption(const QString& caption);

public Q_SLOTS:
    // Brings the buttons, the page number and the zoom in line with the navigation.
    void Synchronize();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Button 0 goes to the first page, 1 to the previous, 2 to the next, 3 to the last.
    void turnPage(int button);
    void pageTyped(const QString& text);
    void zoomMoved(int zoom);
    void focusView();

    std::array<QToolButton*, 4> m_pageButtons{};
    QLineEdit* m_page = nullptr;
    QScrollBar* m_zoom = nullptr;
    QLabel* m_pageLabel = nullptr;
    QLabel* m_zoomLabel = nullptr;
    QPointer<PreviewNavigation> m_navigation;
    QPointer<QWidget> m_focusTarget;
};

} // namespace tabulor
