#pragma once

#include <QObject>
#include <QStringList>

namespace yrw {

class ListView;
class WindowContext;

/// The columns of the notes list and their widths, which the user's settings keep. Until the user
/// gives the subject a width of its own, it takes what the others leave.
/// Lifetime: list and context outlive it. Thread: the user-interface thread.
class ListColumns final : public QObject {
public:
    /// Adds all columns but the one of the users.
    ListColumns(ListView& list, WindowContext& context);

    /// Gives the columns the widths that the user gave them.
    void restore() { restoreFrom(0); }
    void store();
    /// Adds or removes the column that names each note.s author.
    void showUsers(bool shown);
    [[nodiscard]] bool hasUsers() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] QStringList storedWidths() const;
    void restoreFrom(int first);
    void resized(int column);
    void fitSubject();

    ListView& m_list;
    WindowContext& m_context;
    bool m_subjectFits = true; ///< the subject takes the width that the others leave
    bool m_fitting = false;    ///< columns are resized in code, not by the user
};

} // namespace yrw
