// The editor: formats, stamps and the default font.
#include "notes_window/frmMain.h"

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

// The default font, one key each. A value that cannot be read gives the default.
const QString kFontName = QStringLiteral("DefaultFontName");
const QString kFontSize = QStringLiteral("DefaultFontSize");
const QString kFontBold = QStringLiteral("DefaultFontBold");
const QString kFontItalic = QStringLiteral("DefaultFontItalic");
const QString kFontUnderline = QStringLiteral("DefaultFontUnderline");
const QString kFontStrikethru = QStringLiteral("DefaultFontStrikethru");
const QString kFontColour = QStringLiteral("DefaultFontColour");

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
    AppendText(noteStampText(services().clock.now(), currentUserName()), true, true);
}

QString frmMain::currentUserName() {
    const Ref<IUser> user = m_context.currentUser();
    return HostUtility::NullToText(user->value(QStringLiteral("FirstName"))) + u' ' +
           HostUtility::NullToText(user->value(QStringLiteral("LastName")));
}

FontChoice frmMain::defaultFont() const {
    const NotesSettings store = settings();
    FontChoice font;
    font.name = store.text(kFontName);
    bool isNumber = false;
    const double points = store.text(kFontSize).toDouble(&isNumber);
    font.points = isNumber && points > 0 ? points : 10;
    font.bold = store.boolean(kFontBold);
    font.italic = store.boolean(kFontItalic);
    font.underline = store.boolean(kFontUnderline);
    font.strikethru = store.boolean(kFontStrikethru);
    font.colour = store.text(kFontColour).toInt();
    return font;
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
    store.setText(kFontName, chosen->name);
    store.setText(kFontSize, QString::number(chosen->points));
    store.setBoolean(kFontBold, chosen->bold);
    store.setBoolean(kFontItalic, chosen->italic);
    store.setBoolean(kFontStrikethru, chosen->strikethru);
    store.setBoolean(kFontUnderline, chosen->underline);
    store.setText(kFontColour, QString::number(chosen->colour));
    ApplyDefaultFont();
}

void frmMain::chooseColour() {
    const std::optional<int> colour = prompt().chooseColour(m_rtxMain->SelColor().value_or(0));
    if (colour) {
        m_rtxMain->setSelColor(*colour);
    }
}

} // namespace yrw
