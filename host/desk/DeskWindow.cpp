#include "host/desk/DeskWindow.h"

#include "framework/ErrorGuards.h"
#include "host/desk/DeskFindBar.h"
#include "platform/component/ClassRegistry.h"
#include "platform/controls/StatusBar.h"
#include "platform/forms/DrawnIcons.h"
#include "platform/forms/Form.h"
#include "platform/forms/Readable.h"
#include "platform/forms/ScreenMetrics.h"
#include "platform/toolbar/Toolbar.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>
#include <QSplitter>
#include <QVBoxLayout>

namespace yrw {

namespace {

const QString kTitle = QStringLiteral("Yarrowen Desk");
const QString kUpperLayout = QStringLiteral("UpperLayout");
const QString kLowerLayout = QStringLiteral("LowerLayout");
const QString kGeometry = QStringLiteral("Geometry");
const QString kSplitter = QStringLiteral("Splitter");

/// The orders follow the customer after this pause, so that holding an arrow key down does not
/// fetch the orders of everybody passed by. Milliseconds.
constexpr int kOrdersDelayMs = 60;

/// The help topic of the note properties dialog.
constexpr int kHelpNoteProperties = 110001;

CreateObject registryUnless(const CreateObject& given) {
    return given ? given
                 : [](const QString& programId) { return ClassRegistry().createObject(programId); };
}

} // namespace

DeskWindow::DeskWindow(const Services& services, DeskOptions options)
    : m_services(services), m_options(std::move(options)), m_memory(services.settings),
      m_interface(*this), m_component(*this, m_interface),
      m_addIns(services, registryUnless(m_options.createObject)) {
    setObjectName(QStringLiteral("frmDesk"));
    setWindowTitle(kTitle);
    setWindowIcon(drawnIcon(QStringLiteral("yarrowen-desk")));
    keepReadable(*this);
    build();
    connectEvents();
}

DeskWindow::~DeskWindow() {
    shutDown();
}

void DeskWindow::build() {
    m_commands = std::make_unique<DeskCommands>(*menuBar(), [this](DeskCommand c) { run(c); });
    m_componentToolbar = new Toolbar;
    m_componentToolbar->setObjectName(QStringLiteral("atbComponent"));
    m_commands->fillComponentToolbar(*m_componentToolbar);
    m_interfaceToolbar = new Toolbar;
    m_interfaceToolbar->setObjectName(QStringLiteral("atbInterface"));
    DeskCommands::fillInterfaceToolbar(*m_interfaceToolbar);

    m_splitter = new QSplitter(Qt::Vertical);
    m_splitter->setChildrenCollapsible(false);
    m_upper = new GridPanel(
        {QStringLiteral("Customers"), QStringLiteral("Upper"), QStringLiteral("Upper grid")},
        customerLayouts(), [this](bool) { return m_application->Customers(); }, m_splitter);
    m_lower = new GridPanel(
        {QStringLiteral("Orders"), QStringLiteral("Lower"), QStringLiteral("Lower grid")},
        orderLayouts(), [this](bool every) { return ordersToShow(every); }, m_splitter);
    m_splitter->setStretchFactor(0, 3);
    m_splitter->setStretchFactor(1, 2);
    m_current = &m_upper->controller();
    m_findBar = new DeskFindBar(this);

    auto* central = new QWidget;
    auto* column = new QVBoxLayout(central);
    column->addWidget(m_componentToolbar);
    column->addWidget(m_interfaceToolbar);
    column->addWidget(m_splitter, 1);
    column->addWidget(m_findBar);
    setCentralWidget(central);

    m_statusBar = new StatusBar;
    m_statusBar->setObjectName(QStringLiteral("stbMain"));
    m_progress = new QLabel;
    m_progress->setObjectName(QStringLiteral("lblProgress"));
    m_user = new QLabel;
    m_user->setObjectName(QStringLiteral("lblUser"));
    m_statusBar->addPermanentWidget(m_progress);
    m_statusBar->addPermanentWidget(m_user);
    setStatusBar(m_statusBar);
    resize(QSize(1040, 720).boundedTo(roomFor(*this)));
}

void DeskWindow::connectEvents() {
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget*, QWidget* focused) { focusMoved(focused); });
    m_ordersDelay.setSingleShot(true);
    m_ordersDelay.setInterval(kOrdersDelayMs);
    connect(&m_ordersDelay, &QTimer::timeout, this, &DeskWindow::customerChanged);
    connect(&upper(), &DeskGridController::recordChanged, &m_ordersDelay,
            qOverload<>(&QTimer::start));
    connect(&lower(), &DeskGridController::rowsRead, this, &DeskWindow::showOrdersTitle);
    connect(m_findBar, &DeskFindBar::findWanted, this, &DeskWindow::findNext);
    connect(m_findBar, &DeskFindBar::closed, this, [this] { currentPanel().grid().setFocus(); });
    connectPanel(*m_upper);
    connectPanel(*m_lower);
    m_toolClicks[0] =
        m_componentToolbar->Click.connect([this](ITool& tool) { m_commands->runTool(tool.id()); });
    m_toolClicks[1] =
        m_interfaceToolbar->Click.connect([this](ITool& tool) { m_commands->runTool(tool.id()); });
}

