#include "host/desk/DeskCommands.h"

#include "platform/toolbar/Toolbar.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

namespace yrw {

namespace {

/// `GridKey`: the grid itself acts on the key, which is only shown.
enum class Kind { Plain, Checked, Unchecked, GridKey };

struct CommandEntry {
    DeskCommand command;
    const char16_t* menu; ///< menu that it stands in
    const char16_t* key;
    const char16_t* caption;
    const char16_t* shortcut = u"";
    bool beginsGroup = false;
    Kind kind = Kind::Plain;
};

constexpr CommandEntry kCommands[] = {
    {DeskCommand::NewRecord, u"&Record", u"tooNew", u"&New Record", u"Ctrl+N"},
    {DeskCommand::EditRecord, u"&Record", u"tooEdit", u"&Edit", u"F2", false, Kind::GridKey},
    {DeskCommand::DeleteRecord, u"&Record", u"tooDelete", u"&Delete…", u"Ctrl+Del"},
    {DeskCommand::GoToCustomer, u"&Record", u"tooGoToCustomer", u"&Go to Customer", u"Ctrl+G",
     true},
    {DeskCommand::Quit, u"&Record", u"tooQuit", u"&Quit", u"Ctrl+Q", true},

    {DeskCommand::Find, u"&View", u"tooFind", u"&Find…", u"Ctrl+F"},
    {DeskCommand::FindNext, u"&View", u"tooFindNext", u"Find &Next", u"F3"},
    {DeskCommand::Filter, u"&View", u"tooFilter", u"Fi&lter", u"Ctrl+L"},
    {DeskCommand::Refresh, u"&View", u"tooRefresh", u"&Refresh", u"F5", true},
    {DeskCommand::Split, u"&View", u"tooSplit", u"&Split Grid in Two", u"Ctrl+T", false,
     Kind::Unchecked},
    {DeskCommand::OtherGrid, u"&View", u"tooOtherGrid", u"&Other Grid", u"F6", true},

    {DeskCommand::BandMain, u"&Developer", u"tooBandMain", u"Band \"bnd&Main\"", u"", false,
     Kind::Checked},
    {DeskCommand::BandPlain, u"&Developer", u"tooBandPlain", u"Band \"M&ain\"", u"", false,
     Kind::Unchecked},
    {DeskCommand::BandAddins, u"&Developer", u"tooBandAddins", u"Band \"A&ddins\"", u"", false,
     Kind::Checked},
    {DeskCommand::NotesChecking, u"&Developer", u"tooNotesChecking", u"&Notes May Be Checked", u"",
     true, Kind::Checked},
    {DeskCommand::LoadAddIn, u"&Developer", u"tooLoadAddIn", u"&Load Add-in", u"", true},
    {DeskCommand::ActivateAddIn, u"&Developer", u"tooActivateAddIn", u"A&ctivate Add-in"},
    {DeskCommand::DeactivateAddIn, u"&Developer", u"tooDeactivateAddIn", u"D&eactivate Add-in"},
    {DeskCommand::ReleaseAddIn, u"&Developer", u"tooReleaseAddIn", u"&Release Add-in"},

    {DeskCommand::Contents, u"&Help", u"tooContents", u"&Keys and Mouse", u"F1"},
    {DeskCommand::About, u"&Help", u"tooAbout", u"&About Yarrowen Desk…", u""},
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
        const QString shortcut = QString::fromUtf16(entry.shortcut);
        if (entry.kind == Kind::GridKey) {
            action->setText(action->text() + u'\t' + shortcut);
        } else {
            action->setShortcut(QKeySequence(shortcut));
        }
        action->setCheckable(entry.kind == Kind::Checked || entry.kind == Kind::Unchecked);
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

void DeskCommands::setEnabled(DeskCommand command, bool enabled) {
    m_actions.at(command)->setEnabled(enabled);
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
