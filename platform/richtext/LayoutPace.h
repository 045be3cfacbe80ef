#pragma once

#include <QObject>

class QTextDocument;

namespace yrw::richtext {

/// Lays a document out behind the reader's back, block by block and for a short while at a time;
/// the toolkit's own turns are of so many characters, however much work these are.
///
/// It lives as long as the document's layout. Thread: the user-interface thread.
class LayoutPace : public QObject {
    Q_OBJECT

public:
    explicit LayoutPace(const QTextDocument& document);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// True once all blocks are laid out.
    bool goOn();

    const QTextDocument& m_document;
    int m_position = 0;  ///< of the block that is next
    int m_revision = -1; ///< of the document that the blocks before it were laid out of
    double m_width = -1; ///< dots that they were laid out for
};

} // namespace yrw::richtext
