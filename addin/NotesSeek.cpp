#include "addin/NotesSeek.h"

#include "framework/ErrorGuards.h"
#include "framework/HostDataHelper.h"
#include "store/Schema.h"

#include <utility>

namespace yrw {

namespace {

/// The fields of the notes view that hold the keys, in their order.
constexpr std::array<const char16_t*, std::tuple_size_v<OwnerKeys>> kOwnerFields{
    u"OwnerComponentProgID", u"OwnerObjectKey", u"OwnerRecordID", u"Status"};

} // namespace

QString ownedNotesQuery(const OwnerKeys& keys) {
    QString sql = QStringLiteral("SELECT qryNotes.* FROM qryNotes");
    for (std::size_t i = 0; i < keys.size(); ++i) {
        sql = HostDataHelper::AddCondition(
            sql, HostDataHelper::EqualCondition(QString::fromUtf16(kOwnerFields[i]), keys[i]));
    }
    return sql;
}

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