void DeskWindow::connectPanel(GridPanel& panel) {
    connect(&panel.grid(), &RecordGrid::contextMenuWanted, this,
            [this, &panel](const QPoint& globalPosition) {
                makeCurrent(panel);
                m_interfaceToolbar->popupAt(QStringLiteral("bndGrid"), globalPosition);
            });
    connect(&panel.controller(), &DeskGridController::recordAdded, this,
            [this, &panel] { recordAdded(panel); });
    connect(&panel.grid(), &RecordGrid::rowActivated, this, [this, &panel] {
        const QString field = panel.grid().columnField(panel.grid().currentColumn());
        const bool isLinked = &panel == m_lower && field.startsWith(u"Customer");
        run(isLinked ? DeskCommand::GoToCustomer : DeskCommand::EditRecord);
    });
    connect(&panel.grid(), &RecordGrid::editFailed, this, [this](const QString& reason) {
        m_services.prompt.message(QStringLiteral("The record was not saved.\r\r") + reason, kTitle,
                                  PromptIcon::Exclamation);
    });
}

void DeskWindow::open() {
    m_application = DeskApplication::open({m_services.clock, m_services.files}, m_options.start);
    m_application->setHelp([this](int topic) { return showHelp(topic); });
    m_open = true;
    m_services.prompt.setParentWindow(this);
    restore();
    showUser();
    show();
    m_upper->grid().setFocus();
    makeCurrent(*m_upper);
    loadAddIn();
    updateCommands();
}

void DeskWindow::loadAddIn() {
    if (!m_options.addInProgID.isEmpty() && m_addIns.load(m_options.addInProgID, m_component)) {
        reloadLayouts();
    }
}

void DeskWindow::reloadLayouts() {
    for (DeskGridController* controller : {&upper(), &lower()}) {
        controller->loadLayout(controller->LayoutName());
    }
}

void DeskWindow::restore() {
    restoreGeometry(m_memory.state(kGeometry));
    m_splitter->restoreState(m_memory.state(kSplitter));
    upper().loadLayout(m_memory.text(kUpperLayout));
    lower().loadLayout(m_memory.text(kLowerLayout));
}

void DeskWindow::remember() {
    m_memory.setState(kGeometry, saveGeometry());
    m_memory.setState(kSplitter, m_splitter->saveState());
    m_memory.setText(kUpperLayout, upper().LayoutName());
    m_memory.setText(kLowerLayout, lower().LayoutName());
}

void DeskWindow::closeEvent(QCloseEvent* event) {
    // An edit that cannot be written stays on screen; the user decides.
    if (m_open && (!m_upper->grid().commitEdit() || !m_lower->grid().commitEdit())) {
        event->ignore();
        return;
    }
    if (m_open) {
        remember();
    }
    shutDown();
    event->accept();
    Q_EMIT closed();
}

void DeskWindow::endSession() {
    if (m_open) {
        (void)m_upper->grid().commitEdit();
        (void)m_lower->grid().commitEdit();
        remember();
    }
    shutDown();
    hide();
    Q_EMIT closed();
}

void DeskWindow::shutDown() {
    if (!m_open) {
        return;
    }
    m_open = false;
    m_ordersDelay.stop();
    m_addIns.unload();
    ignoreErrors([this] {
        upper().unbind();
        lower().unbind();
        m_application->setHelp({});
        m_application->Terminate();
    });
    m_application.reset();
    m_services.prompt.setParentWindow(nullptr);
}

Ref<ICollection> DeskWindow::ordersToShow(bool everyRecord) {
    if (everyRecord) {
        return m_application->Orders(nullptr);
    }
    const Ref<IRecord> customer = upper().CurrentRecord();
    return customer ? m_application->Orders(customer) : Ref<ICollection>();
}

bool DeskWindow::canCheckNotes() const {
    return m_open && m_commands->isChecked(DeskCommand::NotesChecking) && !upper().Busy() &&
           !lower().Busy() && !Form::isModalOpen();
}

void DeskWindow::showProgress(const QString& text) {
    m_progress->setText(text);
    m_progress->repaint();
}

void DeskWindow::showUser() {
    const Ref<IUser> user = m_application->CurrentUser();
    const Ref<IRecord> group = user->Group();
    const QString name = user->value(QStringLiteral("UseName")).toString();
    m_user->setText(
        group ? QString(name + u", " + group->value(QStringLiteral("GroupName")).toString())
              : name);
}

