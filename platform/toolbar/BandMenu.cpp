#include "platform/toolbar/BandMenu.h"

#include "platform/forms/Readable.h"
#include "platform/toolbar/ToolIcons.h"

#include <QActionGroup>
#include <QMenu>

namespace yrw {

namespace {

constexpr const char* kEntryProperty = "comboEntry";

void addEntries(QMenu& menu, const BandTool& tool) {
    int number = 0;
    for (const QString& entry : tool.list()) {
        QAction* const action =
            menu.addAction(QString(entry).replace(QLatin1String("&"), QLatin1String("&&")));
        action->setObjectName(tool.key());
        action->setProperty(kEntryProperty, ++number);
        action->setCheckable(true);
        action->setChecked(number == tool.listIndex());
    }
}

void addTool(QMenu& menu, const BandTool& tool) {
    if (tool.kind() == ToolKind::Combo) {
        QMenu* const entries = menu.addMenu(tool.caption());
        entries->setObjectName(tool.key());
        entries->setEnabled(tool.isEnabled());
        addEntries(*entries, tool);
        return;
    }
    QAction* const action = menu.addAction(toolIcon(tool.data().iconName), tool.caption());
    action->setObjectName(tool.key());
    action->setEnabled(tool.isEnabled());
    action->setToolTip(tool.shownToolTip());
    if (!tool.data().shortcut.isEmpty()) {
        // Shown beside the caption; the form's key handling acts on it.
        action->setText(tool.caption() + u'\t' + tool.data().shortcut);
    }
    if (tool.kind() == ToolKind::Check || tool.kind() == ToolKind::Radio) {
        action->setCheckable(true);
        action->setChecked(tool.isChecked());
    }
    if (tool.kind() == ToolKind::Radio) {
        // A group of its own gives the round mark; the state is set by code alone.
        auto* const group = new QActionGroup(&menu);
        group->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
        group->addAction(action);
    }
}

void fillMenu(QMenu& menu, const std::vector<const BandTool*>& tools) {
    for (const BandTool* tool : tools) {
        if (!tool->isVisible()) {
            continue;
        }
        if (tool->beginsGroup() && !menu.isEmpty()) {
            menu.addSeparator();
        }
        addTool(menu, *tool);
    }
    showBoxes(menu);
}

} // namespace

MenuChoice chooseTool(const std::vector<const BandTool*>& tools, const MenuNames& names,
                      const QPoint& globalPosition) {
    QMenu menu; // without an owner: the tools' controls may be made anew while it is open
    menu.setObjectName(names.object);
    menu.setAccessibleName(names.accessible);
    menu.setAccessibleDescription(names.description);
    fillMenu(menu, tools);
    const QAction* const chosen = menu.isEmpty() ? nullptr : menu.exec(globalPosition);
    if (chosen == nullptr || chosen->menu() != nullptr) {
        return {};
    }
    return {chosen->objectName(), chosen->property(kEntryProperty).toInt()};
}

} // namespace yrw
