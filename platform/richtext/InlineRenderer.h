#pragma once

#include "platform/rtf/Model.h"

#include <QObject>
#include <QPixmap>
#include <QTextObjectInterface>

#include <functional>
#include <unordered_map>
#include <vector>

namespace yrw::richtext {

/// Draws pictures and objects in the text; kept groups take no room.
///
/// Register it with a document's layout for `kInlineObject`. The groups must outlive it.
/// Thread: the user-interface thread.
class InlineRenderer : public QObject, public QTextObjectInterface {
    Q_OBJECT
    Q_INTERFACES(QTextObjectInterface)

public:
    InlineRenderer(const std::vector<rtf::Inline>& inlines, QObject* parent);
    ~InlineRenderer() override;

    QSizeF intrinsicSize(QTextDocument* document, int position, const QTextFormat& format) override;
    void drawObject(QPainter* painter, const QRectF& rect, QTextDocument* document, int position,
                    const QTextFormat& format) override;
    /// Forgets what was drawn; call it when the groups are replaced.
    void reset();

private:
    struct Look {
        QPixmap picture;
        QSizeF size; ///< at 96 dots per inch
        QString caption;
    };
    const Look& look(const QTextFormat& format);
    void addObjectLook(Look& look, const QByteArray& raw) const;
    [[nodiscard]] Look makeLook(const rtf::Inline& group) const;

    const std::vector<rtf::Inline>& m_inlines;
    std::unordered_map<int, Look> m_looks;
};

} // namespace yrw::richtext