GridPanel& DeskWindow::currentPanel() const {
    return m_current == &m_lower->controller() ? *m_lower : *m_upper;
}

void DeskWindow::focusMoved(QWidget* focused) {
    for (GridPanel* panel : {m_upper, m_lower}) {
        if (focused != nullptr &&
            (focused == &panel->grid() || panel->grid().isAncestorOf(focused))) {
            makeCurrent(*panel);
        }
    }
}

void DeskWindow::makeCurrent(GridPanel& panel) {
    m_current = &panel.controller();
    upper().setCurrent(&panel == m_upper);
    lower().setCurrent(&panel == m_lower);
    m_commands->setChecked(DeskCommand::Split, panel.grid().splitCount() > 1);
}

void DeskWindow::customerChanged() {
    if (!m_open || lower().showsEveryRecord()) {
        return;
    }
    reportErrors(m_services.utility, QStringLiteral("YRWDesk.DeskWindow.CustomerChanged"),
                 QStringLiteral("The orders could not be shown."), kTitle,
                 [this] { lower().rebind(); });
}

void DeskWindow::showOrdersTitle() {
    const Ref<IRecord> customer =
        m_open && !lower().showsEveryRecord() ? upper().CurrentRecord() : Ref<IRecord>();
    m_lower->setTitle(
        customer ? QString(u"Orders of " + customer->value(QStringLiteral("Name")).toString())
                 : QStringLiteral("Orders"));
}

void DeskWindow::updateCommands() {
    const bool loaded = m_addIns.isLoaded();
    m_commands->setEnabled(DeskCommand::LoadAddIn, !loaded && !m_options.addInProgID.isEmpty());
    m_commands->setEnabled(DeskCommand::ActivateAddIn, loaded);
    m_commands->setEnabled(DeskCommand::DeactivateAddIn, loaded);
    m_commands->setEnabled(DeskCommand::ReleaseAddIn, loaded);
}

void DeskWindow::run(DeskCommand command) {
    using Operation = void (DeskWindow::*)();
    static const std::map<DeskCommand, Operation> kOperations = {
        {DeskCommand::Quit, &DeskWindow::quit},
        {DeskCommand::NewRecord, &DeskWindow::newRecord},
        {DeskCommand::EditRecord, &DeskWindow::editRecord},
        {DeskCommand::DeleteRecord, &DeskWindow::deleteRecord},
        {DeskCommand::Find, &DeskWindow::openFind},
        {DeskCommand::FindNext, &DeskWindow::findNext},
        {DeskCommand::Filter, &DeskWindow::openFilter},
        {DeskCommand::Refresh, &DeskWindow::refreshRows},
        {DeskCommand::Split, &DeskWindow::splitGrid},
        {DeskCommand::OtherGrid, &DeskWindow::otherGrid},
        {DeskCommand::GoToCustomer, &DeskWindow::goToCustomer},
        {DeskCommand::BandMain, &DeskWindow::switchBands},
        {DeskCommand::BandPlain, &DeskWindow::switchBands},
        {DeskCommand::BandAddins, &DeskWindow::switchBands},
        {DeskCommand::LoadAddIn, &DeskWindow::loadAddIn},
        {DeskCommand::ReleaseAddIn, &DeskWindow::releaseAddIn},
        {DeskCommand::ActivateAddIn, &DeskWindow::activateAddIn},
        {DeskCommand::DeactivateAddIn, &DeskWindow::deactivateAddIn},
        {DeskCommand::Contents, &DeskWindow::showKeys},
        {DeskCommand::About, &DeskWindow::showAbout},
    };
    const auto operation = kOperations.find(command);
    if (operation == kOperations.end() || !m_open) {
        return;
    }
    reportErrors(m_services.utility, QStringLiteral("YRWDesk.DeskWindow.Run"),
                 QStringLiteral("This could not be done."), kTitle,
                 [&] { (this->*operation->second)(); });
    updateCommands();
}

void DeskWindow::quit() {
    close();
}

void DeskWindow::newRecord() {
    RecordGrid& grid = currentPanel().grid();
    if (!grid.commitEdit()) {
        return;
    }
    grid.setFocus();
    grid.setCurrentRow(grid.rowCount());
}

void DeskWindow::editRecord() {
    RecordGrid& grid = currentPanel().grid();
    grid.setFocus();
    QKeyEvent press(QEvent::KeyPress, Qt::Key_F2, Qt::NoModifier);
    QApplication::sendEvent(&grid, &press);
}

