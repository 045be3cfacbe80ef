// The formats for programs: JSON and CSV.
#include "cli/NoteWriters.h"

#include "cli/Rows.h"
#include "cli/SafeText.h"

#include <QJsonArray>

#include <utility>

namespace yrw {

NoteWriter::~NoteWriter() = default;

namespace {

QJsonObject objectOf(const dao::ValueList& fields) {
    QJsonObject object;
    for (const dao::ValueList::Entry& entry : fields) {
        object.insert(entry.name, jsonValue(entry.value));
    }
    return object;
}

class JsonWriter final : public NoteWriter {
public:
    QByteArray begin() override { return {}; }
    QByteArray note(const ExportedNote& note) override {
        QJsonObject object = objectOf(note.fields);
        QJsonArray reminders;
        for (const dao::ValueList& reminder : note.reminders) {
            reminders.append(objectOf(reminder));
        }
        object.insert(QStringLiteral("Reminders"), reminders);
        return m_array.next(object);
    }
    QByteArray end() override { return m_array.end(); }

private:
    JsonArray m_array;
};

class CsvWriter final : public NoteWriter {
public:
    QByteArray begin() override { return {}; }
    QByteArray note(const ExportedNote& note) override {
        QStringList names;
        QStringList cells;
        for (const dao::ValueList::Entry& entry : note.fields) {
            if (entry.name != u"RTFNote") {
                names += quoted(harmlessCell(entry.name));
                cells += quoted(cellText(entry.value));
            }
        }
        const QByteArray heading =
            std::exchange(m_isFirst, false) ? names.join(u',').toUtf8() + "\r\n" : QByteArray();
        return heading + cells.join(u',').toUtf8() + "\r\n";
    }
    QByteArray end() override { return {}; }

private:
    static QString cellText(const QVariant& value) {
        if (value.isNull()) {
            return {};
        }
        const bool isText = value.typeId() == QMetaType::QString;
        return isText ? harmlessCell(value.toString()) : jsonValue(value).toVariant().toString();
    }
    static QString quoted(const QString& text) {
        const bool needsQuotes = text.contains(u',') || text.contains(u'"') ||
                                 text.contains(u'\n') || text.contains(u'\r');
        return needsQuotes ? u'"' + QString(text).replace(u'"', QStringLiteral("\"\"")) + u'"'
                           : text;
    }

    bool m_isFirst = true;
};

} // namespace

std::unique_ptr<NoteWriter> makeJsonWriter() {
    return std::make_unique<JsonWriter>();
}

std::unique_ptr<NoteWriter> makeCsvWriter() {
    return std::make_unique<CsvWriter>();
}

} // namespace yrw
