#include "store/NoteReading.h"

#include <algorithm>

namespace yrw {

namespace {

constexpr qsizetype kFewRows = 64; ///< asked for by their ids
constexpr qint64 kSparse = 8; ///< of so many ids one is wanted: the others cost more than they save
constexpr int kReminderWindowMinutes = 1; ///< how early a reminder is due at most

} // namespace

Ref<dao::Recordset> openNotes(Notes& notes, const QVariantList& ids) {
    RecordsetRequest request;
    request.CursorType = dao::RecordsetType::ForwardOnly;
    request.RecordsetOptions = dao::kReadOnlyOption;
    const auto [least, most] =
        std::minmax_element(ids.begin(), ids.end(), [](const QVariant& a, const QVariant& b) {
            return a.toLongLong() < b.toLongLong();
        });
    const qint64 first = least->toLongLong();
    const qint64 last = most->toLongLong();
    if (ids.size() <= kFewRows || last - first > kSparse * ids.size()) {
        request.RecordData = ids;
    } else {
        request.Filter = QStringLiteral("[RecordID] Between %1 And %2").arg(first).arg(last);
    }
    return notes.Recordset(request);
}

bool hasNote(Application& application, qint64 noteID) {
    RecordsetRequest request;
    request.RecordData = noteID;
    const Ref<dao::Recordset> row = application.Notes()->Recordset(request);
    const bool found = !row->AtEof();
    row->Close();
    return found;
}

Ref<dao::Recordset> dueReminders(HostDataHelper& helper, const QString& hostProgID,
                                 const QVariant& userID) {
    return helper.OpenQuery(schema::kQryActiveReminders,
                            {{QStringLiteral("ProgID"), hostProgID},
                             {QStringLiteral("NumberOfMinutes"), kReminderWindowMinutes},
                             {QStringLiteral("UserID"), userID}});
}

} // namespace yrw