void DeskWindow::deleteRecord() {
    const Ref<IRecord> record = m_current->CurrentRecord();
    if (!record) {
        return;
    }
    const bool isCustomer = m_current == &upper();
    const QString name = record->ShortDisplayValue()->Value().toString();
    const QString text = isCustomer ? QStringLiteral("Delete the customer '%1' and all its orders?")
                                    : QStringLiteral("Delete the order '%1'?");
    const PromptAnswer answer = m_services.prompt.question(
        text.arg(name), kTitle, PromptButtons::YesNo, PromptIcon::Question, PromptAnswer::No);
    if (answer == PromptAnswer::Yes) {
        m_application->deleteRecord(record->Collection()->ObjectKey(),
                                    record->value(QStringLiteral("RecordID")).toLongLong());
        m_current->rebind();
    }
}

void DeskWindow::openFind() {
    m_findBar->open();
}

void DeskWindow::openFilter() {
    currentPanel().focusFilter();
}

void DeskWindow::findNext() {
    if (m_findBar->text().isEmpty()) {
        m_findBar->open();
        return;
    }
    m_services.prompt.setMousePointer(MousePointer::Hourglass);
    bool found = false;
    ignoreErrors([&] { found = m_current->findNext(m_findBar->text()); });
    m_services.prompt.setMousePointer(MousePointer::Default);
    m_findBar->showResult(found);
}

void DeskWindow::refreshRows() {
    upper().rebind();
    lower().rebind();
}

void DeskWindow::splitGrid() {
    m_current->setSplit(m_commands->isChecked(DeskCommand::Split));
}

void DeskWindow::otherGrid() {
    GridPanel& other = m_current == &upper() ? *m_lower : *m_upper;
    other.grid().setFocus();
    makeCurrent(other);
}

void DeskWindow::goToCustomer() {
    const Ref<IRecord> order = lower().CurrentRecord();
    if (!order) {
        return;
    }
    const qint64 customer = order->value(QStringLiteral("CustomerID")).toLongLong();
    if (customer != upper().currentRecordID() && !upper().goToRecord(customer)) {
        m_upper->clearFilter();
        upper().goToRecord(customer);
    }
    m_upper->grid().setFocus();
    makeCurrent(*m_upper);
}

void DeskWindow::switchBands() {
    // The add-in takes its tools away first and places them anew afterwards.
    m_addIns.deactivate();
    m_commands->fillComponentToolbar(*m_componentToolbar);
    activateAddIn();
}

void DeskWindow::activateAddIn() {
    if (m_addIns.isLoaded()) {
        m_addIns.activate();
        reloadLayouts();
    }
}

void DeskWindow::deactivateAddIn() {
    m_addIns.deactivate();
}

void DeskWindow::releaseAddIn() {
    m_addIns.unload();
}

bool DeskWindow::showHelp(int topic) {
    if (topic != kHelpNoteProperties) {
        return false;
    }
    m_services.prompt.message(
        QStringLiteral("Give the note a subject and a date. A private note is a sign to your "
                       "colleagues, not a lock: they can read it.\r"
                       "Tick \"Automatically Show this Note?\" to see it whenever you come to its "
                       "record.\rTick \"Set Reminder\" to be reminded, alone or with others."),
        QStringLiteral("Note Properties"), PromptIcon::Information);
    return true;
}

void DeskWindow::showKeys() {
    m_services.prompt.message(
        QStringLiteral(
            "Click a column's heading to sort by it, again to turn the order round.\r"
            "Type in Filter (Ctrl+L) to see only the rows that hold a text.\r"
            "F2 edits a cell, Escape drops the edit; the row is saved when you leave it.\r"
            "The row with the star at the end takes a new record.\r"
            "F6 goes to the other grid; the menu key opens the grid's menu.\r"
            "Double-click an order's customer to go to that customer."),
        QStringLiteral("Keys and Mouse"), PromptIcon::Information);
}

void DeskWindow::showAbout() {
    m_services.prompt.message(
        QStringLiteral("Yarrowen Desk %1\r\rUser: %2\rDatabase: %3\rAdd-in: %4")
            .arg(m_application->Version(), m_user->text(), m_application->DAODatabase()->Name(),
                 m_addIns.description()),
        QStringLiteral("About Yarrowen Desk"), PromptIcon::Information);
}

void DeskWindow::recordAdded(GridPanel& panel) {
    reportErrors(
        m_services.utility, QStringLiteral("YRWDesk.DeskWindow.RecordAdded"),
        QStringLiteral("The new record could not be completed."), kTitle, [&] {
            DeskGridController& controller = panel.controller();
            const Ref<ICollection> object = controller.CurrentObject();
            const qint64 id = controller.currentRecordID();
            if (object && id != 0 &&
                m_application->completeRecord(object->ObjectKey(), id, upper().currentRecordID())) {
                panel.grid().refresh();
            }
        });
}

} // namespace yrw
