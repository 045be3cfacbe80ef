#include "store/NoteReading.h"

#include "platform/clock/WallTime.h"
#include "platform/rtf/Reader.h"

#include <algorithm>

namespace yrw {

namespace {

const QString kOwnerObjectKey = QStringLiteral("OwnerObjectKey");
const QString kStatus = QStringLiteral("Status");

constexpr qsizetype kFewRows = 64; ///< asked for by their ids
constexpr qint64 kSparse = 8; ///< of so many ids one is wanted: the others cost more than they save

/// A query of a view with conditions, which is read front to back.
Ref<dao::Recordset> openView(HostDataHelper& helper, const QString& view,
                             const QStringList& conditions, const QString& order) {
    QString sql = QStringLiteral("SELECT %1.* FROM %1").arg(view);
    for (const QString& condition : conditions) {
        sql = HostDataHelper::AddCondition(sql, condition);
    }
    RecordsetRequest request;
    request.CursorType = dao::RecordsetType::ForwardOnly;
    request.RecordsetOptions = dao::kReadOnlyOption;
    request.Sort = order;
    return helper.OpenRecordset(sql, request);
}

/// A time as conditions write one. A time that the clocks leave out has nothing before or behind it
/// but the times around, which are a minute's steps away.
QString dateLiteral(WallMoment moment, int stepSeconds) {
    while (wallTimeKind(moment.date, moment.time) == WallTimeKind::Missing) {
        const QTime next = moment.time.addSecs(stepSeconds);
        moment.date = moment.date.addDays(stepSeconds < 0 && next > moment.time ? -1 : 0);
        moment.time = next;
    }
    return u'#' + moment.date.toString(Qt::ISODate) + u' ' + moment.time.toString(u"HH:mm:ss") +
           u'#';
}

QStringList conditionsOf(const NoteSelection& selection) {
    QStringList conditions;
    if (selection.owner) {
        conditions += ownerConditions(*selection.owner);
    }
    if (selection.onNoRecord) {
        conditions += noOwnerCondition();
    }
    if (selection.authorID) {
        conditions +=
            HostDataHelper::EqualCondition(QStringLiteral("RecordUserID"), *selection.authorID);
    }
    if (selection.status) {
        conditions += HostDataHelper::EqualCondition(kStatus, int(*selection.status));
    }
    if (selection.from) {
        conditions += u"[Date]>=" + dateLiteral(*selection.from, 60);
    }
    if (selection.to) {
        conditions += u"[Date]<=" + dateLiteral(*selection.to, -60);
    }
    return conditions;
}

/// The active notes of one record of one host.
QString activeNotesQuery(const QString& hostProgID, const OwnerKey& owner) {
    QStringList conditions = ownerConditions(owner);
    conditions +=
        HostDataHelper::EqualCondition(QStringLiteral("OwnerComponentProgID"), hostProgID);
    conditions += HostDataHelper::EqualCondition(kStatus, int(NoteStatus::Active));
    QString sql = QStringLiteral("SELECT qryNotes.* FROM qryNotes");
    for (const QString& condition : std::as_const(conditions)) {
        sql = HostDataHelper::AddCondition(sql, condition);
    }
    return sql;
}

QString orderText(NoteOrder order) {
    switch (order) {
    case NoteOrder::ByDate:
        return QStringLiteral("[Date], [RecordID]");
    case NoteOrder::ByOwner:
        return QStringLiteral("[OwnerObjectKey], [OwnerRecordID], [RecordID]");
    case NoteOrder::ByID:
        break;
    }
    return QStringLiteral("[RecordID]");
}

} // namespace

QStringList ownerConditions(const OwnerKey& owner) {
    return {HostDataHelper::EqualCondition(kOwnerObjectKey, owner.objectKey),
            HostDataHelper::EqualCondition(QStringLiteral("OwnerRecordID"), owner.recordID)};
}

QString noOwnerCondition() {
    return QStringLiteral("[%1] Is Null").arg(kOwnerObjectKey);
}

std::optional<OwnerKey> ownerOfNote(const HostDataHelper& helper, qint64 noteID) {
    const Ref<dao::Recordset> note = helper.OpenRecordset(
        QStringLiteral("SELECT qryNotes.* FROM qryNotes WHERE (((qryNotes.RecordID)=%1))")
            .arg(noteID));
    if (note->AtEof()) {
        return std::nullopt;
    }
    const OwnerKey owner{note->value(kOwnerObjectKey), note->value(u"OwnerRecordID")};
    note->Close();
    return owner;
}

Ref<dao::Recordset> openActiveNotes(const HostDataHelper& helper, const QString& hostProgID,
                                    const OwnerKey& owner) {
    RecordsetRequest request;
    request.CursorType = dao::RecordsetType::ForwardOnly;
    request.RecordsetOptions = dao::kReadOnlyOption;
    return helper.OpenRecordset(activeNotesQuery(hostProgID, owner), request);
}

Ref<dao::Recordset> openAutomaticNotes(const HostDataHelper& helper, const QString& hostProgID,
                                       const OwnerKey& owner) {
    RecordsetRequest request;
    request.CursorType = dao::RecordsetType::Snapshot;
    request.RecordsetOptions = dao::kReadOnlyOption;
    request.Filter = QStringLiteral("[AutomaticallyShow]=True");
    return helper.OpenRecordset(activeNotesQuery(hostProgID, owner), request);
}

Ref<dao::Recordset> openNotes(HostDataHelper& helper, const NoteSelection& selection) {
    return openView(helper, schema::kQryNotes, conditionsOf(selection), orderText(selection.order));
}

Ref<dao::Recordset> openReminders(HostDataHelper& helper, const std::optional<qint64>& noteID) {
    QStringList conditions;
    if (noteID) {
        conditions += HostDataHelper::EqualCondition(QStringLiteral("NoteID"), *noteID);
    }
    return openView(helper, schema::kQryReminders, conditions,
                    QStringLiteral("[NextDate], [RecordID]"));
}

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

QString readableText(const QString& rich, const QString& plain) {
    return rtf::isRtf(rich) || plain.isEmpty() ? rich : plain;
}

} // namespace yrw
