// The editor: formats, stamps and the default font.
#include "notes_window/frmMain.h"

#include "framework/DefaultFont.h"
#include "framework/ErrorGuards.h"
#include "framework/Services.h"
#include "notes_window/NoteTexts.h"
#include "notes_window/SelectionFont.h"
#include "platform/clock/Clock.h"
#include "platform/richtext/Formats.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/toolbar/Toolbar.h"

#include <QTextBlockFormat>
#include <QTextCursor>

namespace yrw {

namespace {

constexpr int kToolBold = 20045;
constexpr int kToolItalic = 20046;
constexpr int kToolUnderline = 20047;
constexpr int kToolLeft = 20050;
constexpr int kToolCenter = 20051;
constexpr int kToolRight = 20052;
constexpr int kToolBullets = 20054;

} // namespace

void frmMain::rtxMain_Change() {
    if (m_loading || isNoteCut()) {
        return; // what shows only the beginning of a note is never saved
    }
    m_textIsStored = false;
    setDirty(true);
    if (!m_draftTimer.isActive()) {
        m_draftTimer.start();
    }
}

void frmMain::rtxMain_SelChange() {
    if (m_loading) {
        return;
    }
    const std::optional<TextAlignment> alignment = m_rtxMain->SelAlignment();
    setToolChecked(kToolBold, m_rtxMain->SelBold().value_or(false));
    setToolChecked(kToolItalic, m_rtxMain->SelItalic().value_or(false));
    setToolChecked(kToolUnderline, m_rtxMain->SelUnderline().value_or(false));
    setToolChecked(kToolLeft, alignment == TextAlignment::Left);
    setToolChecked(kToolRight, alignment == TextAlignment::Right);
    setToolChecked(kToolCenter, alignment == TextAlignment::Center);
    setToolChecked(kToolBullets, m_rtxMain->SelBullet().value_or(false));
    if (ITool* font = m_atbMain->findTool(QStringLiteral("tooFont"))) {
        font->setText(m_rtxMain->SelFontName().value_or(QString()));
    }
}

void frmMain::rtxMain_MouseDown(const QPoint& at) {
    if (!m_rtxMain->isEnabled()) {
        return; // the form sees the button also where the text is off
    }
    m_popupPoint = at;
    m_atbMain->popupAt(QStringLiteral("bndTextPopup"), m_rtxMain->viewport()->mapToGlobal(at));
}

void frmMain::setDirty(bool dirty) {
    m_dirty = dirty;
    if (!dirty) {
        m_draftTimer.stop();
    }
    constexpr int toolSave = 20003;
    setToolEnabled(toolSave, dirty);
}

void frmMain::AppendText(const QString& text, bool bold, bool newParagraph) {
    QTextCursor cursor(m_rtxMain->document());
    cursor.beginEditBlock();
    cursor.movePosition(QTextCursor::End);
    if (newParagraph && !m_rtxMain->Text().isEmpty()) {
        cursor.insertBlock();
    }
    QTextCharFormat plain = cursor.charFormat();
    // What stands behind a link or an object is no part of it.
    for (const int property :
         {int(richtext::kField), int(richtext::kInlineId), int(QTextFormat::ObjectType),
          int(QTextFormat::IsAnchor), int(QTextFormat::AnchorHref)}) {
        plain.clearProperty(property);
    }
    if (bold) {
        QTextCharFormat strong = plain;
        strong.setFontWeight(QFont::Bold);
        cursor.insertText(text, strong);
        // What follows a bold piece is neither bold nor coloured.
        plain.setFontWeight(QFont::Normal);
        plain.clearForeground();
        cursor.insertText(QStringLiteral(" "), plain);
    } else {
        cursor.insertText(text + u' ', plain);
    }
    cursor.endEditBlock();
    m_rtxMain->setTextCursor(cursor);
    if (bold) {
        m_rtxMain->setSelBold(false);
    }
    m_rtxMain->ensureCursorVisible();
}

void frmMain::InsertStamp() {
    AppendText(noteStampText(services().clock.now(), m_names.ofCurrentUser()), true, true);
}

FontChoice frmMain::defaultFont() const {
    return yrw::defaultFont(settings());
}

void frmMain::ApplyDefaultFont() {
    m_rtxMain->setDefaultFontChoice(defaultFont());
}

void frmMain::ChooseFont() {
    if (const auto chosen = prompt().chooseFont(fontOfSelection(*m_rtxMain))) {
        setFontOfSelection(*m_rtxMain, *chosen);
    }
}

void frmMain::SetDefaultFont() {
    const std::optional<FontChoice> chosen = prompt().chooseFont(defaultFont());
    if (!chosen) {
        return;
    }
    NotesSettings store = settings();
    storeDefaultFont(store, *chosen);
    ApplyDefaultFont();
}

void frmMain::chooseColour() {
    const std::optional<int> colour = prompt().chooseColour(m_rtxMain->SelColor().value_or(0));
    if (colour) {
        m_rtxMain->setSelColor(*colour);
    }
}

} // namespace yrw
