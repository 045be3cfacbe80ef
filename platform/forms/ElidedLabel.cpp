#include "platform/forms/ElidedLabel.h"

#include <QPainter>
#include <QStyle>

namespace yrw {

namespace {

constexpr int kLeastLetters = 8;

} // namespace

ElidedLabel::ElidedLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {
    setTextFormat(Qt::PlainText);
}

QSize ElidedLabel::minimumSizeHint() const {
    const QSize whole = QLabel::minimumSizeHint();
    return {qMin(whole.width(), kLeastLetters * fontMetrics().averageCharWidth()), whole.height()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    const QRect place = contentsRect();
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, place.width());
    QPainter painter(this);
    style()->drawItemText(&painter, place, int(alignment()) | Qt::TextSingleLine, palette(),
                          isEnabled(), shown, foregroundRole());
    const QString whole =
        shown == text() ? QString() : QString(u"<span>" + text().toHtmlEscaped() + u"</span>");
    if (toolTip() != whole) {
        setToolTip(whole);
    }
}

} // namespace yrw
