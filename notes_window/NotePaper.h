#pragma once

#include <QString>

class QPrinter;

namespace yrw {

class EditedNote;
class NotesList;
class RichTextBox;
class UserNames;
class WindowContext;

/// Brings the note that is shown to paper: the printer, a preview, a PDF file. Nothing without a
/// note.
/// Lifetime: all that it is given outlives it. Thread: the user-interface thread.
class NotePaper {
public:
    NotePaper(RichTextBox& text, const EditedNote& edited, const NotesList& list, UserNames& names,
              WindowContext& context);

    void print();
    void preview();
    void exportPdf();

private:
    void paint(QPrinter& printer);
    void writePdf(const QString& path);

    RichTextBox& m_text;
    const EditedNote& m_edited;
    const NotesList& m_list;
    UserNames& m_names;
    WindowContext& m_context;
};

} // namespace yrw
