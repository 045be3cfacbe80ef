#include "host/desk/DeskCommands.h"

#include "platform/toolbar/Toolbar.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

namespace yrw {

namespace {

enum class Kind { Plain, Checked, Unchecked };

struct CommandEntry {
    DeskCommand command;
    const char16_t* menu; ///< menu that it stands in
    const char16_t* key;
    const char16_t* caption;
    const char16_t* shortcut = u"";
    const char16_t* icon = u"";
    bool beginsGroup = false;
    Kind kind = Kind::Plain;
};

constexpr CommandEntry kCommands[] = {
    {DeskCommand::NewRecord, u"&Record", u"tooNew", u"&New Record", u"Ctrl+N", u"document-new"},
    {DeskCommand::EditRecord, u"&Record", u"tooEdit", u"&Edit", u"", u"document-edit"},
    {DeskCommand::DeleteRecord, u"&Record", u"tooDelete", u"&Delete…", u"Ctrl+Del", u"edit-delete"},
    {DeskCommand::GoToCustomer, u"&Record", u"tooGoToCustomer", u"&Go to Customer", u"Ctrl+G",
     u"go-jump", true},
    {DeskCommand::Quit, u"&Record", u"tooQuit", u"&Quit", u"Ctrl+Q", u"application-exit", true},

    {DeskCommand::Find, u"&View", u"tooFind", u"&Find…", u"Ctrl+F", u"edit-find"},
    {DeskCommand::FindNext, u"&View", u"tooFindNext", u"Find &Next", u"F3"},
    {DeskCommand::Filter, u"&View", u"tooFilter", u"Fi&lter", u"Ctrl+L"},
    {DeskCommand::Refresh, u"&View", u"tooRefresh", u"&Refresh", u"F5", u"view-refresh", true},
    {DeskCommand::Split, u"&View", u"tooSplit", u"&Split Grid in Two", u"Ctrl+T",
     u"view-split-left-right", false, Kind::Unchecked},
    {DeskCommand::OtherGrid, u"&View", u"tooOtherGrid", u"&Other Grid", u"F6", u"", true},

    {DeskCommand::BandMain, u"&Developer", u"tooBandMain", u"Band \"bnd&Main\"", u"", u"", false,
     Kind::Checked},
    {DeskCommand::BandPlain, u"&Developer", u"tooBandPlain", u"Band \"M&ain\"", u"", u"", false,
     Kind::Unchecked},
    {DeskCommand::BandAddins, u"&Developer", u"tooBandAddins", u"Band \"A&ddins\"", u"", u"", false,
     Kind::Checked},
    {DeskCommand::NotesChecking, u"&Developer", u"tooNotesChecking", u"&Notes May Be Checked", u"",
     u"", true, Kind::Checked},
    {DeskCommand::LoadAddIn, u"&Developer", u"tooLoadAddIn", u"&Load Add-in", u"", u"", true},
    {DeskCommand::ActivateAddIn, u"&Developer", u"tooActivateAddIn", u"A&ctivate Add-in"},
    {DeskCommand::DeactivateAddIn, u"&Developer", u"tooDeactivateAddIn", u"D&eactivate Add-in"},
    {DeskCommand::ReleaseAddIn, u"&Developer", u"tooReleaseAddIn", u"&Release Add-in"},

    {DeskCommand::Contents, u"&Help", u"tooContents", u"&Keys and Mouse", u"F1", u"help-contents"},
    {DeskCommand::About, u"&Help", u"tooAbout", u"&About Yarrowen Desk…", u"", u"help-about"},
};

const CommandEntry& entryOf(DeskCommand command) {
    for (const CommandEntry& entry : kCommands) {
        if (entry.command == command) {
            return entry;
        }
    }
    return kCommands[0];
}

QMenu& menuOf(QMenuBar& menus, const QString& title) {
    const QList<QAction*> shown = menus.actions();
    for (QAction* action : shown) {
        if (action->text() == title) {
            return *action->menu();
        }
    }
    return *menus.addMenu(title);
}

void addTool(IBand& band, DeskCommand command, bool beginsGroup = false) {
    const CommandEntry& entry = entryOf(command);
    ITool& tool = band.addTool(int(command), QString::fromUtf16(entry.key));
    tool.setCaption(QString::fromUtf16(entry.caption));
    tool.setStyle(ToolStyle::CaptionOnly);
    tool.setShortcutText(QString::fromUtf16(entry.shortcut));
    tool.setBeginsGroup(beginsGroup);
}

} // namespace

DeskCommands::DeskCommands(QMenuBar& menus, Run run) : m_run(std::move(run)) {
    for (const CommandEntry& entry : kCommands) {
        QMenu& menu = menuOf(menus, QString::fromUtf16(entry.menu));
        if (entry.beginsGroup) {
            menu.addSeparator();
        }
        QAction* action = menu.addAction(QString::fromUtf16(entry.caption));
        action->setObjectName(QString::fromUtf16(entry.key));
        action->setShortcut(QKeySequence(QString::fromUtf16(entry.shortcut)));
        action->setCheckable(entry.kind != Kind::Plain);
        action->setChecked(entry.kind == Kind::Checked);
        QObject::connect(action, &QAction::triggered, &menus,
                         [this, command = entry.command] { m_run(command); });
        m_actions[entry.command] = action;
    }
}

void DeskCommands::fillComponentToolbar(Toolbar& toolbar) const {
    for (const DeskCommand command :
         {DeskCommand::BandMain, DeskCommand::BandPlain, DeskCommand::BandAddins}) {
        const QString key = bandOf(command);
        if (!isChecked(command)) {
            toolbar.removeBand(key);
        } else if (toolbar.findBand(key) == nullptr) {
            IBand& band = toolbar.addBand(key, false);
            if (command != DeskCommand::BandAddins) {
                addTool(band, DeskCommand::Refresh);
                addTool(band, DeskCommand::Find);
                addTool(band, DeskCommand::About, true);
            }
        }
    }
    toolbar.recalcLayout();
    toolbar.refresh();
}

void DeskCommands::fillInterfaceToolbar(Toolbar& toolbar) {
    IBand& docked = toolbar.addBand(QStringLiteral("bndRecord"), false);
    addTool(docked, DeskCommand::NewRecord);
    addTool(docked, DeskCommand::EditRecord);
    addTool(docked, DeskCommand::DeleteRecord);
    addTool(docked, DeskCommand::GoToCustomer, true);
    addTool(docked, DeskCommand::Split);
    IBand& menu = toolbar.addBand(QStringLiteral("bndGrid"), true);
    addTool(menu, DeskCommand::NewRecord);
    addTool(menu, DeskCommand::EditRecord);
    addTool(menu, DeskCommand::DeleteRecord);
    addTool(menu, DeskCommand::Find, true);
    addTool(menu, DeskCommand::Refresh);
    addTool(menu, DeskCommand::GoToCustomer, true);
    toolbar.recalcLayout();
}

bool DeskCommands::runTool(int id) const {
    const auto found = m_actions.find(DeskCommand(id));
    if (found == m_actions.end()) {
        return false;
    }
    found->second->trigger();
    return true;
}

bool DeskCommands::isChecked(DeskCommand command) const {
    return m_actions.at(command)->isChecked();
}

void DeskCommands::setChecked(DeskCommand command, bool checked) {
    m_actions.at(command)->setChecked(checked);
}

QString bandOf(DeskCommand command) {
    switch (command) {
    case DeskCommand::BandMain:
        return QStringLiteral("bndMain");
    case DeskCommand::BandPlain:
        return QStringLiteral("Main");
    case DeskCommand::BandAddins:
        return QStringLiteral("Addins");
    default:
        return {};
    }
}

} // namespace yrw
