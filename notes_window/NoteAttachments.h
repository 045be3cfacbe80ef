#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace yrw {

namespace rtf {
struct PackagedFile;
}
namespace richtext {
class EmbeddedObjects;
}
class FileSystem;
class Prompt;

/// True for a file that a desktop would run rather than show: a program, a script, a package to
/// install, or a launcher. Both its name, in any case of letters, and its content are looked at.
[[nodiscard]] bool isProgram(const QString& shown, const QByteArray& data);

/// What a user does with the files inside a note: open a copy, save one.
///
/// Indexes are those of the objects. A failure raises an `AutomationError`.
/// Lifetime: objects, prompt and file system outlive it. Thread: the user-interface thread.
class NoteAttachments {
public:
    NoteAttachments(richtext::EmbeddedObjects& objects, Prompt& prompt, const FileSystem& files);

    /// Asks, naming the kind of file and with No as the answer to begin with, and lets the desktop
    /// open a private copy. Programs are refused.
    void open(int index);
    /// Asks for a place and writes the file there. Of a link, the file that it leads to, after a
    /// question that shows its path; where that cannot be reached, the picture that the note has.
    void saveAs(int index);

private:
    void tellNoFile(int index);
    [[nodiscard]] std::optional<rtf::PackagedFile> fileToSave(int index);
    [[nodiscard]] std::optional<rtf::PackagedFile> linkedFile(const QString& path, bool& refused);
    void write(const rtf::PackagedFile& file);

    richtext::EmbeddedObjects& m_objects;
    Prompt& m_prompt;
    const FileSystem& m_files;
};

} // namespace yrw
