// Values as old databases store them, and what no reader says.
#include "platform/component/AutomationError.h"
#include "platform/jet/JetRows.h"

#include <QDateTime>

#include <bit>

#include <gtest/gtest.h>

using namespace yrw;
using namespace yrw::jet;

namespace {

TEST(JetText, KeepsEveryCharacter) {
    const struct {
        QByteArray stored;
        std::u16string text;
    } rows[] = {
        {"", u""},
        {QByteArray("a\0b\0", 4), u"ab"},
        {QByteArray("\r\0\n\0\0\0", 6), std::u16string(u"\r\n\0", 3)},
        {QByteArray("\x3D\xD8\x00\xDE\x2E\0", 6), u"\U0001F600."},
        {QByteArray("\x3D\xD8", 2), u"\xD83D"},
        {QByteArray("a\0b", 3), u"a"},
        {QByteArray("\xFF\xFE", 2), u""},
        {QByteArray("\xFF\xFE"
                    "abc\xE9",
                    6),
         u"abc\u00e9"},
        {QByteArray("\xFF\xFE"
                    "ab\0\x7C\x01\0"
                    "c",
                    9),
         u"ab\u017cc"},
        {QByteArray("\xFF\xFE\0\x3D\xD8\x01\xDE\0!", 9), u"\U0001F601!"},
        {QByteArray("\xFF\xFE"
                    "a\0\x7C",
                    5),
         u"a"},
        {QByteArray("\xFE\xFF", 2), u"\xFFFE"},
    };
    for (const auto& [stored, text] : rows) {
        EXPECT_EQ(decodeText(stored).toStdU16String(), text) << stored.toHex().toStdString();
    }
}

TEST(JetText, ReadsDatesToTheSecondAlsoBefore1900) {
    const struct {
        double days;
        const char* date; ///< nothing: it is none
    } rows[] = {
        {0, "1899-12-30T00:00:00"},
        {0.5, "1899-12-30T12:00:00"},
        {-1.25, "1899-12-29T06:00:00"},
        {-0.25, "1899-12-30T06:00:00"},
        {43831.0 + 86399.0 / 86400, "2020-01-01T23:59:59"},
        {43831.0 + 86399.4 / 86400, "2020-01-01T23:59:59"},
        {43831.0 + 86399.6 / 86400, "2020-01-02T00:00:00"},
        {-657434, "0100-01-01T00:00:00"},
        {-657435, nullptr},
        {2958465.999, "9999-12-31T23:58:34"},
        {2958466, nullptr},
        {1e300, nullptr},
        {std::numeric_limits<double>::quiet_NaN(), nullptr},
    };
    for (const auto& [days, date] : rows) {
        const auto read = decodeDate(days);
        EXPECT_EQ(read ? read->toString(Qt::ISODate) : QString(), QLatin1String(date)) << days;
    }
}

TEST(JetText, ReadsOtherValuesByTheirType) {
    EXPECT_EQ(decodeValue(ColumnType::Integer, QByteArray("\xFE\xFF", 2), 0), QVariant(-2));
    EXPECT_EQ(decodeValue(ColumnType::Long, QByteArray("\1\0\0\x80", 4), 0),
              QVariant(qint64(-2147483647)));
    EXPECT_EQ(decodeValue(ColumnType::Money, QByteArray("\x10\x27\0\0\0\0\0\0", 8), 0),
              QVariant(1.0));
    EXPECT_EQ(decodeValue(ColumnType::Long, "xyz", 0), std::nullopt);
    EXPECT_EQ(decodeValue(ColumnType::Memo, "\xBF\xFF\xFE", 1250),
              QVariant(QStringLiteral("\u017c\u02d9\u0163")));
    EXPECT_EQ(decodeValue(ColumnType::Text, "\x80", 1252), QVariant(QStringLiteral("\u20ac")));
}

/// Writes down what it is told.
class Listener final : public JetSink {
public:
    QStringList heard;
    void beginTable(const JetTable& table) override { heard += table.name; }
    void row(const JetRow& row) override {
        for (const JetCell& cell : row) {
            heard += cell.value.toString() + QString::number(int(cell.state));
        }
    }
    void badRow() override { heard += QStringLiteral("bad"); }
    void endTable(bool isWhole) override { heard += QStringLiteral("end%1").arg(isWhole); }
};

const QByteArray kFile("\1\3\0\0\0\4\0\0", 8);
const QByteArray kTable("\3\x0F\0\0\0\7\0\0\0\1\0\4\1\0T\3\0Key", 20);
const QByteArray kRow("\4\x09\0\0\0\1\4\0\0\0\x2A\0\0\0", 14);
const QByteArray kTableEnd("\6\1\0\0\0\0", 6);
const QByteArray kFileEnd("\7\0\0\0\0", 5);

TEST(JetRows, TakesMessagesInPiecesOfAnySize) {
    const QByteArray all =
        kFile + kTable + kRow + QByteArray("\5\0\0\0\0", 5) + kTableEnd + kFileEnd;
    for (qsizetype piece = 1; piece <= all.size(); ++piece) {
        Listener listener;
        JetRows rows(listener, 0, all.size());
        for (qsizetype i = 0; i < all.size(); i += piece) {
            rows.feed(QByteArrayView(all).sliced(i, std::min(piece, all.size() - i)));
        }
        EXPECT_TRUE(rows.isEnded());
        EXPECT_EQ(listener.heard, (QStringList{QStringLiteral("T"), QStringLiteral("421"),
                                               QStringLiteral("bad"), QStringLiteral("end1")}));
    }
}

TEST(JetRows, BelievesNoReader) {
    const auto changed = [](QByteArray bytes, qsizetype at, char byte) {
        bytes[at] = byte;
        return bytes;
    };
    const QByteArray start = kFile + kTable;
    const struct {
        const char* what;
        QByteArray said;
    } rows[] = {
        {"an unknown message", QByteArray("\x63\0\0\0\0", 5)},
        {"a row before the file", kRow},
        {"the file twice", kFile + kFile},
        {"an unknown version", changed(kFile, 5, 9)},
        {"a refusal behind the file", kFile + QByteArray("\2\1\0\0\0\1", 6)},
        {"an unknown refusal", QByteArray("\2\1\0\0\0\x63", 6)},
        {"a row outside a table", kFile + kRow},
        {"an end outside a table", kFile + kTableEnd},
        {"a table in a table", start + kTable},
        {"the end in a table", start + kFileEnd},
        {"something behind the end", kFile + kFileEnd + kTable},
        {"more than a message can hold", QByteArray("\4\xFF\xFF\xFF\xFF", 5)},
        {"too many columns", changed(start, kFile.size() + 10, 2)},
        {"an unknown type", kFile + changed(kTable, 11, 0x63)},
        {"a name beyond the message", kFile + changed(kTable, 12, 0x7F)},
        {"an empty name", kFile + QByteArray("\3\x09\0\0\0\7\0\0\0\0\0\0\0X", 14)},
        {"an unknown state", start + changed(kRow, 5, 9)},
        {"a value beyond the row", start + changed(kRow, 6, 5)},
        {"a Null with bytes", start + changed(kRow, 5, 0)},
        {"a row with more", start + QByteArray("\4\x0A\0\0\0\1\4\0\0\0\x2A\0\0\0\0", 15)},
        {"a row with less", start + QByteArray("\4\3\0\0\0\1\4\0", 8)},
    };
    for (const auto& [what, said] : rows) {
        Listener listener;
        JetRows decoder(listener, 0, 1000);
        EXPECT_THROW(decoder.feed(said), AutomationError) << what;
    }
    Listener listener;
    JetRows decoder(listener, 0, start.size() + 100);
    EXPECT_THROW(decoder.feed(QByteArray(start + kRow.repeated(8))), AutomationError)
        << "more than the file";
    // Bytes that are no value of their type cost the value alone.
    JetRows honest(listener, 0, 1000);
    honest.feed(QByteArray(start + QByteArray("\4\x07\0\0\0\1\2\0\0\0\x2A\0", 12)));
    EXPECT_EQ(listener.heard.last(), QString::number(int(CellState::Unreadable)));
}

} // namespace
