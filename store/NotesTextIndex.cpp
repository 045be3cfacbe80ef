#include "store/NotesTextIndex.h"

#include "store/Schema.h"

namespace yrw {

std::unique_ptr<dao::TextIndex> notesTextIndex(const Ref<dao::Database>& database) {
    return dao::openTextIndex(database, {schema::kTblNotes,
                                         QStringLiteral("RecordID"),
                                         {QStringLiteral("Subject"), QStringLiteral("PlainNote")},
                                         QStringLiteral("tblNotesText"),
                                         QStringLiteral("tblNotesToIndex")});
}

} // namespace yrw
