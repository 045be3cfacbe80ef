#include "notes_window/TextOptions.h"

#include "notes_window/LongWork.h"
#include "notes_window/NoteTools.h"
#include "notes_window/WindowContext.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/spelling/SpellChecker.h"

#include <QLocale>

namespace yrw {

namespace {

constexpr qint64 kMegabyte = 1024LL * 1024;
constexpr qint64 kLargestMegabytes = 32; ///< where the setting is not above 0

} // namespace

TextOptions::TextOptions(RichTextBox& text, NoteTools& tools, WindowContext& context)
    : m_text(text), m_tools(tools), m_context(context) {}

void TextOptions::apply() {
    const NotesSettings settings = m_context.settings();
    m_text.setPrompt(&m_context.prompt());
    m_text.transfer().setWatch([this]() -> WorkStep {
        const auto work = std::make_shared<LongWork>(m_context.clock(), &m_context.window(),
                                                     QStringLiteral("Pasting: %1 %."), 32);
        return [work](int percent) { return work->goOn(percent); };
    });
    const qint64 largest = settings.get(setting::kLargestAttachment);
    m_text.objects().setLargestFile((largest > 0 ? largest : kLargestMegabytes) * kMegabyte);
    const bool keep = settings.get(setting::kPasteKeepsLook);
    m_text.transfer().setKeepsLook(keep);
    m_tools.setChecked(NoteTool::PasteKeepsLook, keep);
    applySpelling();
}

/// The words are underlined where the user's language has a dictionary and the setting is on.
void TextOptions::applySpelling() {
    const NotesSettings settings = m_context.settings();
    if (!m_spellChecker) {
        const QString named = settings.get(setting::kSpellingLanguage);
        m_spellChecker =
            openDictionary(named.isEmpty() ? QLocale::system().name() : named, dictionaryFolders());
    }
    const bool on = m_spellChecker && settings.get(setting::kCheckSpelling);
    m_text.setSpellChecker(on ? m_spellChecker : nullptr);
    m_tools.setEnabled(NoteTool::CheckSpelling, bool(m_spellChecker));
    m_tools.setChecked(NoteTool::CheckSpelling, on);
}

void TextOptions::setPasteKeepsLook(bool keep) {
    m_context.settings().set(setting::kPasteKeepsLook, keep);
    m_tools.setChecked(NoteTool::PasteKeepsLook, keep);
    m_text.transfer().setKeepsLook(keep);
}

void TextOptions::setChecksSpelling(bool on) {
    m_context.settings().set(setting::kCheckSpelling, on);
    applySpelling();
}

} // namespace yrw
