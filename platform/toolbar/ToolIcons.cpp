#include "platform/toolbar/ToolIcons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

#include <mutex>

namespace yrw {

namespace {

/// Paints a one-coloured icon in the palette's colour, which is asked for at each painting.
class TintedEngine final : public QIconEngine {
public:
    explicit TintedEngine(QIcon source) : m_source(std::move(source)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State state) override {
        const qreal scale = painter->device()->devicePixelRatio();
        painter->drawPixmap(rect, scaledPixmap(rect.size() * scale, mode, state, scale));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1);
    }
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state,
                         qreal scale) override {
        QPixmap pixmap = m_source.pixmap(size, 1, QIcon::Normal, state);
        if (pixmap.isNull()) {
            return pixmap;
        }
        QPainter painter(&pixmap);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(pixmap.rect(), colour(mode));
        painter.end();
        pixmap.setDevicePixelRatio(scale);
        return pixmap;
    }
    [[nodiscard]] QIconEngine* clone() const override { return new TintedEngine(m_source); }
    bool isNull() override { return m_source.isNull(); }

private:
    static QColor colour(QIcon::Mode mode) {
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

    QIcon m_source;
};

/// Desktops name their theme; elsewhere the icons are looked for where Debian puts them.
void prepareThemes() {
    static std::once_flag once;
    std::call_once(once, [] {
        QStringList paths = QIcon::themeSearchPaths();
        const QString system = QStringLiteral("/usr/share/icons");
        if (!paths.contains(system)) {
            paths.append(system);
            QIcon::setThemeSearchPaths(paths);
        }
        if (QIcon::fallbackThemeName().isEmpty()) {
            QIcon::setFallbackThemeName(QStringLiteral("Adwaita"));
        }
        if (QIcon::themeName().isEmpty() || QIcon::themeName() == u"hicolor") {
            QIcon::setThemeName(QStringLiteral("Adwaita"));
        }
    });
}

} // namespace

QIcon toolIcon(const QString& name) {
    if (name.isEmpty()) {
        return {};
    }
    prepareThemes();
    // One-coloured icons come as PNG files too, which need no renderer for vector files.
    for (const QString& suffix :
         {QStringLiteral("-symbolic.symbolic"), QStringLiteral("-symbolic")}) {
        if (QIcon::hasThemeIcon(name + suffix)) {
            const QIcon source = QIcon::fromTheme(name + suffix);
            if (!source.pixmap(QSize(16, 16), 1).isNull()) {
                return QIcon(new TintedEngine(source));
            }
        }
    }
    const QIcon plain = QIcon::fromTheme(name);
    return plain.pixmap(QSize(16, 16), 1).isNull() ? QIcon() : plain;
}

} // namespace yrw
