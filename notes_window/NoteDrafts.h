#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace yrw {

/// Text of a note that was typed but not saved.
struct NoteDraft {
    qint64 noteID = 0;
    QDateTime written;
    QString rtf;
    QString file{}; ///< of a draft that was found
};

/// The drafts of one notes database, one file per note in a folder of the user's own.
///
/// A draft is written while a note is edited and removed when the note was saved; one that is
/// found later is what a crash or a failed save left. One that the user wants to decide about
/// later is put aside, so that writing and saving the note leave it alone. Drafts of a window that
/// is still open in another process are not found. A draft is there whole or not at all. Nothing
/// here raises: a draft is a second line of defence.
/// Thread: the user-interface thread.
class NoteDrafts {
public:
    /// `folder` need not be there yet; `database` is the path of the notes database.
    NoteDrafts(const QString& folder, const QString& database);

    /// The folder below the user's state folder (`$XDG_STATE_HOME`, else `~/.local/state`).
    [[nodiscard]] static QString userFolder();

    /// Writes a draft, replacing the note's earlier one; false when it could not be written: then
    /// the earlier one is there as it was.
    bool write(const NoteDraft& draft);
    /// Why the last draft was not written, in the system's words.
    [[nodiscard]] const QString& problem() const noexcept { return m_problem; }
    /// The note's draft, if one was left behind; of several the one that was written last.
    [[nodiscard]] std::optional<NoteDraft> find(qint64 noteID) const;
    /// Removes the note's draft, but none that was put aside, nor one that another living process
    /// has written meanwhile.
    void remove(qint64 noteID);
    /// Removes a draft that was found, unless another living process has written it meanwhile.
    static void remove(const NoteDraft& found);
    /// Puts a draft that was found aside, to be found again later.
    void putAside(const NoteDraft& found) const;
    /// Removes what a program left that was killed while it wrote a draft long ago.
    void removeHalfWritten(const QDateTime& now) const;
    /// Ids of the notes that have a draft file.
    [[nodiscard]] QList<qint64> noteIDs() const;

    /// The file of the note's own draft.
    [[nodiscard]] QString fileOf(qint64 noteID) const;

private:
    QString m_folder;
    QString m_problem;
};

} // namespace yrw
