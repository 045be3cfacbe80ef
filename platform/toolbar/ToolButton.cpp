#include "platform/toolbar/ToolButton.h"

#include "platform/toolbar/ToolIcons.h"

#include <QKeyEvent>

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

} // namespace yrw
