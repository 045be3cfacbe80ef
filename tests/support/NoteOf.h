#pragma once

// Notes of a host's records, added as a program does.

#include "store/Operations.h"
#include "tests/support/FakeHost.h"

namespace yrw::test {

/// What a note is besides its owner.
struct NoteOf {
    QString subject = QStringLiteral("Ring back");
    QVariant text = {}; ///< plain
    bool showsItself = false;
    NoteStatus status = NoteStatus::Active;
    QString progID = kFakeHostProgID;
    qint64 userID = 1;
};

/// Adds a note to a record of a host; nothing as object key makes one on no record.
inline qint64 addNoteOf(Application& application, const QString& objectKey, qint64 recordID,
                        const NoteOf& note = {}) {
    qint64 id = 0;
    application.Notes()->Add({{"Subject", note.subject},
                              {"PlainNote", note.text},
                              {"AutomaticallyShow", note.showsItself},
                              {"Status", static_cast<int>(note.status)},
                              {"OwnerComponentProgID", note.progID},
                              {"OwnerObjectKey", objectKey.isEmpty() ? QVariant() : objectKey},
                              {"OwnerRecordID", recordID},
                              {"RecordUserID", note.userID}},
                             nullptr, id, true);
    return id;
}

} // namespace yrw::test
