// How long the designer's window stops responding: the real main window, offscreen, on a
// record source of a database. Each step is started from the event loop, as a user's command
// is, and the longest stretch in which the loop did not come round (from the moment it woke
// until it was ready to wait again) is the step's blocked time. Prints the medians over the
// repeats of: opening a report on the source, switching to the preview (and the time until its
// first page has been painted), adding a group, resizing a column, applying the properties
// dialog (which rebuilds the working view and repaints it), and dropping a field from the
// details into the groups of the layout window and back.
//
// Usage: designer DATABASE SOURCE [REPEATS]

#include "commands/DesignerCommands.h"
#include "component/ReportSession.h"
#include "component/Tabulor.h"
#include "definition/DefinitionFile.h"
#include "gui/layoutwindow/LayoutWindow.h"
#include "gui/main/DesignerWindow.h"
#include "gui/main/MainWindow.h"

#include "BenchSupport.h"

#include <QAbstractButton>
#include <QAbstractEventDispatcher>
#include <QAbstractScrollArea>
#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QListView>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

using namespace tabulor;

namespace {

// The longest time the event loop spent awake in one go since the last reset.
class StallMonitor : public QObject
{
public:
    StallMonitor()
    {
        QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
        connect(dispatcher, &QAbstractEventDispatcher::awake, this, [this] {
            if (!m_awake.isValid())
                m_awake.start();
        });
        connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, [this] {
            if (m_awake.isValid())
                m_longest = std::max(m_longest, milliseconds(m_awake));
            m_awake.invalidate();
        });
    }
    void reset() { m_longest = 0; }
    double longest() const { return m_longest; }

private:
    QElapsedTimer m_awake;
    double m_longest = 0;
};

// Paints a widget's next frame itself, to tell when that frame is done.
class FirstPaint : public QObject
{
public:
    explicit FirstPaint(QWidget& widget) : m_widget(widget) { widget.installEventFilter(this); }
    void arm(const QElapsedTimer& since)
    {
        m_since = &since;
        m_done = -1;
    }
    double done() const { return m_done; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched != &m_widget || event->type() != QEvent::Paint || !m_since || m_done >= 0)
            return false;
        m_widget.removeEventFilter(this);
        static_cast<QObject&>(m_widget).event(event);
        m_widget.installEventFilter(this);
        m_done = milliseconds(*m_since);
        return true;
    }

private:
    QWidget& m_widget;
    const QElapsedTimer* m_since = nullptr;
    double m_done = -1;
};

// Runs step from the event loop and lets the loop go on until nothing is left to do; returns
// the longest stretch the loop was blocked meanwhile.
double blockedBy(StallMonitor& monitor, const std::function<void()>& step)
{
    monitor.reset();
    QEventLoop loop;
    QTimer::singleShot(0, &loop, [&] {
        step();
        // Whatever the step posted (repaints, layouts) runs before the loop is left.
        QTimer::singleShot(50, &loop, &QEventLoop::quit);
    });
    loop.exec();
    return monitor.longest();
}

// Drags a field by name out of one list of the layout window and drops it at the top of
// another, through the lists' models as a drop on the view does.
void dropField(LayoutWindow& layout, LayoutList from, const QString& name, LayoutList to)
{
    QAbstractItemModel& source = *layout.listView(from)->model();
    const QModelIndexList found =
        source.match(source.index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly);
    const std::unique_ptr<QMimeData> data(source.mimeData(found));
    if (!layout.listView(to)->model()->dropMimeData(data.get(), Qt::MoveAction, 0, 0, {}))
        std::fprintf(stderr, "the drop of %s moved nothing\n", qPrintable(name));
}

