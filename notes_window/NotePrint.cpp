#include "notes_window/NotePrint.h"

#include "platform/richtext/ListNumbers.h"
#include "platform/richtext/RichTextBox.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetricsF>
#include <QPainter>
#include <QPalette>
#include <QPrinter>
#include <QTextDocument>

#include <algorithm>
#include <memory>

namespace yrw {

namespace {

constexpr double kSubjectPoints = 12;
constexpr double kDetailPoints = 8;
constexpr double kGapPoints = 8; ///< around the line below the heading

/// The pages of one note on one printer.
class NotePages {
public:
    NotePages(QPrinter& printer, RichTextBox& text, const NoteHeading& heading)
        : m_printer(printer), m_heading(heading), m_text(text.printable()),
          m_scale(printer.resolution() / double(text.logicalDpiY())),
          m_subjectFont(QStringLiteral("Sans")), m_detailFont(QStringLiteral("Sans")) {
        m_subjectFont.setPointSizeF(kSubjectPoints);
        m_subjectFont.setBold(true);
        m_detailFont.setPointSizeF(kDetailPoints);
        const QRectF page = m_printer.pageLayout().paintRectPixels(m_printer.resolution());
        m_width = page.width();
        m_bodyTop = lineHeight(m_subjectFont) + lineHeight(m_detailFont) + 2 * gap();
        m_bodyHeight = std::max(page.height() - m_bodyTop, lineHeight(m_subjectFont));
        m_text->setPageSize(QSizeF(m_width, m_bodyHeight) / m_scale);
    }

    void paint() {
        const int count = m_text->pageCount();
        const int first = std::clamp(m_printer.fromPage(), 1, count);
        const int last = m_printer.toPage() > 0 ? std::min(m_printer.toPage(), count) : count;
        QPainter painter(&m_printer);
        for (int page = first; page <= last && painter.isActive(); ++page) {
            if (page > first && !m_printer.newPage()) {
                return;
            }
            paintHeading(painter, page, count);
            paintBody(painter, page);
        }
    }

private:
    [[nodiscard]] double lineHeight(const QFont& font) const {
        return QFontMetricsF(font, &m_printer).height();
    }
    [[nodiscard]] double gap() const { return kGapPoints * m_printer.resolution() / 72.0; }

    void paintHeading(QPainter& painter, int page, int count) const {
        const QString number = QStringLiteral("Page %1 of %2").arg(page).arg(count);
        painter.setPen(Qt::black);
        painter.setFont(m_detailFont);
        const double numberWidth =
            QFontMetricsF(m_detailFont, &m_printer).horizontalAdvance(number);
        const double top = lineHeight(m_subjectFont);
        paintLine(painter, 0, m_width, number, Qt::AlignRight);
        paintLine(painter, top, m_width, m_heading.details, Qt::AlignLeft);
        painter.setFont(m_subjectFont);
        paintLine(painter, 0, m_width - numberWidth - gap(), m_heading.subject, Qt::AlignLeft);
        const double line = top + lineHeight(m_detailFont) + gap() / 2;
        painter.setPen(QPen(Qt::gray, m_printer.resolution() / 144.0));
        painter.drawLine(QPointF(0, line), QPointF(m_width, line));
    }

    /// One line; what is too long for it ends in dots.
    void paintLine(QPainter& painter, double top, double width, const QString& text,
                   Qt::Alignment alignment) const {
        const QFontMetricsF metrics(painter.font(), &m_printer);
        painter.drawText(QRectF(0, top, width, lineHeight(m_subjectFont)),
                         int(alignment | Qt::AlignTop),
                         metrics.elidedText(text, Qt::ElideRight, width));
    }

    void paintBody(QPainter& painter, int page) const {
        const QSizeF size = m_text->pageSize();
        const QRectF view(QPointF(0, (page - 1) * size.height()), size);
        painter.save();
        painter.translate(0, m_bodyTop);
        painter.scale(m_scale, m_scale);
        painter.translate(0, -view.top());
        painter.setClipRect(view);
        QAbstractTextDocumentLayout::PaintContext context;
        // A line of the next page touches this one's edge; it is not to be painted twice.
        context.clip = view.adjusted(0, 0.5, 0, -0.5);
        // Paper is white, whatever the screen's colours are.
        context.palette.setColor(QPalette::Text, Qt::black);
        context.palette.setColor(QPalette::Base, Qt::white);
        m_text->documentLayout()->draw(&painter, context);
        richtext::paintListNumbers(painter, *m_text, context.clip, context.palette);
        painter.restore();
    }

    QPrinter& m_printer;
    const NoteHeading& m_heading;
    std::unique_ptr<QTextDocument> m_text;
    double m_scale; ///< dots of the printer for one of the layout
    QFont m_subjectFont;
    QFont m_detailFont;
    double m_width = 0;
    double m_bodyTop = 0;
    double m_bodyHeight = 0;
};

} // namespace

void printNote(QPrinter& printer, RichTextBox& text, const NoteHeading& heading) {
    NotePages(printer, text, heading).paint();
}

} // namespace yrw
