#include "platform/dao/Condition.h"

#include "tests/dao/DaoFixture.h"

#include <QElapsedTimer>
#include <QRandomGenerator>

namespace yrw::dao {

namespace {

class ConditionTest : public DaoTest {
protected:
    ConditionTest() {
        addNote({{u"Subject"_qs, u"Date"_qs},
                 {u"OwnerRecordID"_qs, 5},
                 {u"AutomaticallyShow"_qs, -1},
                 {u"Date"_qs, QDateTime(QDate(2026, 5, 1), QTime(8, 30))}});
        addNote({{u"Subject"_qs, u"50% off"_qs},
                 {u"OwnerObjectKey"_qs, u"cu"_qs},
                 {u"AutomaticallyShow"_qs, true},
                 {u"Status"_qs, 2}});
        addNote({{u"Subject"_qs, u"*star"_qs}, {u"PlainNote"_qs, u""_qs}});
    }

    /// Numbers of the notes that meet a condition, one digit each.
    QString selected(const QString& condition) {
        const auto rows = database->OpenRecordset(
            u"SELECT qryNotes.* FROM qryNotes WHERE "_qs + condition, RecordsetType::Snapshot);
        return column(*rows, u"RecordID").join(QString());
    }
};

TEST_F(ConditionTest, SelectsWhatItSays) {
    const std::pair<const char*, const char*> cases[] = {
        {R"([Subject]="date")", "1"},
        {R"([Date]="Date")", ""},
        {R"(([OwnerObjectKey]="cu") AND [Status]=2)", "2"},
        {"[OwnerObjectKey] Is Null", "13"},
        {"[OwnerObjectKey] is not null", "2"},
        {"[OwnerObjectKey]=Null", ""},
        {"[AutomaticallyShow]=True", "12"},
        {"[AutomaticallyShow]=-1", "12"},
        {"[AutomaticallyShow]=False", "3"},
        {"[AutomaticallyShow]<>True", "3"},
        {"AutomaticallyShow", "12"},
        {"NOT [AutomaticallyShow] OR [Status]=2", "23"},
        {"(((qryNotes.RecordID)=2))", "2"},
        {"qrynotes.[recordid]>=2 AND 2>=RecordID", "2"},
        {R"([OwnerRecordID]="5")", "1"},
        {"[OwnerRecordID] In (4, 5, \"x\")", "1"},
        {"[RecordID] Not In (2, 3)", "1"},
        {"[RecordID] Not Between 2 And 3", "1"},
        {"[RecordID]>-2 AND [Status]<>-1 AND [RecordID]<>-3", "123"},
        {"[Date]=#2026-05-01 08:30#", "1"},
        {"[Date]<#5/2/2026#", "1"},
        {"[Date]<=Now()", "1"},
        {R"([Subject] Like "*%*")", "2"},
        {R"([Subject] Like "?ate")", "1"},
        {R"([Subject] Like "[*]*")", "3"},
        {R"([Subject] Not Like "*a*")", "2"},
        {R"([PlainNote]="")", "3"},
        {"[RecordID]=1 AND True ORDER BY [RecordID] DESC", "1"},
        {"[Status]=1 ORDER BY [Subject], [RecordID] DESC;", "31"},
    };
    for (const auto& [condition, expected] : cases) {
        EXPECT_EQ(selected(QString::fromUtf8(condition)).toStdString(), expected) << condition;
    }
}

TEST_F(ConditionTest, RefusesWhatItDoesNotKnowAndRunsNothing) {
    const std::pair<const char*, int> cases[] = {
        {R"([Subject]="a"b")", kErrorBadCondition},
        {R"([Subject]="a""b")", kErrorBadCondition},
        {R"([Subject]="x" OR "1"="1")", kErrorBadCondition},
        {R"([Subject]="x"; DELETE FROM tblNotes; --")", kErrorBadCondition},
        {"[RecordID]=1; DELETE FROM tblNotes", kErrorBadCondition},
        {"[RecordID]=1 UNION SELECT 1", kErrorBadCondition},
        {"[RecordID]=(SELECT 1)", kErrorBadCondition},
        {"[RecordID]=1 -- comment", kErrorBadCondition},
        {"random()=[RecordID]", kErrorBadCondition},
        {"[RecordID]", 0},
        {"5", kErrorBadCondition},
        {"5 AND [RecordID]=1", kErrorBadCondition},
        {"", kErrorBadCondition},
        {"[RecordID]=", kErrorBadCondition},
        {"([RecordID]=1", kErrorBadCondition},
        {"[RecordID]=1)", kErrorBadCondition},
        {"[RecordID = 1", kErrorBadCondition},
        {"[Date]=#2026-02-30#", kErrorBadCondition},
        {"[RecordID]=99999999999999999999", kErrorBadCondition},
        {"[RecordID]=12abc", kErrorBadCondition},
        {"[Nothing]=1", kErrorNotInCollection},
        {"tblNotes.[RecordID]=1", kErrorNotInCollection},
    };
    for (const auto& [condition, number] : cases) {
        EXPECT_EQ(errorOf([&] { static_cast<void>(selected(QString::fromUtf8(condition))); }),
                  number)
            << condition;
    }
    const QString deep = QString(100'000, u'(') + u"[RecordID]=1";
    EXPECT_EQ(errorOf([&] { static_cast<void>(selected(deep)); }), kErrorBadCondition);
    EXPECT_EQ(database->OpenRecordset(u"tblNotes"_qs)->RecordCount(), 3);
}

TEST_F(ConditionTest, SelectionsNameTheirColumns) {
    const auto rows = database->OpenRecordset(
        u"select Subject as [What is it], tblNotes.Status From tblNotes Where RecordID=2"_qs);
    EXPECT_EQ(rows->FieldCount(), 2);
    EXPECT_EQ(rows->value(u"what is it").toString(), u"50% off");
    EXPECT_EQ(rows->TypeOf(1), FieldType::Integer);
    const auto count =
        database->OpenRecordset(u"SELECT Count(*) AS N FROM qryNotes WHERE [Status]=1"_qs);
    EXPECT_EQ(count->value(u"N").toInt(), 2);
    EXPECT_EQ(errorOf([&] { static_cast<void>(database->OpenRecordset(u"none"_qs)); }),
              kErrorNotInCollection);
    EXPECT_EQ(errorOf([&] {
                  static_cast<void>(database->OpenRecordset(u"SELECT * FROM sqlite_schema"_qs));
              }),
              kErrorNotInCollection);
}

// Texts thrown together from the grammar's own pieces reach deeper than noise does.
TEST_F(ConditionTest, AnyTextIsEitherReadOrRefused) {
    const QStringList pieces =
        u"[Subject]~RecordID~qryNotes.~=~<>~>=~(~)~\"x\"~\"~'~'y'~#2026-01-01#~#~1~-~2.5~.~ AND ~"
        " OR ~ NOT ~ Is Null~ Like ~ Between ~ In ~,~True~Now()~[~]~;~--~DELETE FROM tblNotes~\0~"
        "\U0001F600~ ORDER BY ~*~?~:yrw1"_qs.split(u'~');
    QRandomGenerator random(20260601);
    int accepted = 0;
    for (int round = 0; round < 20'000; ++round) {
        QString text;
        for (quint32 i = random.bounded(1U, 9U); i > 0; --i) {
            text += random.bounded(12) == 0 ? QString(QChar(random.bounded(0xd7ff)))
                                            : pieces[random.bounded(int(pieces.size()))];
        }
        const int number = errorOf([&] { static_cast<void>(selected(text)); });
        accepted += number == 0 ? 1 : 0;
        ASSERT_TRUE(number == 0 || number == kErrorBadCondition || number == kErrorNotInCollection)
            << number << ": " << text.toStdString();
    }
    EXPECT_GT(accepted, 20);
    EXPECT_EQ(database->OpenRecordset(u"tblNotes"_qs)->RecordCount(), 3);
}

TEST_F(ConditionTest, AListOfManyKeysTakesItsTimeOnce) {
    const auto milliseconds = [&](const QString& field, const QString& quote, int count) {
        QStringList keys{QStringLiteral("%1o'2%1").arg(quote)};
        if (quote.isEmpty()) {
            keys = {QStringLiteral("2")};
        }
        for (int key = 10; key < count; ++key) {
            keys += quote + QString::number(key) + quote;
        }
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(selected(QStringLiteral("[%1] In (%2)").arg(field, keys.join(u','))), "2");
        return timer.elapsed();
    };
    database->RunScript(u"UPDATE tblNotes SET RecordUserCode = 'o''2' WHERE RecordID = 2"_qs);
    const std::pair<QString, QString> lists[] = {{u"RecordID"_qs, QString()},
                                                 {u"RecordUserCode"_qs, u"\""_qs}};
    for (const auto& [field, quote] : lists) {
        const qint64 few = milliseconds(field, quote, 5'000);
        EXPECT_LT(milliseconds(field, quote, 40'000), 8 * (4 * few + 50)) << qPrintable(field);
    }
}

} // namespace

} // namespace yrw::dao
