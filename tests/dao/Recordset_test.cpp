#include "tests/dao/DaoFixture.h"

#include <QRandomGenerator>

#include <algorithm>

namespace yrw::dao {

namespace {

class RecordsetTest : public DaoTest {
protected:
    Ref<Recordset> open(RecordsetType type, const QString& source = QStringLiteral("tblNotes")) {
        return database->OpenRecordset(source, type);
    }
    static ValueList owned(const QString& key, qint64 record) {
        return {{u"OwnerComponentProgID"_qs, u"Desk"_qs},
                {u"OwnerObjectKey"_qs, key},
                {u"OwnerRecordID"_qs, record}};
    }
};

class EveryType : public RecordsetTest, public testing::WithParamInterface<RecordsetType> {};
INSTANTIATE_TEST_SUITE_P(, EveryType,
                         testing::Values(RecordsetType::Table, RecordsetType::Dynaset,
                                         RecordsetType::Snapshot, RecordsetType::ForwardOnly));

TEST_P(EveryType, StandsAtBothEndsWhenEmpty) {
    const auto rows = open(GetParam());
    EXPECT_TRUE(rows->AtBof());
    EXPECT_TRUE(rows->AtEof());
    rows->MoveFirst();
    EXPECT_TRUE(rows->AtEof());
    EXPECT_EQ(rows->RecordCount(), 0);
}

TEST_P(EveryType, RefusesEverythingOnceItsDatabaseIsClosed) {
    addNote(u"a"_qs);
    const auto rows = open(GetParam());
    const auto field = rows->Field(u"Subject");
    database->Close();
    database->Close();
    EXPECT_FALSE(rows->isOpen());
    rows->Close();
    EXPECT_EQ(errorOf([&] { rows->MoveNext(); }), kErrorObjectClosed);
    EXPECT_EQ(errorOf([&] { static_cast<void>(field->Value()); }), kErrorObjectClosed);
    EXPECT_EQ(errorOf([&] { rows->Requery(); }), kErrorObjectClosed);
    EXPECT_EQ(errorOf([&] { static_cast<void>(rows->FieldCount()); }), kErrorObjectClosed);
}

/// What a recordset shows, kept beside it: the keys of its rows and where its cursor stands.
struct Shown {
    std::vector<qint64> keys;
    qint64 at = 0;      ///< -1 before the first row, `keys.size()` behind the last
    bool onGap = false; ///< the row that stood at `at` was deleted

