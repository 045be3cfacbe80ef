#pragma once

#include "framework/IRecord.h"

#include <QList>
#include <QPointer>

class QWidget;

namespace yrw {

class Form;
class INotesParent;
class NotesContext;

/// The notes windows of one add-in that are on screen, each nested in the one before.
///
/// Lifetime: a member of its `AddIn`; does not own the windows. Thread: the user-interface thread.
class NotesWindows {
public:
    /// Shows one, modally over the host's window, for a host record (or none), and in it the note
    /// with that id (0 for none).
    void show(INotesParent& addIn, NotesContext& context, const Ref<IRecord>& record,
              qint64 noteRecordID, QWidget* host);
    void clear() { m_windows.clear(); }
    [[nodiscard]] bool isOpen() const noexcept { return !m_windows.isEmpty(); }
    /// True when one is open and no dialog, box or window of others lies over it.
    [[nodiscard]] bool isOnTop() const;
    /// Closes all, the last one first, each as the user would: it saves its text or keeps it. False
    /// when one refused.
    bool unloadAll();

private:
    QList<QPointer<Form>> m_windows;
};

} // namespace yrw
