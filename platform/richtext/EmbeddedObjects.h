#pragma once

#include "platform/rtf/EmbeddedObject.h"
#include "platform/rtf/Model.h"

#include <QString>

#include <optional>
#include <vector>

class QImage;
class QPoint;
class QTextEdit;

namespace yrw {

/// How an embedded object shows, by the numbers that the system's callers use.
enum class ObjectDisplay : int { Content = 0, Icon = 1 };

namespace richtext {

/// The embedded objects of an editor's text; an index counts them from 0 in the order of the text.
///
/// `inlines` are the groups that the text refers to.
/// Lifetime: its editor's. Thread: the user-interface thread.
class EmbeddedObjects {
public:
    EmbeddedObjects(QTextEdit& editor, std::vector<rtf::Inline>& inlines)
        : m_editor(editor), m_inlines(inlines) {}

    [[nodiscard]] int count() const { return static_cast<int>(places().size()); }
    /// The name to show for an object: its file's name, or the kind of its data.
    [[nodiscard]] QString name(int index) const;
    /// The object's content as a file; nothing for a link or damaged data. The label is a plain
    /// file name.
    [[nodiscard]] std::optional<rtf::PackagedFile> file(int index) const;
    /// The path of the file that an object is a link to, as the object names it; else empty.
    [[nodiscard]] QString link(int index) const;
    /// The picture that an object shows, as a file; nothing for one without.
    [[nodiscard]] std::optional<rtf::PackagedFile> picture(int index) const;
    /// Writes an object's content into a folder that only its user may read and that is gone when
    /// the program ends; the copy is read-only and carries the object's name. Empty where `file`
    /// gives nothing or the disk is full.
    [[nodiscard]] QString copy(int index) const;
    /// The object shown at a point of the viewport, or -1.
    [[nodiscard]] int at(const QPoint& point) const;
    /// The object that the insertion point stands on or that alone is selected, or -1.
    [[nodiscard]] int current() const;
    void select(int index);

    /// Embeds a file at the insertion point as one undo step. Raises `kErrorCannotCreateObject`
    /// when the file is missing, no file, unreadable or larger than `largestFile`; the text is
    /// unchanged then.
    void insertFile(const QString& path, ObjectDisplay display);
    /// Inserts a picture at the insertion point, no wider than a page's text.
    void insertPicture(const QImage& picture);
    /// The most bytes of a file that can be embedded, and of what is pasted; 64 MB at first.
    void setLargestFile(qint64 bytes) { m_largestFile = bytes; }
    [[nodiscard]] qint64 largestFile() const { return m_largestFile; }

private:
    struct Place {
        int position = 0;
        std::size_t group = 0; ///< index into the groups
    };

    [[nodiscard]] std::vector<Place> places() const;
    [[nodiscard]] int indexAt(int position) const;
    [[nodiscard]] const rtf::Inline* group(int index) const;
    [[nodiscard]] std::optional<rtf::EmbeddedObject> object(int index) const;
    void insert(rtf::InlineKind kind, const QByteArray& raw);

    QTextEdit& m_editor;
    std::vector<rtf::Inline>& m_inlines;
    qint64 m_largestFile = 64LL * 1024 * 1024;
};

} // namespace richtext
} // namespace yrw
