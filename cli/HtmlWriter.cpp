#include "cli/NoteWriters.h"
#include "cli/Rows.h"
#include "cli/RtfHtml.h"
#include "cli/SafeText.h"
#include "platform/rtf/Reader.h"
#include "store/NoteReading.h"

namespace yrw {

namespace {

constexpr const char* kHead =
    "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>Notes</title>\n"
    "<style>\n:root { color-scheme: light dark; }\n"
    "body { font-family: sans-serif; max-width: 48em; margin: auto; padding: 1em; }\n"
    "section { break-after: page; }\n"
    "article { border-top: 1px solid #888; margin-top: 1em; }\n"
    "p { margin: 0.2em 0; }\n.facts { color: #777; font-size: 90%; }\n"
    "td { border: 1px solid #888; padding: 0.2em; vertical-align: top; }\n"
    "</style>\n</head>\n<body>\n";

class HtmlWriter final : public NoteWriter {
public:
    QByteArray begin() override { return kHead; }
    QByteArray note(const ExportedNote& note) override {
        const QString owner = note.fields.value(u"OwnerObjectKey").toString() + u':' +
                              note.fields.value(u"OwnerRecordID").toString();
        QString html;
        if (m_isFirst || owner != m_owner) {
            html = m_isFirst ? QString() : QStringLiteral("</section>\n");
            html +=
                QStringLiteral("<section>\n<h1>") + note.ownerTitle.toHtmlEscaped() + u"</h1>\n";
            m_owner = owner;
            m_isFirst = false;
        }
        html += articleOf(note);
        return withoutControls(html).toUtf8();
    }
    QByteArray end() override {
        return m_isFirst ? "<p>No notes.</p>\n</body>\n</html>\n"
                         : "</section>\n</body>\n</html>\n";
    }

private:
    static QString articleOf(const ExportedNote& note) {
        const dao::ValueList& fields = note.fields;
        QStringList facts{shownDate(fields.value(u"Date")), fields.value(u"UseName").toString(),
                          shownStatus(fields.value(u"Status"))};
        for (const dao::ValueList& reminder : note.reminders) {
            facts += QStringLiteral("reminder ") + shownDate(reminder.value(u"NextDate"));
        }
        facts.removeAll(QString());
        const QString text = readableText(fields.value(u"RTFNote").toString(),
                                          fields.value(u"PlainNote").toString());
        const rtf::Document body =
            rtf::isRtf(text) ? rtf::read(QStringView(text)) : rtf::fromPlainText(text);
        return QStringLiteral("<article>\n<h2>") +
               fields.value(u"Subject").toString().toHtmlEscaped() + u"</h2>\n<p class=\"facts\">" +
               facts.join(QStringLiteral(" \u00b7 ")).toHtmlEscaped() + u"</p>\n" + htmlOf(body) +
               u"</article>\n";
    }

    QString m_owner;
    bool m_isFirst = true;
};

} // namespace

std::unique_ptr<NoteWriter> makeHtmlWriter() {
    return std::make_unique<HtmlWriter>();
}

} // namespace yrw
