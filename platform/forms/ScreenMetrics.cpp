#include "platform/forms/ScreenMetrics.h"

#include <QApplication>
#include <QStyle>

namespace yrw {

int systemMetric(SystemMetric which) {
    const QStyle* style = QApplication::style();
    switch (which) {
    case SystemMetric::CaptionHeight:
        return style->pixelMetric(QStyle::PM_TitleBarHeight);
    case SystemMetric::VerticalScrollArrow:
        return style->pixelMetric(QStyle::PM_ScrollBarExtent);
    case SystemMetric::SizingFrameWidth:
        return style->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    }
    return 0;
}

} // namespace yrw
