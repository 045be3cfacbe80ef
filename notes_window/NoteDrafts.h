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
};

/// The drafts of one notes database, one file per note in a folder of the user's own.
///
/// A draft is written while a note is edited and removed when the note was saved; one that is
/// found later is what a crash or a failed save left. Drafts of a window that is still open in
/// another process are not found. Nothing here raises: a draft is a second line of defence.
/// Thread: the user-interface thread.
class NoteDrafts {
public:
    /// `folder` need not be there yet; `database` is the path of the notes database.
    NoteDrafts(const QString& folder, const QString& database);

    /// The folder below the user's state folder (`$XDG_STATE_HOME`, else `~/.local/state`).
    [[nodiscard]] static QString userFolder();

    /// Writes a draft, replacing the note's earlier one; false when it could not be written.
    bool write(const NoteDraft& draft);
    /// The note's draft, if one was left behind.
    [[nodiscard]] std::optional<NoteDraft> find(qint64 noteID) const;
    /// Removes the note's draft; one that another living process has written meanwhile stays.
    void remove(qint64 noteID);
    /// Ids of the notes that have a draft file.
    [[nodiscard]] QList<qint64> noteIDs() const;

private:
    [[nodiscard]] QString fileOf(qint64 noteID) const;

    QString m_folder;
};

} // namespace yrw
