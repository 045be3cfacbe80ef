#include "host/desk/DeskWindow.h"

#include "framework/ErrorGuards.h"
#include "host/desk/FindBar.h"
#include "platform/component/ClassRegistry.h"
#include "platform/controls/StatusBar.h"
#include "platform/forms/Form.h"
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

CreateObject registryUnless(CreateObject given) {
    return given ? given : [](const QString& programId) {
        return ClassRegistry().createObject(programId);
    };
}

} // namespace

DeskWindow::DeskWindow(const Services& services, DeskOptions options)
    : m_services(services), m_options(std::move(options)), m_memory(services.settings),
      m_interface(*this), m_component(*this, m_interface),
      m_addIns(services.utility, registryUnless(m_options.createObject)) {
    setObjectName(QStringLiteral("frmDesk"));
    setWindowTitle(kTitle);
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
    m_findBar = new FindBar(this);

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
    resize(1040, 720);
}

void DeskWindow::connectEvents() {
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget*, QWidget* focused) { focusMoved(focused); });
    m_ordersDelay.setSingleShot(true);
    m_ordersDelay.setInterval(kOrdersDelayMs);
    connect(&m_ordersDelay, &QTimer::timeout, this, &DeskWindow::customerChanged);
    connect(&upper(), &DeskGridController::recordChanged, &m_ordersDelay,
            qOverload<>(&QTimer::start));
    connect(m_findBar, &FindBar::findWanted, this, &DeskWindow::findNext);
    connect(m_findBar, &FindBar::closed, this, [this] { currentPanel().grid().setFocus(); });
    connect(&m_lower->grid(), &RecordGrid::rowActivated, this, [this] {
        const QString field = m_lower->grid().columnField(m_lower->grid().currentColumn());
        if (field.startsWith(u"Customer")) {
            goToCustomer();
        }
    });
    connectPanel(*m_upper);
    connectPanel(*m_lower);
    m_toolClicks[0] =
        m_componentToolbar->Click.connect([this](ITool& tool) { m_commands->runTool(tool.id()); });
    m_toolClicks[1] =
        m_interfaceToolbar->Click.connect([this](ITool& tool) { m_commands->runTool(tool.id()); });
}

void DeskWindow::connectPanel(GridPanel& panel) {
    connect(&panel.grid(), &RecordGrid::contextMenuWanted, this, [this, &panel] {
        makeCurrent(panel);
        m_interfaceToolbar->popup(QStringLiteral("bndGrid"));
    });
    connect(&panel.grid(), &RecordGrid::recordWritten, this,
            [this, &panel] { recordWritten(panel); });
    connect(&panel.grid(), &RecordGrid::editFailed, this, [this](const QString& reason) {
        m_services.utility.prompt().message(QStringLiteral("The record was not saved.\r\r") +
                                                reason,
                                            kTitle, PromptIcon::Exclamation);
    });
}

void DeskWindow::open() {
    m_application =
        DeskApplication::open({m_services.clock, m_services.files}, m_options.start);
    m_application->setHelp([this](int topic) { return showHelp(topic); });
    m_open = true;
    m_services.utility.prompt().setParentWindow(this);
    restore();
    showUser();
    show();
    m_upper->grid().setFocus();
    makeCurrent(*m_upper);
    loadAddIn();
}

void DeskWindow::loadAddIn() {
    if (!m_options.addInProgID.isEmpty()) {
        m_addIns.load(m_options.addInProgID, m_component);
        // A layout or recordset that was there before the add-in: it hears of both now.
        for (DeskGridController* controller : {&upper(), &lower()}) {
            controller->loadLayout(controller->LayoutName());
        }
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
    m_services.utility.prompt().setParentWindow(nullptr);
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
    if (!m_open) {
        return;
    }
    reportErrors(m_services.utility, QStringLiteral("YRWDesk.DeskWindow.CustomerChanged"),
                 QStringLiteral("The orders could not be shown."), kTitle, [this] {
                     const Ref<IRecord> customer = upper().CurrentRecord();
                     m_lower->setTitle(
                         customer ? QString(u"Orders of " +
                                            customer->value(QStringLiteral("Name")).toString())
                                  : QStringLiteral("Orders"));
                     lower().rebind();
                 });
}

} // namespace yrw