// A report over the source as the designer makes one: every field, the first text field
// grouping, the rest in the details.
QString writeDefinition(const QDir& folder, const QString& database, const QString& source)
{
    ReportSession session;
    session.loadDesigner();
    session.OpenDataSource(database, QString());
    session.selectRecordSource(source);
    ReportDefinition& d = session.definition();
    d.DataBaseName = database;
    d.RecordSource = source;
    d.groups = {QStringLiteral("region")};
    d.details = {QStringLiteral("product"), QStringLiteral("order_date"),
                 QStringLiteral("customer"), QStringLiteral("quantity"), QStringLiteral("amount")};
    const QString path = folder.filePath(QStringLiteral("bench.vrd"));
    QString error;
    if (!WriteReportFile(d, path, &error))
        std::fprintf(stderr, "cannot write %s: %s\n", qPrintable(path), qPrintable(error));
    return path;
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    if (argc < 3) {
        std::fprintf(stderr, "usage: designer DATABASE SOURCE [REPEATS]\n");
        return 2;
    }
    const QString database = QString::fromLocal8Bit(argv[1]);
    const QString source = QString::fromLocal8Bit(argv[2]);
    const int repeats = argc > 3 ? std::max(1, atoi(argv[3])) : 5;
    QTemporaryDir folder;
    const QString definition = writeDefinition(QDir(folder.path()), database, source);

    StallMonitor monitor;
    std::vector<double> opens, switches, painted, groups, resizes, applies, toGroups, toDetails;
    for (int i = 0; i < repeats; ++i) {
        Tabulor component;
        component.session().setSettingsPath(folder.filePath(QStringLiteral("settings.ini")));
        component.setAccessMode(zrUseModifyCreate);
        auto* designer = dynamic_cast<DesignerWindow*>(component.Form());
        if (!designer) {
            std::fprintf(stderr, "this build has no designer windows\n");
            return 1;
        }
        MainWindow& window = designer->window();
        window.show();
        ReportSession& session = component.session();
        DesignerCommands& commands = designer->commands();

        opens.push_back(blockedBy(monitor, [&] {
            if (!session.OpenReportFile(definition))
                std::fprintf(stderr, "cannot open %s\n", qPrintable(definition));
            session.definition().CurrentFileName = definition;
            designer->reportLoaded();
        }));

        auto* preview = window.findChild<QAbstractScrollArea*>(QStringLiteral("vp"));
        FirstPaint firstPaint(*preview->viewport());
        QElapsedTimer sinceSwitch;
        // The first paint that shows the rendered report, not the empty view shown before it.
        const QMetaObject::Connection rendered = QObject::connect(
            &commands, &DesignerCommands::previewRendered, [&] { firstPaint.arm(sinceSwitch); });
        switches.push_back(blockedBy(monitor, [&] {
            sinceSwitch.start();
            commands.mPreview_Click();
        }));
        QObject::disconnect(rendered);
        painted.push_back(firstPaint.done());
        commands.mPreview_Click();

        groups.push_back(blockedBy(monitor, [&] {
            session.definition().groups.append(QStringLiteral("product"));
            session.definition().details.removeOne(QStringLiteral("product"));
            session.rebuildReport();
        }));
        resizes.push_back(blockedBy(monitor, [&] {
            session.resizeColumn(session.data().grid().FindGridColumn(QStringLiteral("customer")),
                                 3600);
        }));
        // Global Settings opens the dialog; a changed page border is applied.
        commands.mGlobal_Click();
        QWidget* settings = nullptr;
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->objectName() == QStringLiteral("frmSettings") && top->isVisible())
                settings = top;
        }
        if (!settings) {
            std::fprintf(stderr, "Global Settings opened no properties dialog\n");
            return 1;
        }
        auto* borders = settings->findChild<QComboBox*>(QStringLiteral("cmbBorders"));
        auto* apply = settings->findChild<QAbstractButton*>(QStringLiteral("cmd2"));
        applies.push_back(blockedBy(monitor, [&] {
            borders->setCurrentIndex((borders->currentIndex() + 1) % borders->count());
            apply->click();
        }));
        settings->close();
        LayoutWindow& layout = designer->layoutWindow();
        commands.mOutline_Click();
        toGroups.push_back(blockedBy(monitor, [&] {
            dropField(layout, LayoutList::Details, QStringLiteral("customer"), LayoutList::Groups);
        }));
        toDetails.push_back(blockedBy(monitor, [&] {
            dropField(layout, LayoutList::Groups, QStringLiteral("customer"), LayoutList::Details);
        }));
        session.definition().Dirty = false;
        window.close();
    }
    std::printf("longest blocked stretch, ms (median of %d):\n"
                "  open report        %7.1f\n"
                "  switch to preview  %7.1f   first page painted after %.1f\n"
                "  add a group        %7.1f\n"
                "  resize a column    %7.1f\n"
                "  apply settings     %7.1f\n"
                "  drop into groups   %7.1f\n"
                "  drop into details  %7.1f\n",
                repeats, median(opens), median(switches), median(painted), median(groups),
                median(resizes), median(applies), median(toGroups), median(toDetails));
    return 0;
}
