// What the fields of a note and its reminders take, whichever way it comes.
#include "tests/support/NotesFixture.h"
#include "tests/support/Raised.h"

#include <functional>
#include <optional>

namespace yrw::test {
namespace {

using FieldValuesTest = NotesFixture;

/// Stored where a value is refused for its length.
const QVariant kTooLong = QVariant::fromValue(QStringLiteral("too long").toUtf8());

TEST_F(FieldValuesTest, AreConvertedOrRefusedOnEveryWay) {
    const QDateTime eve(QDate(2020, 12, 31), QTime(10, 0));
    const QString longest(255, u'x');
    const struct {
        const char* field;
        QVariant given;
        std::optional<QVariant> stored; ///< nothing: a type mismatch
    } cases[] = {
        {"Date", QStringLiteral("31/12/2020 10:00"), eve},
        {"Date", QStringLiteral("soon"), {}},
        {"Status", QStringLiteral("abc"), {}},
        {"Status", QVariant(), QVariant()},
        {"AutomaticallyShow", QStringLiteral("False"), false},
        {"Subject", longest, longest},
        {"Subject", QString(longest + u'x'), kTooLong},
        {"PlainNote", QStringLiteral(""), QStringLiteral("")},
        {"PlainNote", QString(longest + u'x'), QString(longest + u'x')},
    };
    const Ref<Notes> notes = store.application().Notes();
    // Each way sets a field and gives the key of the row.
    using Way = std::function<qint64(const QString& field, const QVariant& value)>;
    const auto fresh = [&] { return store.addNote(QStringLiteral("fresh")); };
    const auto keyIn = [](IRecord& note) { return note.value(QStringLiteral("RecordID")); };
    const auto setIn = [&](dao::Recordset& rows, const QString& field, const QVariant& value) {
        rows.setValue(field, value);
        rows.Update();
        rows.setBookmark(rows.LastModified());
        return rows.value(u"RecordID").toLongLong();
    };
    const std::pair<const char*, Way> ways[] = {
        {"a record's field",
         [&](const QString& field, const QVariant& value) {
             const Ref<Note> note = fresh();
             note->Field(field)->setValue(value);
             EXPECT_EQ(note->value(field), notes->Item(keyIn(*note))->value(field));
             return keyIn(*note).toLongLong();
         }},
        {"a multiple-field update",
         [&](const QString& field, const QVariant& value) {
             const Ref<Note> note = fresh();
             note->BeginMultipleFieldUpdate();
             note->MultipleUpdateFieldValues().set(field, value);
             note->EndMultipleFieldUpdate();
             return keyIn(*note).toLongLong();
         }},
        {"a table's new row",
         [&](const QString& field, const QVariant& value) {
             const auto rows = store.database()->OpenRecordset(schema::kTblNotes);
             rows->AddNew();
             return setIn(*rows, field, value);
         }},
        {"an edit through a query",
         [&](const QString& field, const QVariant& value) {
             const auto rows = store.database()->OpenRecordset(
                 QStringLiteral("SELECT * FROM qryNotes WHERE [RecordID]=%1")
                     .arg(keyIn(*fresh()).toString()));
             rows->Edit();
             return setIn(*rows, field, value);
         }},
        {"Add",
         [&](const QString& field, const QVariant& value) {
             qint64 id = 0;
             notes->Add({{field, value}}, nullptr, id, false);
             return id;
         }},
    };
    for (const auto& [name, way] : ways) {
        for (const auto& c : cases) {
            const QString field = QLatin1String(c.field);
            SCOPED_TRACE(std::string(name) + ": " + c.field + " = " +
                         c.given.toString().left(40).toStdString());
            const int expected = !c.stored               ? kErrorTypeMismatch
                                 : *c.stored == kTooLong ? kErrorFieldTooSmall
                                                         : 0;
            qint64 id = 0;
            EXPECT_EQ(raisedBy([&] { id = way(field, c.given); }).number(), expected);
            if (expected == 0) {
                EXPECT_EQ(notes->Item(QVariant(id))->value(field), *c.stored);
            }
        }
    }
}

} // namespace
} // namespace yrw::test
