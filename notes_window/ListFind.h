#pragma once

#include "notes_window/NoteFinder.h"
#include "platform/component/Event.h"

#include <QStringList>

#include <vector>

namespace yrw {

class EditedNote;
class FindBar;
class NotesList;
class RichTextBox;

/// The find bar over the list: narrows the list to the notes that contain what is typed, and marks
/// the hits in the text.
/// Lifetime: all that it is given outlives it. Thread: the user-interface thread.
class ListFind final : public QObject {
public:
    ListFind(FindBar& bar, NotesList& list, EditedNote& edited, RichTextBox& text,
             StoreContext& store);

    void open();
    void close();
    [[nodiscard]] bool hasKeyboard() const;
    /// The list is being emptied: what was found is no more.
    void stop() { m_finder.stop(); }
    /// Looks among the rows of the list, which was read anew.
    void findAgain();
    void markHits();

    Event<> toggled; ///< the bar was shown or hidden

private:
    void find();
    void narrow();
    void selectFound();
    void rowsChanged();
    void showState();
    void showEmptyText();
    [[nodiscard]] QStringList words() const;

    FindBar& m_bar;
    NotesList& m_list;
    EditedNote& m_edited;
    RichTextBox& m_text;
    NoteFinder m_finder;
    std::vector<Connection> m_connections;
};

} // namespace yrw
