#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QStyleFactory>
#include <QWidget>

#include <algorithm>

namespace yrw {

/// Pictures of the windows on the screen, for people to look at: numbered files in the folder that
/// YRW_PICTURES names, else in one of the folder where the tests run. YRW_DARK=1 makes them dark.
class Pictures {
public:
    explicit Pictures(const QString& folder)
        : m_folder(qEnvironmentVariable("YRW_PICTURES", folder)) {
        QDir().mkpath(m_folder);
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        if (qEnvironmentVariableIsSet("YRW_DARK")) {
            QPalette dark(QColor(0x35, 0x35, 0x35), QColor(0x2a, 0x2a, 0x2a));
            dark.setColor(QPalette::Highlight, QColor(0x30, 0x60, 0xb0));
            QApplication::setPalette(dark);
        }
    }
    /// Paints every window where it lies, `lowest` below all others.
    void keep(const QString& name, QWidget& lowest) {
        QCoreApplication::processEvents();
        const qreal scale = lowest.devicePixelRatioF();
        QWidgetList shown;
        QRect all;
        for (QWidget* each : QApplication::topLevelWidgets()) {
            if (each->isVisible() && !each->inherits("QTipLabel")) {
                each == &lowest ? shown.prepend(each) : shown.append(each);
                all |= each->geometry();
            }
        }
        QPixmap picture(all.size() * scale);
        picture.setDevicePixelRatio(scale);
        picture.fill(Qt::darkCyan);
        QPainter painter(&picture);
        for (QWidget* each : shown) {
            painter.drawPixmap(each->geometry().topLeft() - all.topLeft(), each->grab());
        }
        painter.end();
        EXPECT_TRUE(picture.save(QStringLiteral("%1/%2-%3.png")
                                     .arg(m_folder)
                                     .arg(++m_number, 2, 10, QLatin1Char('0'))
                                     .arg(name)));
    }

private:
    QString m_folder;
    int m_number = 0;
};

} // namespace yrw