    [[nodiscard]] qint64 size() const { return qint64(keys.size()); }
    [[nodiscard]] bool isRow() const { return !onGap && at >= 0 && at < size(); }
    [[nodiscard]] bool isBehind() const { return !onGap && at >= size(); }
    void goTo(qint64 place) {
        at = std::clamp<qint64>(place, -1, size());
        onGap = false;
    }
    void move(qint64 rows) {
        if (rows != 0) {
            goTo(at + rows - (onGap && rows > 0 ? 1 : 0));
        }
    }
};

/// One step of a random walk, done by the recordset and by what is kept beside it.
void takeStep(Recordset& rows, Shown& shown, QRandomGenerator& random) {
    const qint64 some = random.bounded(-3, 4);
    const int step = random.bounded(rows.Updatable() ? 9 : 6);
    const bool fails = step == 0 ? shown.isBehind() : shown.at < 0;
    if (step <= 1) {
        EXPECT_EQ(errorOf([&] { step == 0 ? rows.MoveNext() : rows.MovePrevious(); }),
                  fails ? kErrorNoCurrentRecord : 0);
        shown.move(fails ? 0 : step == 0 ? 1 : -1);
    } else if (step == 2) {
        rows.Move(some);
        shown.move(some);
    } else if (step == 3) {
        some > 0 ? rows.MoveLast() : rows.MoveFirst();
        shown.goTo(some > 0 ? shown.size() - 1 : 0);
    } else if (step <= 5 && shown.isRow()) {
        const Bookmark here = rows.Bookmark();
        some > 0 ? rows.MoveLast() : rows.MoveFirst();
        rows.setBookmark(here);
    } else if (step == 6 || shown.size() < 2) {
        if (rows.Updatable()) {
            const bool wasBehind = shown.isBehind();
            rows.AddNew();
            rows.Update();
            const auto added = rows.Clone();
            added->setBookmark(rows.LastModified());
            shown.keys.push_back(added->value(u"RecordID").toLongLong());
            shown.at += wasBehind ? 1 : 0;
        }
    } else if (step == 7 && shown.isRow()) {
        rows.Edit();
        rows.setValue(u"Subject", QString::number(some));
        rows.Update();
        EXPECT_EQ(rows.value(u"Subject").toString(), QString::number(some));
    } else if (step == 8 && shown.isRow()) {
        rows.Delete();
        shown.keys.erase(shown.keys.begin() + shown.at);
        shown.onGap = true;
    }
}

TEST_P(EveryType, ARandomWalkSeesWhatIsKeptBesideIt) {
    Shown shown;
    for (int i = 0; i < 5; ++i) {
        shown.keys.push_back(addNote(u"note"_qs));
    }
    if (GetParam() == RecordsetType::ForwardOnly) {
        const auto stream = open(GetParam());
        EXPECT_EQ(column(*stream, u"recordid").join(u' '), u"1 2 3 4 5");
        EXPECT_EQ(errorOf([&] { stream->MoveNext(); }), kErrorNoCurrentRecord);
        EXPECT_EQ(errorOf([&] { static_cast<void>(stream->value(0)); }), kErrorNoCurrentRecord);
        EXPECT_EQ(stream->RecordCount(), 5);
        EXPECT_FALSE(stream->Bookmarkable());
        EXPECT_EQ(errorOf([&] { stream->MovePrevious(); }), kErrorInvalidOperation);
        EXPECT_EQ(errorOf([&] { static_cast<void>(stream->Clone()); }), kErrorInvalidOperation);
        EXPECT_EQ(errorOf([&] { static_cast<void>(stream->Bookmark()); }), kErrorNotBookmarkable);
        return;
    }
    const auto rows = open(GetParam());
    QRandomGenerator random(7);
    for (int step = 0; step < 600 && !HasFailure(); ++step) {
        takeStep(*rows, shown, random);
        EXPECT_EQ(rows->AtBof(), shown.at < 0) << step;
        EXPECT_EQ(rows->AtEof(), shown.isBehind()) << step;
        EXPECT_EQ(rows->RecordCount(), shown.size()) << step;
        if (shown.isRow()) {
            EXPECT_EQ(rows->value(u"RecordID").toLongLong(), shown.keys[size_t(shown.at)]) << step;
        } else {
            EXPECT_EQ(errorOf([&] { static_cast<void>(rows->value(0)); }), kErrorNoCurrentRecord);
        }
        if (GetParam() != RecordsetType::Table) {
            EXPECT_EQ(rows->AbsolutePosition(), shown.isRow() ? shown.at : -1) << step;
        }
    }
    const auto clone = rows->Clone();
    rows->Close();
    clone->MoveFirst();
    EXPECT_EQ(clone->value(u"RecordID").toLongLong(), shown.keys.front());
    EXPECT_EQ(errorOf([&] { clone->setBookmark(Bookmark()); }), kErrorNotBookmarkable);
}

TEST_F(RecordsetTest, ABookmarkOfAnotherSetIsRefused) {
    addNote(u"a"_qs);
    const auto one = open(RecordsetType::Dynaset);
    const auto other = open(RecordsetType::Dynaset);
    EXPECT_EQ(errorOf([&] { other->setBookmark(one->Bookmark()); }), kErrorNotBookmarkable);
}

class Editable : public RecordsetTest, public testing::WithParamInterface<RecordsetType> {};
INSTANTIATE_TEST_SUITE_P(, Editable, testing::Values(RecordsetType::Table, RecordsetType::Dynaset));

TEST_P(Editable, AMoveDropsTheEditAndTheBufferKnowsItsRules) {
    addNote(u"a"_qs);
    const auto rows = open(GetParam());
    rows->AddNew();
    EXPECT_EQ(rows->value(u"Status").toInt(), 1) << "a new row shows its defaults";
    rows->CancelUpdate();
    EXPECT_EQ(errorOf([&] { rows->setValue(u"Subject", 1); }), kErrorNoEdit);
    EXPECT_EQ(errorOf([&] { rows->Update(); }), kErrorNoEdit);
    rows->Edit();
    EXPECT_EQ(errorOf([&] { rows->setValue(u"RecordID", 9); }), kErrorReadOnly);
    EXPECT_EQ(errorOf([&] { rows->setValue(u"Nothing", 9); }), kErrorNotInCollection);
    rows->setValue(u"Subject", u"lost"_qs);
    rows->MoveFirst();
    EXPECT_FALSE(rows->EditInProgress());
    EXPECT_EQ(rows->value(u"Subject").toString(), u"a");
    rows->Edit();
    rows->CancelUpdate();
    EXPECT_FALSE(rows->EditInProgress());
    // Null and the empty text differ, also when somebody else wrote one over the other.
    rows->Edit();
    rows->setValue(u"PlainNote", u"mine"_qs);
    another()->RunScript(u"UPDATE tblNotes SET PlainNote = ''"_qs);
    EXPECT_EQ(errorOf([&] { rows->Update(); }), kErrorConflict);
    EXPECT_TRUE(rows->EditInProgress());
    rows->Update(); // who tries again has seen what stands there
    EXPECT_EQ(rows->value(u"PlainNote").toString(), u"mine");
    rows->Edit();
    rows->setValue(u"Subject", u"x"_qs);
    another()->DeleteRows(u"tblNotes"_qs, u"RecordID"_qs, 1);
    EXPECT_EQ(errorOf([&] { rows->Update(); }), kErrorNoCurrentRecord);
}

TEST_F(RecordsetTest, ReadOnlyAndUneditableRecordsetsRefuseChanges) {
    addNote(u"a"_qs);
    const auto readOnly =
        database->OpenRecordset(u"tblNotes"_qs, RecordsetType::Table, kReadOnlyOption);
    EXPECT_FALSE(readOnly->Updatable());
    EXPECT_EQ(errorOf([&] { readOnly->Edit(); }), kErrorReadOnly);
    EXPECT_EQ(errorOf([&] { open(RecordsetType::Snapshot)->Delete(); }), kErrorReadOnly);
    EXPECT_EQ(errorOf([&] { open(RecordsetType::ForwardOnly)->AddNew(); }), kErrorReadOnly);
}

TEST_F(RecordsetTest, AViewSendsChangesToItsBaseTable) {
    addNote(u"a"_qs);
    const auto rows = open(RecordsetType::Dynaset, u"SELECT qryNotes.* FROM qryNotes"_qs);
    EXPECT_TRUE(rows->Updatable());
    rows->Edit();
    EXPECT_EQ(errorOf([&] { rows->setValue(u"UseName", u"x"_qs); }), kErrorReadOnly);
    EXPECT_EQ(errorOf([&] { rows->setValue(u"NoteID", 7); }), kErrorReadOnly);
    rows->setValue(u"Subject", u"b"_qs);
    rows->Update();
    rows->AddNew();
    rows->setValue(u"Subject", u"new"_qs);
    rows->Update();
    rows->setBookmark(rows->LastModified());
    EXPECT_EQ(rows->value(u"NoteID").toInt(), 2);
    rows->Delete();
    const auto table = open(RecordsetType::Table);
    EXPECT_EQ(column(*table, u"Subject"), QStringList(u"b"_qs));
}

TEST_F(RecordsetTest, SeeksByIndexAndWalksOnInItsOrder) {
    const qint64 b2 = addNote(owned(u"b"_qs, 2));
    const qint64 a9 = addNote(owned(u"a"_qs, 9));
    const qint64 b1 = addNote(owned(u"b"_qs, 1));
    addNote(u"without owner"_qs);
    const auto rows = open(RecordsetType::Table);
    EXPECT_EQ(errorOf([&] { rows->setIndex(u"none"_qs); }), kErrorNotInCollection);
    rows->setIndex(u"OwnerComponentProgID:OwnerObjectKey:OwnerRecordID:Status"_qs);
    struct Case {
        const char* comparison;
        std::vector<QVariant> keys;
        qint64 found;
    };
    const Case cases[] = {
        {"=", {u"desk"_qs, u"B"_qs, 2, 1}, b2}, {"=", {u"Desk"_qs, u"b"_qs, 2, 2}, 0},
        {"=", {u"Desk"_qs, u"b"_qs}, b1},       {"=", {QVariant(), QVariant()}, 0},
        {">", {u"Desk"_qs, u"a"_qs, 9, 1}, b1}, {">=", {u"Desk"_qs, u"a"_qs, 9, 1}, a9},
        {"<", {u"Desk"_qs, u"b"_qs, 2, 1}, b1}, {"<=", {u"Desk"_qs, u"b"_qs, 2, 1}, b2},
    };
    for (const Case& test : cases) {
        rows->Seek(QString::fromLatin1(test.comparison), test.keys);
        EXPECT_EQ(rows->NoMatch(), test.found == 0) << test.comparison;
        EXPECT_EQ(errorOf([&] { static_cast<void>(rows->value(0)); }),
                  test.found == 0 ? kErrorNoCurrentRecord : 0);
        if (test.found != 0) {
            EXPECT_EQ(rows->value(u"RecordID").toLongLong(), test.found);
        }
    }
    rows->MoveFirst();
    EXPECT_EQ(column(*rows, u"OwnerRecordID"),
              QStringList({u"Null"_qs, u"9"_qs, u"1"_qs, u"2"_qs}));
    QStringList backwards;
    for (rows->MoveLast(); !rows->AtBof(); rows->MovePrevious()) {
        backwards += rows->value(u"RecordID").toString();
    }
    EXPECT_EQ(backwards, QStringList({u"1"_qs, u"3"_qs, u"2"_qs, u"4"_qs}));
}

TEST_F(RecordsetTest, ADynasetOpensASecondRecordsetWithFilterAndSort) {
    for (const QString& subject : {u"b"_qs, u"a"_qs, u"c"_qs}) {
        addNote(subject);
    }
    const auto rows = open(RecordsetType::Dynaset, u"qryNotes"_qs);
    rows->setFilter(u"[Subject]<>\"a\""_qs);
    rows->setSort(u"[Subject] DESC"_qs);
    EXPECT_EQ(column(*rows->OpenRecordset(), u"Subject"), QStringList({u"c"_qs, u"b"_qs}));
    rows->setFilter(u"[Subject]="_qs);
    EXPECT_EQ(errorOf([&] { static_cast<void>(rows->OpenRecordset()); }), kErrorBadCondition);
}

TEST_F(RecordsetTest, ADynasetPassesOverRowsThatOthersDeleted) {
    for (const QString& subject : {u"a"_qs, u"b"_qs, u"c"_qs}) {
        addNote(subject);
    }
    const auto rows = open(RecordsetType::Dynaset);
    rows->MoveLast();
    const Bookmark last = rows->Bookmark();
    another()->DeleteRows(u"tblNotes"_qs, u"RecordID"_qs, 2);
    rows->MoveFirst();
    EXPECT_EQ(column(*rows, u"Subject"), QStringList({u"a"_qs, u"c"_qs}));
    EXPECT_EQ(rows->RecordCount(), 2);
    rows->setBookmark(last);
    EXPECT_EQ(rows->AbsolutePosition(), 1);
    rows->setAbsolutePosition(0);
    EXPECT_EQ(rows->value(u"Subject").toString(), u"a");
    rows->setAbsolutePosition(1);
    EXPECT_EQ(rows->value(u"Subject").toString(), u"c");
    EXPECT_EQ(errorOf([&] { rows->setAbsolutePosition(2); }), kErrorNoCurrentRecord);
    const auto clone = rows->Clone();
    add(*another(), u"tblNotes"_qs, {{u"Subject"_qs, u"d"_qs}});
    rows->Requery();
    EXPECT_EQ(rows->RecordCount(), 3);
    EXPECT_EQ(clone->RecordCount(), 2) << "a clone keeps its rows";
}

TEST_F(RecordsetTest, ValuesComeBackIdentical) {
    const QString texts[] = {u""_qs,
                             u"it's \"quoted\""_qs,
                             QString(u"a\0b"_qs),
                             u"\U0001F600 שלום"_qs,
                             QString(5'000'000, u'x'),
                             u"123"_qs,
                             u"1e5"_qs};
    for (const QString& text : texts) {
        const qint64 id = addNote(ValueList{{u"Subject"_qs, text.left(200)},
                                            {u"PlainNote"_qs, text},
                                            {u"AutomaticallyShow"_qs, true},
                                            {u"Date"_qs, clock.now()}});
        const auto rows =
            open(RecordsetType::Dynaset, u"SELECT * FROM qryNotes WHERE RecordID=%1"_qs.arg(id));
        EXPECT_EQ(rows->value(u"PlainNote"), QVariant(text));
        EXPECT_EQ(rows->value(u"Subject"), QVariant(text.left(200)));
        EXPECT_EQ(rows->value(u"AutomaticallyShow"), QVariant(true));
        EXPECT_EQ(rows->value(u"Date").toDateTime(), clock.now());
        EXPECT_TRUE(rows->value(u"RTFNote").isNull());
    }
}

TEST_F(RecordsetTest, TextLeadsADynasetInTheUsersLanguageAndDatesInTheirs) {
    for (const char* subject : {"Zeta", "Äpfel", "apfel", "Birnen", "äpfel"}) {
        addNote(QString::fromUtf8(subject));
    }
    addNote({{u"Status"_qs, 2}});
    const std::pair<QString, QString> cases[] = {{u"Subject"_qs, u"635241"_qs},
                                                 {u"Subject DESC"_qs, u"142536"_qs},
                                                 {u"Status DESC, Subject"_qs, u"6"_qs},
                                                 {u"RecordID DESC"_qs, u"654321"_qs}};
    for (const auto& [order, ids] : cases) {
        const QString source = u"SELECT * FROM tblNotes ORDER BY "_qs + order;
        const QString found = column(*open(RecordsetType::Dynaset, source), u"RecordID").join("");
        EXPECT_TRUE(found.startsWith(ids)) << order.toStdString() << ": " << found.toStdString();
    }
}

TEST_F(RecordsetTest, AStreamGoesOnWhenItHasToLetGoInBetween) {
    for (const QString& subject : {u"a"_qs, u"b"_qs, u"c"_qs}) {
        addNote(subject);
    }
    for (const QString& source : {u"qryNotes"_qs, u"tblQueries"_qs,
                                  u"SELECT * FROM qryNotes "
                                  "ORDER BY Subject DESC"_qs}) {
        const auto whole = open(RecordsetType::ForwardOnly, source);
        const QStringList expected = column(*whole, whole->FieldName(0));
        const auto rows = open(RecordsetType::ForwardOnly, source);
        QStringList values;
        for (; !rows->AtEof(); rows->MoveNext()) {
            addNote(u"a write takes the connection"_qs);
            values += rows->value(0).toString();
        }
        EXPECT_EQ(values, expected) << source.toStdString();
        database->OpenRecordset(u"tblNotes"_qs)->Close();
        for (qint64 id = 4; id < 60; ++id) {
            database->DeleteRows(u"tblNotes"_qs, u"RecordID"_qs, id);
        }
    }
}

TEST_F(RecordsetTest, ALongStreamGivesColumnsThatItsFirstRowsWereNotAskedFor) {
    QStringList expected;
    for (int i = 0; i < 200; ++i) {
        expected += u"note "_qs + QString::number(i);
        addNote(expected.last());
    }
    for (const bool writes : {false, true}) {
        const auto rows = open(RecordsetType::ForwardOnly, u"qryNotes"_qs);
        QStringList values;
        for (qint64 row = 0; !rows->AtEof(); rows->MoveNext(), ++row) {
            const qint64 id = rows->value(u"RecordID").toLongLong();
            EXPECT_EQ(rows->RecordCount(), row + 1);
            if (row >= 100) {
                values += rows->value(u"Subject").toString();
                EXPECT_TRUE(rows->value(u"RTFNote").isNull());
                EXPECT_EQ(rows->value(u"RecordID").toLongLong(), id);
            }
            if (writes && row == 150) {
                database->DeleteRows(u"tblNotes"_qs, u"RecordID"_qs, id + 1);
                expected.removeAt(151);
            }
        }
        EXPECT_EQ(values, expected.mid(100));
    }
}

} // namespace

} // namespace yrw::dao
