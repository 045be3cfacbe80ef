#include "store/NotesSeek.h"

#include "framework/ErrorGuards.h"
#include "store/Schema.h"

#include <utility>

namespace yrw {

void NotesSeek::open(const Ref<dao::Database>& database) {
    if (isOpen() || !database) {
        return;
    }
    const Ref<dao::Recordset> notes =
        database->OpenRecordset(schema::kTblNotes, dao::RecordsetType::Table, dao::kReadOnlyOption);
    notes->setIndex(schema::kOwnerIndex);
    m_recordset = notes;
}

void NotesSeek::close() noexcept {
    const Ref<dao::Recordset> notes = std::exchange(m_recordset, nullptr);
    ignoreErrors([&] {
        if (notes) {
            notes->Close();
        }
    });
}

bool NotesSeek::hasNote(const OwnerKeys& keys) {
    if (!isOpen()) {
        return false;
    }
    m_recordset->Seek(u"=", keys);
    return !m_recordset->NoMatch();
}

} // namespace yrw
