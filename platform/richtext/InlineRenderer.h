#pragma once

#include "platform/rtf/Model.h"

#include <QObject>
#include <QPixmap>
#include <QPointer>
#include <QRectF>
#include <QTextDocument>
#include <QTextObjectInterface>
#include <QTimer>

#include <deque>
#include <list>
#include <unordered_map>
#include <vector>

namespace yrw::richtext {

/// Draws pictures and objects in the text; kept groups take no room.
///
/// A picture is decoded when it comes into view, no larger than it shows, and forgotten when room
/// is needed for others: all that are kept have `kMostKeptDots` together. On the screen a large one
/// is decoded in a turn of the event loop of its own and shows as a frame until then.
///
/// Register it with a document's layout for `kInlineObject`. The groups must outlive it.
/// Thread: the user-interface thread.
class InlineRenderer : public QObject, public QTextObjectInterface {
    Q_OBJECT
    Q_INTERFACES(QTextObjectInterface)

public:
    /// Dots of all decoded pictures, and of the largest of them.
    static constexpr qint64 kMostKeptDots = 16LL * 1024 * 1024;
    static constexpr qint64 kMostShownDots = 4LL * 1024 * 1024;

    enum class Target {
        Screen,
        Paper ///< every picture is there at once, one after the other
    };

    InlineRenderer(const std::vector<rtf::Inline>& inlines, Target target, QObject* parent);
    ~InlineRenderer() override;

    QSizeF intrinsicSize(QTextDocument* document, int position, const QTextFormat& format) override;
    void drawObject(QPainter* painter, const QRectF& rect, QTextDocument* document, int position,
                    const QTextFormat& format) override;
    /// The part of the document that is looked at, in its coordinates: what shows there is kept.
    void setView(const QRectF& view) { m_view = view; }
    /// Forgets what was drawn; call it when the groups are replaced.
    void reset();
    /// Dots of the pictures that are decoded now, and pictures that were decoded since `reset`.
    [[nodiscard]] qint64 keptDots() const { return m_keptDots; }
    [[nodiscard]] int decodedCount() const { return m_decodedCount; }
    /// True while a picture waits for its turn.
    [[nodiscard]] bool isWaiting() const { return !m_waiting.empty(); }

private:
    enum class State : quint8 { Unknown, Waiting, Shown, Nothing };
    struct Look {
        QSizeF size; ///< at 96 dots per inch
        QString caption;
        qint64 dots = 0; ///< of the picture as it is stored
        State state = State::Unknown;
        QPixmap picture;
        QRectF place; ///< where it was drawn last
    };
    Look& look(const QTextFormat& format);
    [[nodiscard]] Look makeLook(const rtf::Inline& group) const;
    void prepare(int id, Look& look, qint64 shownDots, QTextDocument* document);
    void decodeNow(int id, Look& look, qint64 shownDots);
    void decodeNext();
    void forgetOutOfView(qint64 needed);

    struct Waiting {
        int id;
        qint64 shownDots;
        QPointer<QTextDocument> document;
    };
    const std::vector<rtf::Inline>& m_inlines;
    Target m_target;
    std::unordered_map<int, Look> m_looks;
    std::deque<Waiting> m_waiting;
    std::list<int> m_kept; ///< decoded pictures, the oldest first
    QRectF m_view;
    QTimer m_turn;
    qint64 m_turnDots = 0; ///< decoded within this turn of the event loop
    qint64 m_keptDots = 0;
    int m_decodedCount = 0;
};

} // namespace yrw::richtext
