#include "store/NotesTextIndex.h"

#include "store/Schema.h"

namespace yrw {

const dao::TextIndexNames& notesTextIndexNames() {
    static const dao::TextIndexNames names{schema::kTblNotes,
                                           QStringLiteral("RecordID"),
                                           {QStringLiteral("Subject"), QStringLiteral("PlainNote")},
                                           QStringLiteral("tblNotesText"),
                                           QStringLiteral("tblNotesToIndex")};
    return names;
}

std::unique_ptr<dao::TextIndex> notesTextIndex(const Ref<dao::Database>& database) {
    return database->textIndex(notesTextIndexNames());
}

} // namespace yrw
