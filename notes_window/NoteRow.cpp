#include "notes_window/NoteRow.h"

#include "framework/HostUtility.h"
#include "notes_window/NoteTexts.h"
#include "store/Schema.h"

namespace yrw {

namespace {

constexpr std::array kFields{u"RecordID",          u"Date",         u"Subject",       u"Status",
                             u"AutomaticallyShow", u"ReminderType", u"RecordUserCode"};
constexpr QColor kDoneColour(0x80, 0x80, 0x80);
constexpr QColor kReminderColour(0x00, 0x80, 0x00);

/// Builds a row from the values of the fields above, by their place among them.
template <class Value>
NoteRow rowFrom(const Value& value) {
    return {value(0).toLongLong(),
            value(1).toDateTime(),
            HostUtility::NullToText(value(2)),
            value(3).toInt() == int(NoteStatus::Active),
            HostUtility::NullToBoolean(value(4)),
            value(5).toInt() != int(ReminderKind::None),
            HostUtility::NullToText(value(6))};
}

} // namespace

NoteRowReader::NoteRowReader(const dao::Recordset& rows) : m_rows(rows) {
    for (size_t i = 0; i < kFields.size(); ++i) {
        m_columns[i] = rows.FieldIndex(kFields[i]);
    }
}

qint64 NoteRowReader::id() const {
    return m_rows.value(m_columns[0]).toLongLong();
}

NoteRow NoteRowReader::read() const {
    return rowFrom([this](size_t field) { return m_rows.value(m_columns[field]); });
}

NoteRow noteRowOf(IRecord& note) {
    return rowFrom(
        [&note](size_t field) { return note.value(QString::fromUtf16(kFields[field])); });
}

ListItem listItemOf(const NoteRow& row, const std::optional<QString>& userName, bool amongAll) {
    ListItem item;
    item.key = noteItemKey(row.id);
    item.texts = {noteDateText(row.date), row.subject,
                  row.active ? QStringLiteral("Active") : QStringLiteral("Done"),
                  row.popup ? QStringLiteral("Y") : QStringLiteral("N")};
    if (userName) {
        item.texts.append(*userName);
    }
    if (amongAll) {
        item.bold = row.active;
        item.foreColour = row.active ? std::nullopt : std::optional(kDoneColour);
    }
    if (row.hasReminders) {
        item.bold = true;
        item.foreColour = kReminderColour;
        item.marked = true;
    }
    return item;
}

ListItem goneItem(const QString& key) {
    return {key, {QString(), QStringLiteral("(deleted meanwhile)")}, false, kDoneColour};
}

} // namespace yrw
