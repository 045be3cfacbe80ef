#include "platform/forms/Readable.h"

#include "platform/forms/Contrast.h"

#include <QApplication>
#include <QCheckBox>
#include <QEvent>
#include <QMenu>
#include <QRadioButton>
#include <QStyle>
#include <QTreeView>

namespace yrw {

namespace {

/// The palette's placeholder where it can be read, else the text made as pale as it may be.
QColor placeholderOf(const QPalette& palette) {
    const QColor base = palette.color(QPalette::Base);
    const QColor wanted = palette.color(QPalette::PlaceholderText);
    QColor shown = blended(wanted, base, wanted.alphaF());
    const QColor text = palette.color(QPalette::Text);
    for (double share = 0.5; contrast(shown, base) < kReadableContrast && share <= 1;
         share += 0.05) {
        shown = blended(text, base, share);
    }
    return shown;
}

/// The style frames a box in a shade of the window's colour, which a box paints nowhere else. Gives
/// a window's colour whose shades can be seen on what the box lies on.
QColor frameSource(const QPalette& palette) {
    constexpr int kCheckShade = 140;
    constexpr int kRadioShade = 150;
    const QColor base = palette.color(QPalette::Base);
    const QColor window = palette.color(QPalette::Window);
    const auto isVisible = [&](const QColor& source) {
        for (const QColor& frame :
             {source.darker(kCheckShade).lighter(110), source.darker(kRadioShade)}) {
            if (contrast(frame, base) < kVisibleContrast ||
                contrast(frame, window) < kVisibleContrast) {
                return false;
            }
        }
        return true;
    };
    const bool dark = window.lightness() < 128;
    QColor source = window;
    for (int level = window.lightness(); level >= 0 && level <= 255 && !isVisible(source);
         level += dark ? 3 : -3) {
        source = QColor(level, level, level);
    }
    return source;
}

void showBox(QWidget& widget, const QColor& source) {
    if (widget.palette().color(QPalette::Window) != source) {
        QPalette own;
        own.setColor(QPalette::Window, source);
        widget.setPalette(own);
    }
}

/// Lives with a window and watches for changes of its colours.
class ReadableWindow final : public QObject {
public:
    explicit ReadableWindow(QWidget& window) : QObject(&window), m_window(window) {
        window.installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool changes = event->type() == QEvent::Show ||
                             event->type() == QEvent::PaletteChange ||
                             event->type() == QEvent::StyleChange;
        if (watched == &m_window && changes && !m_changing) {
            m_changing = true;
            change();
            m_changing = false;
        }
        return false;
    }

private:
    void change() {
        QPalette palette = m_window.palette();
        const QColor placeholder = placeholderOf(QApplication::palette(&m_window));
        if (palette.color(QPalette::PlaceholderText) != placeholder) {
            palette = QPalette();
            palette.setColor(QPalette::PlaceholderText, placeholder);
            m_window.setPalette(palette);
        }
        showBoxes(m_window);
    }

    QWidget& m_window;
    bool m_changing = false;
};

} // namespace

void showBoxes(QWidget& widget) {
    if (QApplication::style()->name() != u"fusion") {
        return;
    }
    const QColor source = frameSource(QApplication::palette());
    if (qobject_cast<QMenu*>(&widget) != nullptr) {
        showBox(widget, source);
        return;
    }
    for (QWidget* const child : widget.findChildren<QWidget*>()) {
        if (qobject_cast<QCheckBox*>(child) != nullptr ||
            qobject_cast<QRadioButton*>(child) != nullptr ||
            qobject_cast<QTreeView*>(child) != nullptr) {
            showBox(*child, source);
        }
    }
}

void keepReadable(QWidget& window) {
    new ReadableWindow(window);
}

} // namespace yrw
