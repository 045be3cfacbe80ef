#include "platform/toolbar/ToolControls.h"

#include "platform/toolbar/ComboAccessible.h"
#include "platform/toolbar/ToolIcons.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QPointer>
#include <QSignalBlocker>

namespace yrw {

namespace {

constexpr int kIconSize = 16;

/// Steps of the keys that walk along the toolbar; 0 for any other key.
int stepOf(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_Right:
        return 1;
    case Qt::Key_Left:
        return -1;
    case Qt::Key_Home:
        return -2;
    case Qt::Key_End:
        return 2;
    default:
        return 0;
    }
}

Qt::ToolButtonStyle styleOf(const BandTool& tool, bool hasIcon) {
    if (!hasIcon || tool.data().style == ToolStyle::CaptionOnly) {
        return Qt::ToolButtonTextOnly;
    }
    return tool.data().style == ToolStyle::IconOnly ? Qt::ToolButtonIconOnly
                                                    : Qt::ToolButtonTextBesideIcon;
}

} // namespace

ToolButton::ToolButton(BandEvents& events, QWidget* parent)
    : QToolButton(parent), m_events(events) {
    setAutoRaise(true);
    // A click leaves the focus where it is: in the text that the tool acts on.
    setFocusPolicy(Qt::NoFocus);
    setIconSize(QSize(kIconSize, kIconSize));
}

void ToolButton::show(const BandTool& tool) {
    const QIcon icon = toolIcon(tool.data().iconName);
    setIcon(icon);
    // The access key belongs to menus: in the bar it would act behind the form's back.
    setText(tool.plainCaption().replace(QLatin1String("&"), QLatin1String("&&")));
    setToolButtonStyle(styleOf(tool, !icon.isNull()));
    setCheckable(tool.kind() != ToolKind::Button);
    setChecked(tool.isChecked());
}

void ToolButton::keyPressEvent(QKeyEvent* event) {
    if (const int step = stepOf(*event); step != 0) {
        m_events.focusMoved(*this, step);
        return;
    }
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        return;
    }
    QToolButton::keyPressEvent(event);
}

ToolCombo::ToolCombo(BandEvents& events, ToolBand& band, QString toolKey, QWidget* parent)
    : QComboBox(parent), m_events(events), m_band(band), m_toolKey(std::move(toolKey)) {
    installComboAccessibility();
    setFocusPolicy(Qt::StrongFocus);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    colourPlaceholder();
}

void ToolCombo::colourPlaceholder() {
    // A text outside the list is as good as one of it, and looks the same.
    const QColor text = palette().color(QPalette::ButtonText);
    if (palette().color(QPalette::PlaceholderText) != text) {
        QPalette own;
        own.setColor(QPalette::PlaceholderText, text);
        setPalette(own);
    }
}

void ToolCombo::changeEvent(QEvent* event) {
    QComboBox::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        colourPlaceholder();
    }
}

void ToolCombo::show(const QStringList& entries, const QString& text) {
    const QSignalBlocker blocker(this);
    QStringList shown;
    for (int i = 0; i < count(); ++i) {
        shown.append(itemText(i));
    }
    if (shown != entries) {
        clear();
        addItems(entries);
    }
    setPlaceholderText(text);
    setCurrentIndex(static_cast<int>(entries.indexOf(text)));
}

void ToolCombo::showPopup() {
    const QPointer<ToolCombo> self(this);
    m_events.comboDropped(m_band, m_toolKey);
    if (!self.isNull()) {
        m_source = Source::List;
        QComboBox::showPopup();
    }
}

void ToolCombo::keyPressEvent(QKeyEvent* event) {
    m_source = Source::Field;
    if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) {
        m_events.focusMoved(*this, stepOf(*event));
        return;
    }
    QComboBox::keyPressEvent(event);
}

void ToolCombo::wheelEvent(QWheelEvent* event) {
    if (hasFocus()) {
        m_source = Source::Field;
        QComboBox::wheelEvent(event);
    } else {
        event->ignore();
    }
}

} // namespace yrw
