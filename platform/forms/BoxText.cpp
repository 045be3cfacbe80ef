#include "platform/forms/BoxText.h"

#include "platform/forms/ScreenMetrics.h"

#include <QAbstractButton>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>

namespace yrw {

namespace {

constexpr int kTextWidth = 520;   ///< up to which a box grows before its text wraps, in pixels
constexpr int kAroundText = 90;   ///< icon and margins beside a text
constexpr int kBelowText = 120;   ///< margins and a row of buttons
constexpr int kDetails = 140;     ///< the field of details when it is open
constexpr int kLeastHeight = 100; ///< of a text that scrolls

int naturalWidth(const QLabel& label) {
    int width = 0;
    const QStringList lines = label.text().split(u'\n');
    for (const QString& line : lines) {
        width = std::max(width, label.fontMetrics().horizontalAdvance(line + u' '));
    }
    return width;
}

/// Gives a label the width that its lines need, up to the widest one. The box lets a text wrap
/// that it finds wider than half a small screen, and makes it as high as it then is.
void widen(QLabel& label, int widest) {
    label.setText(breakable(label.text(), label.fontMetrics(), widest - 10));
    label.setMinimumWidth(std::min(naturalWidth(label), widest));
}

int heightOf(const QLabel& label) {
    const QRect all(0, 0, label.minimumWidth(), QWIDGETSIZE_MAX);
    return label.fontMetrics().boundingRect(all, Qt::TextWordWrap, label.text()).height();
}

/// Lets a text scroll within a height.
void scroll(QMessageBox& box, QLabel& label, int height) {
    auto* const area = new QScrollArea(&box);
    area->setObjectName(QStringLiteral("boxText"));
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFixedSize(label.minimumWidth() + area->verticalScrollBar()->sizeHint().width() + 4,
                       height);
    delete box.layout()->replaceWidget(&label, area);
    area->setWidget(&label);
    area->setWidgetResizable(true);
    area->setFocusPolicy(Qt::StrongFocus); // so that keys scroll it
    label.show();
}

void elideCaptions(const QMessageBox& box, int widest) {
    const QList<QAbstractButton*> buttons = box.buttons();
    for (QAbstractButton* const button : buttons) {
        const QString caption = button->text();
        const QString shown = button->fontMetrics().elidedText(caption, Qt::ElideMiddle, widest,
                                                               Qt::TextShowMnemonic);
        if (shown != caption) {
            button->setText(shown);
            button->setToolTip(u"<span>" + caption.toHtmlEscaped() + u"</span>");
        }
    }
}

} // namespace

void fitToScreen(QMessageBox& box, const QWidget* owner) {
    const QSize room = roomFor(owner != nullptr ? *owner : box);
    const int widest = std::min(kTextWidth, room.width() - kAroundText);
    elideCaptions(box, widest);
    auto* const text = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    auto* const more = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"));
    int height = room.height() - kBelowText - (box.detailedText().isEmpty() ? 0 : kDetails);
    for (QLabel* const label : {text, more}) {
        if (label == nullptr) {
            continue;
        }
        widen(*label, widest);
        const int most = label == text && more != nullptr ? height / 2 : height;
        if (heightOf(*label) > most) {
            scroll(box, *label, std::max(most, kLeastHeight));
        }
        height -= std::min(heightOf(*label), most);
    }
}

} // namespace yrw
