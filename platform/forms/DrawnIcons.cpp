#include "platform/forms/DrawnIcons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <array>

namespace yrw {

namespace {

constexpr double kGrid = 16; ///< units that a drawing is wide and high

/// A drawing, as words: "F" begins a shape that is filled (where an even number of outlines overlap
/// it is open), "S2" one whose lines are 2 units wide, "#rrggbb" sets the colour of those that
/// follow. Outlines: M L (x y), H (x), V (y), C (three points), Z, O (middle and radius of a
/// circle), R (corner and size of a rectangle).
struct Drawing {
    const char* name;
    const char* words;
};

constexpr Drawing kDrawings[] = {
    {"alarm", "F M8 1 C4.5 1 4 4 4 7 C4 10 2 11 2 12 H14 C14 11 12 10 12 7 C12 4 11.5 1 8 1 Z "
              "M6 13 H10 C10 16 6 16 6 13 Z"},
    {"application-x-generic", "F M3 1 H10 L13 4 V15 H3 Z R5 6 6 1 R5 8 6 1 R5 10 6 1 R5 12 3 1"},
    {"color-select", "F M8 1 C8 1 3 7 3 10.5 C3 13 5 15 8 15 C11 15 13 13 13 10.5 C13 7 8 1 8 1 Z "
                     "M5 10.5 C5 12.5 6.5 13.5 8 13.5 V12 C7 12 6.5 11.5 6.5 10.5 Z"},
    {"dialog-error", "#f0424a F O8 8 7 #ffffff S2 M5 5 L11 11 M11 5 L5 11"},
    {"dialog-information", "#3584e4 F O8 8 7 #ffffff F R7 7 2 5 R7 4 2 2"},
    {"dialog-question", "#3584e4 F O8 8 7 #ffffff S1.6 M5.6 6.4 C5.6 3.2 10.4 3.2 10.4 6.4 "
                        "C10.4 8 8 8 8 9.8 F R7.1 11 1.8 1.8"},
    {"dialog-warning", "#b87700 F M8 1 L15.5 14.5 H0.5 Z #ffffff F R7 5.5 2 5 R7 11.5 2 2"},
    {"document-new", "F M3 1 H10 L13 4 V15 H3 Z M7 6 H9 V8 H11 V10 H9 V12 H7 V10 H5 V8 H7 Z"},
    {"document-open", "F M1 3 H6 L8 5 H14 V7 H4 L2 13 H1 Z M4.6 8 H16 L14 14 H2.6 Z"},
    {"document-print", "F R4 1 8 3 M1 5 H15 V12 H13 V9 H3 V12 H1 Z R4 10 8 5"},
    {"document-print-preview", "F M2 1 H8 L11 4 V6 H8 L6 8 V12 L8 14 V15 H2 Z "
                               "S2 O10.5 10.5 2.5 M12 12 L15 15"},
    {"document-properties",
     "F M3 1 H10 L13 4 V15 H3 Z R5 6 2 2 R8 6 3 2 R5 9 2 2 R8 9 3 2 R5 12 2 1 R8 12 3 1"},
    {"document-save", "F M1 1 H12 L15 4 V15 H1 Z R4 2 7 4 R4 9 8 5"},
    {"document-save-as",
     "F M1 1 H11 L13 3 V8 L8 13 V14 H1 Z R3 2 6 3 M14 8 L16 10 L11 15 H9 V13 Z"},
    {"document-send", "F M2 1 H9 L11 3 V6 H6 V12 H11 V15 H2 Z M12 5 L16 9 L12 13 Z R7 8 5 2"},
    {"edit-clear", "F M5 3 H15 V13 H5 L0.5 8 Z "
                   "M7 6 L8 5 L10 7 L12 5 L13 6 L11 8 L13 10 L12 11 L10 9 L8 11 L7 10 L9 8 Z"},
    {"edit-copy", "F M1 1 H10 V3 H3 V12 H1 Z M5 5 H15 V15 H5 Z R7 8 6 1 R7 10 6 1 R7 12 4 1"},
    {"edit-find", "S2 O6.5 6.5 4.5 M10 10 L14.5 14.5"},
    {"edit-paste", "F M2 2 H5 V1 H11 V2 H14 V15 H2 Z R4 5 8 8 R6 7 4 1 R6 9 4 1"},
    {"edit-redo", "S2 M10.5 2 L14 6 L10.5 10 M14 6 H6 C1 6 1 13 6 13 H10"},
    {"edit-undo", "S2 M5.5 2 L2 6 L5.5 10 M2 6 H10 C15 6 15 13 10 13 H6"},
    {"format-indent-less", "F R1 1 14 2 R7 5 8 2 R7 9 8 2 R1 13 14 2 M5 5 L1 8 L5 11 Z"},
    {"format-indent-more", "F R1 1 14 2 R7 5 8 2 R7 9 8 2 R1 13 14 2 M1 5 L5 8 L1 11 Z"},
    {"format-justify-center", "F R1 1 14 2 R4 5 8 2 R1 9 14 2 R4 13 8 2"},
    {"format-justify-left", "F R1 1 14 2 R1 5 9 2 R1 9 14 2 R1 13 9 2"},
    {"format-justify-right", "F R1 1 14 2 R6 5 9 2 R1 9 14 2 R6 13 9 2"},
    {"format-text-bold", "S3 M4.5 2 V14 S2 M5 3 H8 C11.5 3 11.5 7.5 8 7.5 H5 "
                         "M8 7.5 C12.5 7.5 12.5 13 8 13 H5"},
    {"format-text-italic", "S2 M7 3 H13 M3 13 H9 M10 3 L6 13"},
    {"format-text-underline", "S2 M4 1 V7 C4 12 12 12 12 7 V1 M2 14 H14"},
    {"insert-image", "F M1 2 H15 V14 H1 Z R3 4 10 8 M3 12 L6.5 7 L9 10 L10.5 8.5 L13 12 Z "
                     "O10.5 6 1"},
    {"list-add", "S2 M8 2 V14 M2 8 H14"},
    {"mail-attachment", "S1.5 M11.5 4 V11 C11.5 15.5 4.5 15.5 4.5 11 V4.5 C4.5 1 9 1 9 4.5 V11 "
                        "C9 12.8 7 12.8 7 11 V5"},
    {"object-select", "S2 M2 8 L6 12 L14 4"},
    {"preferences-desktop-font", "S2 M1 14 L5 3 L9 14 M2.5 10 H7.5 O12 11 2 M14 8 V14"},
    {"preferences-system", "S2 M1 4 H15 M1 12 H15 F O5 4 3 F O11 12 3"},
    {"preferences-system-time", "S2 O8 8 6 M8 4 V8 L11 10"},
    {"user-info", "F O8 4.5 3.5 M1 15 C1 11 4 9.5 8 9.5 C12 9.5 15 11 15 15 Z"},
    {"user-trash", "F R6 1 4 1 R2 2 12 2 M3 5 H13 L12 15 H4 Z R6 7 1 6 R9 7 1 6"},
    {"view-list-bullet", "F R1 2 2 2 R5 2 10 2 R1 7 2 2 R5 7 10 2 R1 12 2 2 R5 12 10 2"},
    {"window-close", "S2 M3 3 L13 13 M13 3 L3 13"},
    {"x-office-calendar", "F M1 2 H15 V15 H1 Z R3 6 10 7 R5 8 2 2 R9 8 2 2 R4 0 2 2 R10 0 2 2"},
    {"yarrowen-desk",
     "#1a5fb4 F M1 2 H15 V14 H1 Z #ffffff F R2 6 3 3 R6 6 8 3 R2 10 3 3 R6 10 8 3"},
    {"yarrowen-notes", "#e5a50a F M2 1 H14 V10 L9 15 H2 Z #865e00 F M9 15 V10 H14 Z "
                       "#3d2b00 F R4 4 8 1 R4 6 8 1 R4 8 8 1"},
};

const Drawing* drawingOf(const QString& name) {
    for (const Drawing& drawing : kDrawings) {
        if (name == QLatin1String(drawing.name)) {
            return &drawing;
        }
    }
    return nullptr;
}

/// Reads the words of a drawing and paints its shapes one by one.
class DrawingPainter {
public:
    DrawingPainter(QPainter& painter, const QColor& ink) : m_painter(painter), m_colour(ink) {}

