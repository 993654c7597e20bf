#include "gui/layoutwindow/LayoutWindow.h"

#include "commands/DesignerCommands.h"
#include "component/ReportSession.h"
#include "gui/common/Icons.h"
#include "gui/models/FieldListModel.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QScreen>
#include <QShortcut>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>

namespace tabulor {

LayoutWindow::LayoutWindow(ReportSession& session, DesignerCommands& commands, QWidget* parent)
    : QWidget(parent, Qt::Tool), m_commands(commands), m_edits(session), m_captions(*this)
{
    setObjectName(QStringLiteral("frmStruct"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(4);

    auto* top = new QHBoxLayout;
    m_recordSources = new QComboBox(this);
    m_recordSources->setObjectName(QStringLiteral("cmbRecordSet"));
    m_recordSources->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_recordSources->setMinimumContentsLength(12);
    m_pin = new QToolButton(this);
    m_pin->setObjectName(QStringLiteral("imgPin"));
    m_pin->setCheckable(true);
    m_pin->setAutoRaise(true);
    m_pin->setIcon(themedIcon("window-pin"));
    m_pin->setToolTip(QStringLiteral("Always on Top"));
    top->addWidget(m_recordSources, 1);
    top->addWidget(m_pin);
    layout->addLayout(top);

    const std::array<std::pair<const char*, const char*>, 3> labels{
        {{"lblFields", "Fields"}, {"lblHeadings", "Groups"}, {"lblDetails", "Details"}}};
    for (int i = 0; i < 3; ++i) {
        auto* label = new QLabel(QString::fromLatin1(labels.at(i).second), this);
        label->setObjectName(QString::fromLatin1(labels.at(i).first));
        layout->addWidget(label);
        layout->addWidget(addList(LayoutList(i), QStringLiteral("lstField%1").arg(i), label),
                          i == 0 ? 2 : 1);
    }

    addShortcut(QKeySequence(Qt::ALT | Qt::Key_G), QStringLiteral("sendToGroups"),
                [this] { send(LayoutList::Groups); });
    addShortcut(QKeySequence(Qt::ALT | Qt::Key_D), QStringLiteral("sendToDetails"),
                [this] { send(LayoutList::Details); });
    addShortcut(QKeySequence(Qt::Key_Delete), QStringLiteral("sendToFields"),
                [this] { send(LayoutList::Fields); });
    addShortcut(QKeySequence(Qt::CTRL | Qt::Key_Up), QStringLiteral("moveUp"),
                [this] { shift(-1); });
    addShortcut(QKeySequence(Qt::CTRL | Qt::Key_Down), QStringLiteral("moveDown"),
                [this] { shift(+1); });

    applyBuiltInCaptions(CaptionWindow::Layout, m_captions);
    connect(m_recordSources, &QComboBox::textActivated, this,
            [this](const QString& name) { m_edits.chooseRecordSource(name); });
    connect(m_pin, &QToolButton::toggled, this, &LayoutWindow::setAlwaysOnTop);
    connect(&session, &ReportSession::gridChanged, this, &LayoutWindow::showRecordSources);
    // New and Open may clear the lists without rebuilding a grid; the access mode decides
    // whether another record source may be chosen.
    connect(&commands, &DesignerCommands::stateChanged, this, [this] {
        for (FieldListModel* model : m_models)
            model->refresh();
        showRecordSources();
    });
    resize(220, 460);
    showRecordSources();
}

LayoutWindow::~LayoutWindow() = default;

QListView* LayoutWindow::addList(LayoutList list, const QString& name, QLabel* label)
{
    auto* model = new FieldListModel(m_edits, list, this);
    auto* view = new QListView(this);
    view->setObjectName(name);
    view->setModel(model);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setDragDropMode(QAbstractItemView::DragDrop);
    view->setDefaultDropAction(Qt::MoveAction);
    view->setDropIndicatorShown(true);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->installEventFilter(this);
    label->setBuddy(view);
    connect(view, &QListView::doubleClicked, this, [this](const QModelIndex& index) {
        Q_EMIT fieldPropertiesRequested(index.data().toString());
    });
    connect(model, &FieldListModel::fieldPlaced, this,
            [this, list](int row) { select(list, row); });
    m_models.at(size_t(list)) = model;
    m_views.at(size_t(list)) = view;
    return view;
}

void LayoutWindow::addShortcut(const QKeySequence& keys, const QString& name,
                               std::function<void()> move)
{
    auto* shortcut = new QShortcut(keys, this);
    shortcut->setObjectName(name);
    connect(shortcut, &QShortcut::activated, this, std::move(move));
}

void LayoutWindow::showRecordSources()
{
    const QStringList names = m_edits.recordSources();
    QStringList shown;
    for (int i = 0; i < m_recordSources->count(); ++i)
        shown.append(m_recordSources->itemText(i));
    const QSignalBlocker blocker(m_recordSources);
    if (shown != names) {
        m_recordSources->clear();
        m_recordSources->addItems(names);
    }
    m_recordSources->setCurrentIndex(m_edits.currentRecordSource());
    m_recordSources->setVisible(m_edits.databaseOpen());
    m_recordSources->setEnabled(
        m_commands.actionState().value(QStringLiteral("DataControl")).enabled);
}

bool LayoutWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn) {
        for (size_t i = 0; i < m_views.size(); ++i) {
            if (watched == m_views.at(i))
                m_active = LayoutList(i);
        }
    }
    return QWidget::eventFilter(watched, event);
}

int LayoutWindow::selectedRow() const
{
    const QModelIndex current = listView(m_active)->currentIndex();
    return current.isValid() ? current.row() : -1;
}

void LayoutWindow::select(LayoutList list, int row)
{
    QListView* view = listView(list);
    m_active = list;
    view->setCurrentIndex(view->model()->index(row, 0));
    view->setFocus();
}

void LayoutWindow::placed(LayoutList list, const std::optional<int>& row)
{
    if (row)
        select(list, *row);
}

void LayoutWindow::send(LayoutList to)
{
    placed(to, m_edits.sendField(m_active, selectedRow(), to));
}

void LayoutWindow::shift(int step)
{
    placed(m_active, m_edits.shiftField(m_active, selectedRow(), step));
}

void LayoutWindow::showBeside(const QWidget& window)
{
    if (!m_placed) {
        m_placed = true;
        const QRect frame = window.frameGeometry();
        QPoint place = frame.topRight() + QPoint(8, 0);
        if (const QScreen* screen = window.screen()) {
            const QRect available = screen->availableGeometry();
            place.setX(std::min(place.x(), available.right() - width()));
            place.setY(std::clamp(place.y(), available.top(),
                                  std::max(available.top(), available.bottom() - height())));
        }
        move(place);
    }
    show();
    raise();
    activateWindow();
}

bool LayoutWindow::alwaysOnTop() const
{
    return windowFlags().testFlag(Qt::WindowStaysOnTopHint);
}

void LayoutWindow::setAlwaysOnTop(bool onTop)
{
    if (onTop != alwaysOnTop()) {
        // Only the window system is told, so that the window stays where it is, shown and
        // active, rather than being made again.
        Qt::WindowFlags flags = windowFlags();
        flags.setFlag(Qt::WindowStaysOnTopHint, onTop);
        overrideWindowFlags(flags);
        if (QWindow* handle = windowHandle())
            handle->setFlags(flags);
    }
    const QSignalBlocker blocker(m_pin);
    m_pin->setChecked(onTop);
}

void LayoutWindow::closeEvent(QCloseEvent* event)
{
    // The window lives as long as the designer: closing hides it, as an ordinary window.
    event->ignore();
    hide();
    setAlwaysOnTop(false);
}

} // namespace tabulor
