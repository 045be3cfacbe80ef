#include "platform/dao/FieldValue.h"
#include "tests/dao/DaoFixture.h"

namespace yrw::dao {

namespace {

/// A table with a column of every kind, "T" of at most five characters.
class FieldValueTest : public DaoTest {
protected:
    FieldValueTest() {
        database->RunScript(u"CREATE TABLE tblKinds (RecordID INTEGER PRIMARY KEY, B BOOLEAN, "
                            "I INTEGER, L LONG, D DOUBLE, T TEXT(5), M LONGTEXT, W DATETIME, "
                            "X BLOB)"_qs);
    }
};

/// How the tables show a value: with its type, so that 1 and "1" differ.
QString shown(const QVariant& value) {
    if (value.isNull()) {
        return u"Null"_qs;
    }
    const QString text = value.typeId() == QMetaType::QDateTime
                             ? value.toDateTime().toString(u"yyyy-MM-dd HH:mm:ss.zzz")
                             : value.toString();
    return QString::fromLatin1(value.typeName()) + u' ' + text;
}

TEST_F(FieldValueTest, WhatIsSetIsConvertedOrRefused) {
    const QDateTime noon(QDate(2020, 12, 31), QTime(12, 0, 5, 250));
    const struct {
        const char16_t* field;
        QVariant given;
        const char* stored; ///< nothing: a type mismatch
    } cases[] = {
        {u"B", u"Maybe"_qs, nullptr},
        {u"B", -1, "bool true"},
        {u"B", 0.0, "bool false"},
        {u"I", 2147483648LL, nullptr},
        {u"I", u" 7 "_qs, "int 7"},
        {u"I", 7.0, "int 7"},
        {u"I", u"1,000"_qs, nullptr},
        {u"L", 9007199254740993LL, "qlonglong 9007199254740993"},
        {u"L", u"9007199254740993"_qs, "qlonglong 9007199254740993"},
        {u"L", 18446744073709551615ULL, nullptr},
        {u"L", 1e300, nullptr},
        {u"D", u"1.5"_qs, "double 1.5"},
        {u"D", qInf(), nullptr},
        {u"D", u"1,5"_qs, nullptr},
        {u"T", 12, "QString 12"},
        {u"T", u""_qs, "QString "},
        {u"T", QByteArray("ab"), nullptr},
        {u"M", true, "QString True"},
        {u"M", noon, "QString 31/12/2020 12:00:05"},
        {u"W", noon, "QDateTime 2020-12-31 12:00:05.000"},
        {u"W", noon.date(), "QDateTime 2020-12-31 00:00:00.000"},
        {u"W", QDate(), "Null"},
        {u"W", QDateTime(QDate(10000, 1, 1), QTime(0, 0)), nullptr},
        {u"W", 5, nullptr},
        {u"W", u"2020-02-30"_qs, nullptr},
        {u"W", u"31/12/2020 24:00"_qs, nullptr},
        {u"W", u"2020-12-31T10:00"_qs, "QDateTime 2020-12-31 10:00:00.000"},
        {u"X", QByteArray("ab"), "QByteArray ab"},
        {u"X", u"ab"_qs, nullptr},
    };
    const auto rows = database->OpenRecordset(u"tblKinds"_qs, RecordsetType::Table);
    rows->AddNew();
    EXPECT_EQ(errorOf([&] { rows->setValue(u"T", u"123456"_qs); }), kErrorFieldTooSmall);
    for (const auto& c : cases) {
        const QString where = QString::fromUtf16(c.field) + u" = " + shown(c.given);
        rows->AddNew();
        const int error = errorOf([&] { rows->setValue(QStringView(c.field), c.given); });
        EXPECT_EQ(error, c.stored == nullptr ? kErrorTypeMismatch : 0) << qPrintable(where);
        EXPECT_TRUE(rows->EditInProgress()) << "a refused value leaves the rest of the edit";
        rows->Update();
        rows->setBookmark(rows->LastModified());
        EXPECT_EQ(shown(rows->value(QStringView(c.field))),
                  QLatin1String(c.stored == nullptr ? "Null" : c.stored))
            << qPrintable(where);
    }
}

TEST_F(FieldValueTest, WhatOlderProgramsLeftIsJudged) {
    const struct {
        const char16_t* field;
        const char16_t* sql; ///< what stands in the file
        const char* reading; ///< "fine", "none", or what it is read as
    } cases[] = {
        {u"B", u"NULL", "fine"},
        {u"B", u"1", "fine"},
        {u"B", u"'False'", "bool false"},
        {u"B", u"'yes'", "bool true"},
        {u"B", u"'maybe'", "none"},
        {u"B", u"1.5", "bool true"},
        {u"I", u"2", "fine"},
        {u"I", u"1.5", "none"},
        {u"I", u"'abc'", "none"},
        {u"L", u"x'32'", "none"},
        {u"D", u"1", "fine"},
        {u"D", u"'much'", "none"},
        {u"T", u"'12345'", "fine"},
        {u"T", u"'123456'", "none"},
        {u"T", u"x'6162'", "QString ab"},
        {u"T", u"x'616263646566'", "none"},
        {u"M", u"x'ff'", "none"},
        {u"W", u"'2020-12-31 10:00:00'", "fine"},
        {u"W", u"'2020-12-31'", "fine"},
        {u"W", u"' '", "Null"},
        {u"W", u"'31/12/2020 10:00'", "QDateTime 2020-12-31 10:00:00.000"},
        {u"W", u"'12/12/2020'", "QDateTime 2020-12-12 00:00:00.000"},
        {u"W", u"'03/04/2020'", "none"},
        {u"W", u"'31/02/2020'", "none"},
        {u"W", u"43831.5", "none"},
        {u"X", u"x'00'", "fine"},
        {u"X", u"'text'", "none"},
    };
    for (const auto& c : cases) {
        database->RunScript(u"DELETE FROM tblKinds; INSERT INTO tblKinds (%1) VALUES (%2)"_qs.arg(
            QStringView(c.field), QStringView(c.sql)));
        const auto rows = database->OpenRecordset(u"tblKinds"_qs);
        const int column = rows->FieldIndex(QStringView(c.field));
        const StoredValue judged =
            judgeStoredValue(rows->value(column), {rows->TypeOf(column), rows->textSizeOf(column)});
        const QString reading = !judged.isImpossible ? u"fine"_qs
                                : !judged.reading    ? u"none"_qs
                                                     : shown(*judged.reading);
        EXPECT_EQ(reading, QLatin1String(c.reading)) << qPrintable(QString::fromUtf16(c.sql));
    }
}

} // namespace

} // namespace yrw::dao
