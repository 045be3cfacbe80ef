#include "platform/forms/ScreenMetrics.h"

#include <QApplication>
#include <QFontMetrics>
#include <QScreen>
#include <QStyle>
#include <QTextBoundaryFinder>
#include <QWidget>

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

QSize roomFor(const QWidget& window) {
    const int border = systemMetric(SystemMetric::SizingFrameWidth);
    const QSize frame(2 * border, systemMetric(SystemMetric::CaptionHeight) + 2 * border);
    return window.screen()->availableGeometry().size() - frame;
}

QString breakable(const QString& text, const QFontMetrics& metrics, int width) {
    QString broken;
    const auto append = [&](QStringView word) {
        if (metrics.horizontalAdvance(word.toString()) <= width) {
            broken += word;
            return;
        }
        QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, word.toString());
        for (qsizetype begin = 0, end = letters.toNextBoundary(); end >= 0;
             begin = end, end = letters.toNextBoundary()) {
            broken += word.mid(begin, end - begin);
            broken += QChar(0x200B);
        }
    };
    qsizetype begin = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isSpace()) {
            append(QStringView(text).mid(begin, i - begin));
            broken += text[i];
            begin = i + 1;
        }
    }
    append(QStringView(text).mid(begin));
    return broken;
}

} // namespace yrw
