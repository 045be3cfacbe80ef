// The calendar format: reminders as events with alarms.
#include "cli/NoteWriters.h"

#include "store/Schema.h"

namespace yrw {

namespace {

constexpr int kLongestLine = 75; ///< bytes of a content line before it is folded

QString escaped(QString text) {
    text.replace(u'\\', QStringLiteral("\\\\"));
    text.replace(u';', QStringLiteral("\\;"));
    text.replace(u',', QStringLiteral("\\,"));
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(u'\r', u'\n');
    text.replace(u'\n', QStringLiteral("\\n"));
    text.removeIf([](QChar c) { return c.category() == QChar::Other_Control && c != u'\t'; });
    return text;
}

/// A content line, folded between characters where it is too long.
QByteArray line(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    QByteArray folded;
    qsizetype begin = 0;
    qsizetype room = kLongestLine;
    while (bytes.size() - begin > room) {
        qsizetype end = begin + room;
        while ((static_cast<unsigned char>(bytes.at(end)) & 0xC0U) == 0x80U) {
            --end; // not inside a character
        }
        folded += bytes.mid(begin, end - begin) + "\r\n ";
        begin = end;
        room = kLongestLine - 1; // the blank counts
    }
    return folded + bytes.mid(begin) + "\r\n";
}

QString stamp(const QDateTime& time) {
    return time.toString(QStringLiteral("yyyyMMdd'T'HHmmss"));
}

bool stillWaits(const ExportedNote& note, const dao::ValueList& reminder) {
    return note.fields.value(u"Status").toInt() == static_cast<int>(NoteStatus::Active) &&
           reminder.value(u"Status").toInt() != static_cast<int>(ReminderStatus::Dismissed);
}

class CalendarWriter final : public NoteWriter {
public:
    CalendarWriter(const QDateTime& now, const QHash<qint64, QString>& userNames)
        : m_stamp(stamp(now.toUTC()) + u'Z'), m_userNames(userNames) {}

    QByteArray begin() override {
        return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Yarrowen//Notes//EN\r\n"
               "CALSCALE:GREGORIAN\r\n";
    }
    QByteArray note(const ExportedNote& note) override {
        QByteArray events;
        for (const dao::ValueList& reminder : note.reminders) {
            if (reminder.value(u"NextDate").toDateTime().isValid()) {
                events += event(note, reminder);
            }
        }
        return events;
    }
    QByteArray end() override { return "END:VCALENDAR\r\n"; }

private:
    [[nodiscard]] QByteArray event(const ExportedNote& note, const dao::ValueList& reminder) const {
        const QString subject = escaped(note.fields.value(u"Subject").toString());
        const QString uid = QStringLiteral("note-%1-reminder-%2-%3@notes.yarrowen")
                                .arg(note.fields.value(u"RecordID").toString(),
                                     reminder.value(u"RecordID").toString(),
                                     stamp(reminder.value(u"OriginalDate").toDateTime()));
        const bool isPrivate =
            note.fields.value(u"NoteType").toInt() == static_cast<int>(NoteType::Private);
        QByteArray text = line(QStringLiteral("BEGIN:VEVENT"));
        text += line(u"UID:" + uid);
        text += line(u"DTSTAMP:" + m_stamp);
        // Without a zone: the time on the wall of whoever is reminded.
        text += line(u"DTSTART:" + stamp(reminder.value(u"NextDate").toDateTime()));
        text += line(u"SUMMARY:" + subject);
        text += line(u"DESCRIPTION:" + escaped(note.fields.value(u"PlainNote").toString()));
        text += line(isPrivate ? QStringLiteral("CLASS:PRIVATE") : QStringLiteral("CLASS:PUBLIC"));
        const QString user = m_userNames.value(reminder.value(u"UserID").toLongLong());
        if (!user.isEmpty()) {
            text += line(u"CONTACT:" + escaped(user));
        }
        text += line(u"COMMENT:" + escaped(note.ownerTitle));
        if (stillWaits(note, reminder)) {
            text += line(QStringLiteral("BEGIN:VALARM"));
            text += line(QStringLiteral("ACTION:DISPLAY"));
            text += line(QStringLiteral("TRIGGER:PT0S"));
            text += line(u"DESCRIPTION:" + subject);
            text += line(QStringLiteral("END:VALARM"));
        }
        return text + line(QStringLiteral("END:VEVENT"));
    }

    QString m_stamp;
    QHash<qint64, QString> m_userNames;
};

} // namespace

std::unique_ptr<NoteWriter> makeCalendarWriter(const QDateTime& now,
                                               const QHash<qint64, QString>& userNames) {
    return std::make_unique<CalendarWriter>(now, userNames);
}

} // namespace yrw