    void paint(const Drawing& drawing) {
        const QStringList words = QString::fromLatin1(drawing.words).split(u' ');
        for (m_word = words.begin(); m_word != words.end();) {
            take(*m_word++);
        }
        endShape();
    }

private:
    void take(const QString& word) {
        // A letter and the first of its numbers are one word.
        const double first = QStringView(word).mid(1).toDouble();
        switch (word[0].unicode()) {
        case u'#':
            endShape();
            m_colour = QColor(word);
            break;
        case u'F':
        case u'S':
            endShape();
            m_width = first;
            break;
        case u'M':
            m_path.moveTo(first, number());
            break;
        case u'L':
            m_path.lineTo(first, number());
            break;
        case u'H':
            m_path.lineTo(first, m_path.currentPosition().y());
            break;
        case u'V':
            m_path.lineTo(m_path.currentPosition().x(), first);
            break;
        case u'Z':
            m_path.closeSubpath();
            break;
        default:
            takeCurve(word[0], first);
        }
    }
    void takeCurve(QChar letter, double first) {
        std::array<double, 6> n{first};
        const size_t count = letter == u'C' ? 6 : letter == u'R' ? 4 : 3;
        for (size_t i = 1; i < count; ++i) {
            n[i] = number();
        }
        if (letter == u'C') {
            m_path.cubicTo(n[0], n[1], n[2], n[3], n[4], n[5]);
        } else if (letter == u'R') {
            m_path.addRect(n[0], n[1], n[2], n[3]);
        } else {
            m_path.addEllipse(QPointF(n[0], n[1]), n[2], n[2]);
        }
    }
    double number() { return (m_word++)->toDouble(); }
    void endShape() {
        if (m_width > 0) {
            m_painter.strokePath(
                m_path, QPen(m_colour, m_width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
        } else {
            m_painter.fillPath(m_path, m_colour);
        }
        m_path.clear();
    }

    QPainter& m_painter;
    QColor m_colour;
    QPainterPath m_path;
    double m_width = 0; ///< of the shape's lines; 0: it is filled
    QStringList::const_iterator m_word;
};

/// Paints a drawing at the size that is asked for.
class DrawnEngine final : public QIconEngine {
public:
    explicit DrawnEngine(const Drawing& drawing) : m_drawing(drawing) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const double side = qMin(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.x() + (rect.width() - side) / 2,
                           rect.y() + (rect.height() - side) / 2);
        painter->scale(side / kGrid, side / kGrid);
        DrawingPainter(*painter, iconInk(mode)).paint(m_drawing);
        painter->restore();
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1);
    }
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state,
                         qreal scale) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, pixmap.rect(), mode, state);
        painter.end();
        pixmap.setDevicePixelRatio(scale);
        return pixmap;
    }
    [[nodiscard]] QIconEngine* clone() const override { return new DrawnEngine(m_drawing); }
    bool isNull() override { return false; }

private:
    const Drawing& m_drawing;
};

} // namespace

QColor iconInk(QIcon::Mode mode) {
    const QPalette palette = QGuiApplication::palette();
    switch (mode) {
    case QIcon::Disabled:
        return palette.color(QPalette::Disabled, QPalette::ButtonText);
    case QIcon::Selected:
        return palette.color(QPalette::HighlightedText);
    default:
        return palette.color(QPalette::ButtonText);
    }
}

QIcon drawnIcon(const QString& name) {
    const Drawing* const drawing = drawingOf(name);
    return drawing == nullptr ? QIcon() : QIcon(new DrawnEngine(*drawing));
}

QStringList drawnIconNames() {
    QStringList names;
    for (const Drawing& drawing : kDrawings) {
        names.append(QLatin1String(drawing.name));
    }
    return names;
}

} // namespace yrw
