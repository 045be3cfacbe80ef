#include "notes_window/ListContents.h"

#include "dialogs/Hourglass.h"
#include "notes_window/EditedNote.h"
#include "notes_window/ListFind.h"
#include "notes_window/NoteTexts.h"
#include "notes_window/NoteTools.h"
#include "notes_window/UserNames.h"
#include "notes_window/WaitingReminders.h"
#include "notes_window/WindowContext.h"

#include <QWidget>

#include <array>

namespace yrw {

ListContents::ListContents(NotesList& list, EditedNote& edited, ListFind& find, NoteTools& tools,
                           UserNames& names, WaitingReminders& waiting, WindowContext& context)
    : m_list(list), m_edited(edited), m_find(find), m_tools(tools), m_names(names),
      m_waiting(waiting), m_context(context) {}

void ListContents::build(bool showsNote) {
    if (!m_edited.mayLeave()) {
        m_tools.setShowType(m_list.shown()); // the list stays as it is
        return;
    }
    const Hourglass hourglass(m_context.prompt());
    if (!m_context.report(QStringLiteral("BuildNotesList"),
                          QStringLiteral("Could not Build the Notes List"),
                          [&] { refill(showsNote); })) {
        m_edited.clear();
    }
}

void ListContents::refill(bool showsNote) {
    const QString before = m_list.view().selectedKey();
    m_find.stop();
    m_names.forget();
    m_edited.setAside();
    m_edited.turnOff();
    m_list.clear();
    const ShowType type = m_tools.showType();
    m_tools.setShowType(type);
    showCaption(type);
    const bool mineOnly = setUserColumn();
    m_list.read(type, mineOnly);
    select(before, showsNote);
    m_waiting.count();
    if (m_list.isCut()) {
        m_context.showStatus(QStringLiteral("Stopped: the list shows %1 notes, not all.")
                                 .arg(m_list.view().items().allRows()));
    }
}

void ListContents::showCaption(ShowType type) {
    static const std::array suffixes{QStringLiteral(" [Showing Active]"),
                                     QStringLiteral(" [Showing Done]"),
                                     QStringLiteral(" [Showing All]")};
    if (type < ShowType::Active || type > ShowType::All) {
        return;
    }
    m_context.setCaption(m_title + suffixes[size_t(type) - 1]);
    m_tools.tickShowType(type);
}

bool ListContents::setUserColumn() {
    const bool mineOnly = m_tools.showsMineOnly();
    m_list.columns().showUsers(!mineOnly);
    return mineOnly;
}

void ListContents::select(const QString& before, bool showsNote) {
    ListView& view = m_list.view();
    const QString key = view.items().rowOf(before) >= 0 ? before : view.items().keyAt(0);
    view.selectKey(key);
    if (showsNote) {
        m_edited.show(noteIdOf(key));
    }
    m_find.findAgain();
}

void ListContents::show(ShowType type) {
    m_tools.setShowType(type);
    build();
}

void ListContents::showMineOnly(bool mine) {
    if (!m_edited.mayLeave()) {
        return;
    }
    m_tools.setChecked(NoteTool::ShowMyNotes, mine);
    m_context.settings().set(setting::kShowUserNotes, mine);
    build();
}

} // namespace yrw
