#include "cli/RtfHtml.h"

#include "platform/rtf/EmbeddedObject.h"
#include "platform/rtf/Picture.h"

#include <QUrl>

#include <iterator>
#include <optional>

namespace yrw {

namespace {

constexpr double kTwipsPerPoint = 20;

QString points(double value) {
    return QString::number(value) + QStringLiteral("pt");
}

QString colourText(int colour) {
    return QStringLiteral("#%1").arg(colour, 6, 16, QChar(u'0'));
}

/// A font name as a quoted CSS value; what could end the quotes is dropped.
QString fontText(QString name) {
    name.removeIf([](QChar c) { return !c.isLetterOrNumber() && c != u' ' && c != u'-'; });
    return u'\'' + name + u'\'';
}

QString styleOf(const rtf::Document& document, const rtf::CharFormat& format) {
    QStringList style;
    if (format.font >= 0 && static_cast<std::size_t>(format.font) < document.fonts.size()) {
        style += QStringLiteral("font-family:") +
                 fontText(document.fonts[static_cast<std::size_t>(format.font)].name);
    }
    style += QStringLiteral("font-size:") + points(format.halfPoints / 2.0);
    if (format.colour != rtf::kAutomatic) {
        style += QStringLiteral("color:") + colourText(format.colour);
    }
    if (format.background != rtf::kAutomatic) {
        style += QStringLiteral("background:") + colourText(format.background);
    }
    if (format.hidden) {
        style += QStringLiteral("display:none");
    }
    return style.join(u';');
}

QString styleOf(const rtf::ParFormat& format) {
    static const char* const kAlignments[] = {"", "right", "center", "justify"};
    QStringList style;
    if (format.alignment != rtf::Alignment::Left) {
        style += QStringLiteral("text-align:") +
                 QLatin1String(kAlignments[static_cast<int>(format.alignment)]);
    }
    if (format.list == rtf::ListKind::None && format.left != 0) {
        style += QStringLiteral("margin-left:") + points(format.left / kTwipsPerPoint);
    }
    if (format.list == rtf::ListKind::None && format.first != 0) {
        style += QStringLiteral("text-indent:") + points(format.first / kTwipsPerPoint);
    }
    return style.isEmpty() ? QString() : QStringLiteral(" style=\"%1\"").arg(style.join(u';'));
}

QString pictureHtml(const QByteArray& group) {
    const rtf::Picture picture = rtf::pictureOf(group);
    const bool isPng = picture.kind == rtf::PictureKind::Png;
    if (!isPng && picture.kind != rtf::PictureKind::Jpeg) {
        return QStringLiteral("[picture]");
    }
    QString size;
    if (picture.width > 0 && picture.height > 0) {
        size = QStringLiteral(" style=\"width:%1;height:%2\"")
                   .arg(points(picture.width / kTwipsPerPoint),
                        points(picture.height / kTwipsPerPoint));
    }
    return QStringLiteral("<img alt=\"\" src=\"data:image/%1;base64,%2\"%3>")
        .arg(isPng ? QStringLiteral("png") : QStringLiteral("jpeg"),
             QString::fromLatin1(picture.data.toBase64()), size);
}

/// What an attachment shows, else its name.
QString objectHtml(const QByteArray& group) {
    if (const rtf::Picture picture = rtf::pictureOf(group);
        picture.kind == rtf::PictureKind::Png || picture.kind == rtf::PictureKind::Jpeg) {
        return pictureHtml(group);
    }
    const auto object = rtf::readObject(rtf::objectOf(group).data);
    const auto file = object && object->className == rtf::kPackageClass
                          ? rtf::readPackage(object->native)
                          : std::nullopt;
    return file ? u'[' + file->label.toHtmlEscaped() + u']' : QStringLiteral("[attachment]");
}

bool isSafeLink(const QString& link) {
    const QString scheme = QUrl(link).scheme().toLower();
    return scheme == u"http" || scheme == u"https" || scheme == u"mailto";
}

/// Writes the paragraphs one after the other, opening and closing lists and tables around them.
class HtmlBuilder {
public:
    explicit HtmlBuilder(const rtf::Document& document) : m_document(document) {}

