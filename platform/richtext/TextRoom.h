#pragma once

#include "platform/rtf/Model.h"

#include <set>
#include <tuple>

namespace yrw::richtext {

/// The width in dots that a text is taken to have: that of the notes window at its narrowest.
inline constexpr double kShownWidth = 390;

/// What a text may still take of memory and height while it is put into the editor, as far as that
/// can be told before it is laid out.
/// Thread: one at a time.
class TextRoom {
public:
    /// The room for a document in an empty text.
    TextRoom(const rtf::Document& source, double dotsPerInch);

    /// Dots that the text is high already.
    void setHeightBefore(double dots);
    /// True once something was taken that had no room.
    [[nodiscard]] bool isFull() const { return m_memory < 0 || m_height < 0; }
    /// Dots of the column that the text stands in.
    [[nodiscard]] double width() const { return m_width; }
    void setWidth(double dots) { m_width = dots; }

    void takeBytes(qint64 bytes) { m_memory -= bytes; }
    /// A font in one of its sizes and looks.
    void takeFont(const rtf::CharFormat& look);
    /// A paragraph without its characters; `mark` is the look of its end.
    void takeParagraph(const rtf::ParFormat& paragraph, const rtf::CharFormat& mark);
    /// The lines that characters fill, in a look and a paragraph.
    void takeLines(QStringView text, const rtf::CharFormat& look, const rtf::ParFormat& paragraph);
    void takeInline(const rtf::Inline& group);

private:
    double m_dotsPerInch;
    qint64 m_memory; ///< bytes that are left
    double m_height; ///< dots that are left
    double m_width = kShownWidth;
    std::set<std::tuple<int, int, bool, bool>> m_fonts; ///< that were taken
};

} // namespace yrw::richtext
