#pragma once

#include "platform/rtf/Builder.h"
#include "platform/rtf/Model.h"

#include <QTextCursor>
#include <QTextFrame>

#include <functional>
#include <unordered_map>
#include <utility>
#include <vector>

class QTextFragment;
class QTextTable;

namespace yrw::richtext {

/// Reads a text document, or a part of it, into a document model.
///
/// `header` gives the font and colour tables, kept groups and code page that the model begins
/// with. `insertion` is the insertion point, whose formats an empty paragraph there has.
/// Thread: the user-interface thread.
class DocumentScanner {
public:
    DocumentScanner(const rtf::Document& header, const std::vector<rtf::Inline>& inlines,
                    const QTextCursor& insertion, double dotsPerInch);

    /// Called with the percentage done before each paragraph.
    void setProgress(std::function<void(int percent)> progress) {
        m_progress = std::move(progress);
    }
    [[nodiscard]] rtf::Document scan(const QTextDocument& document);
    /// The part from position `begin` up to `end`; a table only when all of it lies inside.
    [[nodiscard]] rtf::Document scan(const QTextDocument& document, int begin, int end);

private:
    void frame(QTextFrame::iterator it, const QTextFrame::iterator& end);
    void table(const QTextTable& table);
    void block(const QTextBlock& block);
    void fragment(const QTextFragment& fragment);
    void image(const QTextImageFormat& format, int index, int field);
    int charFormat(const QTextCharFormat& format);
    int fieldOf(const QTextCharFormat& format);
    void ensureParagraph();

    rtf::Document m_result;
    rtf::Builder m_builder;
    const std::vector<rtf::Inline>& m_inlines;
    QTextCursor m_insertion;
    double m_dotsPerInch;
    const QTextDocument* m_document = nullptr;
    int m_begin = 0;
    int m_end = 0;
    int m_parFormat = 0;     ///< of the paragraph that is read
    qint64 m_imageDots = 0;  ///< of the foreign pictures so far
    bool m_inPieces = false; ///< its next block is a further piece of it
    int m_row = -1;
    int m_cell = 0;
    std::function<void(int percent)> m_progress;
    int m_level = 0;                        ///< number of tables around the present place
    std::unordered_map<int, int> m_formats; ///< model format by the text document's format index
};

} // namespace yrw::richtext