    QString build() {
        for (const rtf::Paragraph& paragraph : m_document.paragraphs) {
            const auto& format = m_document.parFormats.at(std::size_t(paragraph.format));
            enterCell(paragraph);
            enterList(format);
            addParagraph(paragraph, format);
        }
        enterList({});
        leaveTables(0);
        return m_html;
    }

private:
    /// Closes the cells and tables that a paragraph is not in, and opens those that it is in.
    void enterCell(const rtf::Paragraph& paragraph) {
        const rtf::CellPath path = m_document.cellsOf(paragraph);
        int same = 0;
        while (same < path.depth && same < m_path.depth && path.at(same) == m_path.at(same)) {
            ++same;
        }
        if (same == path.depth && same == m_path.depth) {
            return;
        }
        enterList({});
        // Cells that follow each other in one cell around them are of one table.
        const bool goesOn = same < path.depth && same < m_path.depth;
        leaveTables(goesOn ? same + 1 : same);
        if (goesOn) {
            m_html += path.at(same).row == m_path.at(same).row
                          ? QStringLiteral("</td><td>")
                          : QStringLiteral("</td></tr>\n<tr><td>");
        }
        for (int level = m_path.depth; level < path.depth; ++level) {
            const rtf::Row& row = m_document.rows.at(std::size_t(path.at(level).row));
            m_html += row.borders ? QStringLiteral("<table border=\"1\" style=\"border-collapse:"
                                                   "collapse\">\n<tr><td>")
                                  : QStringLiteral("<table>\n<tr><td>");
        }
        m_path = path;
    }
    /// Leaves the tables that lie in so many others or more.
    void leaveTables(int level) {
        for (; m_path.depth > level; --m_path.depth) {
            m_html += QStringLiteral("</td></tr>\n</table>\n");
        }
    }
    void enterList(const rtf::ParFormat& format) {
        if (format.list == m_list) {
            return;
        }
        if (m_list != rtf::ListKind::None) {
            m_html += m_list == rtf::ListKind::Bullet ? u"</ul>\n" : u"</ol>\n";
        }
        m_list = format.list;
        static const char* const kTypes[] = {"", "", "1", "a", "A", "i", "I"};
        if (m_list == rtf::ListKind::Bullet) {
            m_html += QStringLiteral("<ul>\n");
        } else if (m_list != rtf::ListKind::None) {
            m_html += QStringLiteral("<ol type=\"%1\" start=\"%2\">\n")
                          .arg(QLatin1String(kTypes[static_cast<int>(m_list)]))
                          .arg(format.listStart);
        }
    }
    void addParagraph(const rtf::Paragraph& paragraph, const rtf::ParFormat& format) {
        const QString tag =
            format.list == rtf::ListKind::None ? QStringLiteral("p") : QStringLiteral("li");
        m_html += u'<' + tag + styleOf(format) +
                  (format.rightToLeft ? QStringLiteral(" dir=\"rtl\">") : QStringLiteral(">"));
        for (int i = 0; i < paragraph.runCount; ++i) {
            addRun(m_document.runs.at(std::size_t(paragraph.firstRun) + std::size_t(i)));
        }
        m_html += (paragraph.runCount == 0 ? u"<br></" : u"</") + tag + u">\n";
    }
    void addRun(const rtf::Run& run) {
        const auto& format = m_document.charFormats.at(std::size_t(run.format));
        QString html = contentOf(run);
        const struct {
            bool on;
            const char* tag;
        } tags[] = {{format.bold, "b"},
                    {format.italic, "i"},
                    {format.underline, "u"},
                    {format.strike, "s"},
                    {format.script == rtf::Script::Super, "sup"},
                    {format.script == rtf::Script::Sub, "sub"}};
        for (const auto& tag : tags) {
            if (tag.on) {
                html = QStringLiteral("<%1>").arg(QLatin1String(tag.tag)) + html +
                       QStringLiteral("</%1>").arg(QLatin1String(tag.tag));
            }
        }
        m_html += QStringLiteral("<span style=\"%1\">").arg(styleOf(m_document, format)) + html +
                  QStringLiteral("</span>");
    }
    [[nodiscard]] QString contentOf(const rtf::Run& run) const {
        if (run.object >= 0) {
            const rtf::Inline& object = m_document.inlines.at(std::size_t(run.object));
            switch (object.kind) {
            case rtf::InlineKind::Picture:
                return pictureHtml(object.raw);
            case rtf::InlineKind::Object:
                return objectHtml(object.raw);
            case rtf::InlineKind::Kept:
                return {};
            }
        }
        QString html = m_document.text.mid(run.start, run.length).toHtmlEscaped();
        html.replace(QChar(rtf::kLineBreak), QStringLiteral("<br>"));
        html.replace(u'\t', QStringLiteral("&emsp;"));
        const QString link =
            run.field < 0 ? QString() : m_document.fields.at(std::size_t(run.field)).link;
        if (isSafeLink(link)) {
            return QStringLiteral("<a href=\"") + link.toHtmlEscaped() + u"\">" + html + u"</a>";
        }
        return html;
    }

    const rtf::Document& m_document;
    QString m_html;
    rtf::ListKind m_list = rtf::ListKind::None;
    rtf::CellPath m_path; ///< the open cells
};

} // namespace

QString htmlOf(const rtf::Document& document) {
    return HtmlBuilder(document).build();
}

} // namespace yrw
