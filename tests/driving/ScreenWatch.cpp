#include "tests/driving/ScreenWatch.h"

#include "platform/forms/ElidedLabel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QEvent>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QTimer>

#include <utility>

namespace yrw::test {

namespace {

constexpr int kTurns = 40; ///< in which layouts settle and the window manager answers
constexpr int kTurnMs = 25;

/// What a control needs for what it shows, in pixels; nothing for one that has no text of its own.
QSize needed(const QWidget& control) {
    if (const auto* label = qobject_cast<const QLabel*>(&control)) {
        if (label->text().isEmpty() || dynamic_cast<const ElidedLabel*>(label) != nullptr ||
            label->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored) {
            return {};
        }
        const QMargins around = label->contentsMargins() + label->margin();
        const QRect room = label->contentsRect();
        const int flags = label->wordWrap() ? int(Qt::TextWordWrap) : 0;
        const QRect within(0, 0, label->wordWrap() ? room.width() : QWIDGETSIZE_MAX,
                           QWIDGETSIZE_MAX);
        const int shown = label->buddy() != nullptr ? int(Qt::TextShowMnemonic) : 0;
        return label->fontMetrics()
            .boundingRect(within, flags | shown, label->text())
            .size()
            .grownBy(around);
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(&control)) {
        return button->text().isEmpty() ? QSize() : button->minimumSizeHint();
    }
    if (qobject_cast<const QComboBox*>(&control) != nullptr ||
        qobject_cast<const QDateTimeEdit*>(&control) != nullptr) {
        return control.minimumSizeHint();
    }
    return {};
}

/// True where a scroll bar brings the control into sight.
bool scrolls(const QWidget& control) {
    for (const QWidget* each = control.parentWidget(); each != nullptr;
         each = each->isWindow() ? nullptr : each->parentWidget()) {
        if (qobject_cast<const QScrollArea*>(each) != nullptr) {
            return true;
        }
    }
    return false;
}

QString nameOf(const QWidget& control) {
    const QString text = control.property("text").toString().left(40);
    return QString::fromLatin1(control.metaObject()->className()) + u' ' + control.objectName() +
           u" '" + text + u'\'';
}

QString sizeText(const QSize& size) {
    return QStringLiteral("%1x%2").arg(size.width()).arg(size.height());
}

} // namespace

ScreenWatch::ScreenWatch() {
    qApp->installEventFilter(this);
}

ScreenWatch::~ScreenWatch() = default;

QStringList ScreenWatch::takeFaults() {
    return std::exchange(m_faults, {});
}

QStringList ScreenWatch::faultsOf(const QWidget& window) {
    QStringList faults;
    const QString where = u" in '" + window.windowTitle() + u'\'';
    const QRect frame = window.frameGeometry();
    if (!window.screen()->geometry().contains(frame)) {
        faults += QStringLiteral("the window lies at %1,%2 with %3 on a screen of %4")
                      .arg(frame.x())
                      .arg(frame.y())
                      .arg(sizeText(frame.size()), sizeText(window.screen()->size())) +
                  where;
    }
    const QWidgetList controls = window.findChildren<QWidget*>();
    for (const QWidget* control : controls) {
        if (!control->isVisible() || control->window() != &window) {
            continue;
        }
        const QSize need = needed(*control);
        const bool cut = need.width() > control->width() || need.height() > control->height();
        const QRect place(control->mapTo(&window, QPoint()), control->size());
        const bool outside = need.isValid() && !need.isNull() && !scrolls(*control) &&
                             !window.rect().contains(place);
        if (cut || outside) {
            faults += nameOf(*control) + (cut ? u" is cut: " : u" lies outside: ") +
                      sizeText(control->size()) + u" of " + sizeText(need) + where;
        }
    }
    return faults;
}

bool ScreenWatch::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show && watched->isWidgetType()) {
        auto* const window = static_cast<QWidget*>(watched);
        const Qt::WindowType type = window->windowType();
        if (window->isWindow() && type != Qt::ToolTip && type != Qt::Popup) {
            lookSoon(window, kTurns);
        }
    }
    return false;
}

void ScreenWatch::lookSoon(const QPointer<QWidget>& window, int turns) {
    QTimer::singleShot(kTurnMs, this, [this, window, turns] {
        if (!window || !window->isVisible()) {
            return;
        }
        const QStringList faults = faultsOf(*window);
        if (turns > 0 && (!faults.isEmpty() || turns > kTurns - 2)) {
            lookSoon(window, turns - 1);
        } else {
            m_faults += faults;
        }
    });
}

} // namespace yrw::test
