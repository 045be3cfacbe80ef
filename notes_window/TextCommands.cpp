#include "notes_window/TextCommands.h"

#include "framework/DefaultFont.h"
#include "notes_window/AppendedText.h"
#include "notes_window/NoteTexts.h"
#include "notes_window/SelectionFont.h"
#include "notes_window/UserNames.h"
#include "notes_window/WindowContext.h"
#include "platform/clock/Clock.h"
#include "platform/richtext/RichTextBox.h"

#include <QTextCursor>

namespace yrw {

namespace {

constexpr int kIndentStep = 20; ///< twips

} // namespace

TextCommands::TextCommands(RichTextBox& text, UserNames& names, WindowContext& context)
    : m_text(text), m_names(names), m_context(context) {}

void TextCommands::indentMore() {
    indentBy(kIndentStep);
}

void TextCommands::indentLess() {
    indentBy(-kIndentStep);
}

void TextCommands::indentBy(int twips) {
    m_text.selection().setIndent(m_text.selection().indent().value_or(0) + twips);
}

void TextCommands::removeSelected() {
    if (!m_text.isReadOnly()) {
        m_text.textCursor().removeSelectedText();
    }
}

void TextCommands::insertDate() {
    appendText(m_text, noteDayText(m_context.clock().now()), false, false);
}

void TextCommands::insertTime() {
    appendText(m_text, noteTimeText(m_context.clock().now()), false, false);
}

void TextCommands::insertStamp() {
    appendText(m_text, noteStampText(m_context.clock().now(), m_names.ofCurrentUser()), true, true);
}

void TextCommands::chooseColour() {
    if (const auto colour =
            m_context.prompt().chooseColour(m_text.selection().colour().value_or(0))) {
        m_text.selection().setColour(*colour);
    }
}

void TextCommands::chooseFont() {
    if (const auto chosen = m_context.prompt().chooseFont(fontOfSelection(m_text))) {
        setFontOfSelection(m_text, *chosen);
    }
}

void TextCommands::setDefaultFont() {
    NotesSettings settings = m_context.settings();
    if (const auto chosen = m_context.prompt().chooseFont(defaultFont(settings))) {
        storeDefaultFont(settings, *chosen);
        applyDefaultFont();
    }
}

void TextCommands::applyDefaultFont() {
    m_text.setDefaultFontChoice(defaultFont(m_context.settings()));
}

} // namespace yrw
