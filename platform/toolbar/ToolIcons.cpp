#include "platform/toolbar/ToolIcons.h"

#include "platform/forms/DrawnIcons.h"

#include <QIconEngine>
#include <QPainter>

#include <mutex>

namespace yrw {

namespace {

/// Paints a one-coloured icon of the theme in the palette's colour, which is asked for at each
/// painting. Where the theme has it only smaller than it is wanted, the program's own drawing is
/// sharper.
class TintedEngine final : public QIconEngine {
public:
    TintedEngine(QIcon source, QIcon drawn)
        : m_source(std::move(source)), m_drawn(std::move(drawn)) {}

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
        if (pixmap.width() < size.width() && pixmap.height() < size.height() && !m_drawn.isNull()) {
            return m_drawn.pixmap(size / scale, scale, mode, state);
        }
        if (pixmap.isNull()) {
            return pixmap;
        }
        QPainter painter(&pixmap);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(pixmap.rect(), iconInk(mode));
        painter.end();
        pixmap.setDevicePixelRatio(scale);
        return pixmap;
    }
    [[nodiscard]] QIconEngine* clone() const override {
        return new TintedEngine(m_source, m_drawn);
    }
    bool isNull() override { return m_source.isNull(); }

private:
    QIcon m_source;
    QIcon m_drawn;
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
                return QIcon(new TintedEngine(source, drawnIcon(name)));
            }
        }
    }
    const QIcon plain = QIcon::fromTheme(name);
    return plain.pixmap(QSize(16, 16), 1).isNull() ? drawnIcon(name) : plain;
}

} // namespace yrw
