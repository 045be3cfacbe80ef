#include "notes_window/TextMenu.h"

#include "notes_window/NoteTool.h"
#include "notes_window/TextOptions.h"
#include "notes_window/WindowContext.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/spelling/SpellChecker.h"
#include "platform/toolbar/Toolbar.h"

namespace yrw {

namespace {

constexpr int kWordTools = 5;
const QString kTextPopup = QStringLiteral("bndTextPopup");

} // namespace

TextMenu::TextMenu(RichTextBox& text, Toolbar& toolbar, TextOptions& options,
                   WindowContext& context)
    : m_text(text), m_toolbar(toolbar), m_options(options), m_context(context),
      m_attachments(text.objects(), context.prompt(), context.services().files) {}

void TextMenu::popUp(const QPoint& at) {
    m_at = at;
    m_toolbar.popupAt(kTextPopup, m_text.viewport()->mapToGlobal(at));
}

void TextMenu::prepare(IBand& band) {
    if (band.key() == kTextPopup) {
        prepareObjectTools(band);
        prepareWordTools(band);
    }
}

void TextMenu::prepareObjectTools(IBand& band) {
    const int under = m_text.objects().at(m_at);
    m_object = under >= 0 ? under : m_text.objects().current();
    for (const char* key : {"tooOpenAttachment", "tooSaveAttachment"}) {
        if (ITool* tool = band.findTool(QLatin1String(key))) {
            tool->setVisible(m_object >= 0);
        }
    }
}

/// Offers words for an unknown one, as many as there are; the tools are made when first needed.
void TextMenu::prepareWordTools(IBand& band) {
    m_misspelt = m_text.misspellingAt(m_at);
    const bool unknown = !m_misspelt.isNull() && !m_text.isReadOnly();
    const QStringList words =
        unknown ? m_options.spellChecker()->suggestions(m_misspelt.selectedText()) : QStringList();
    for (int i = 0; i <= kWordTools; ++i) {
        const bool accept = i == kWordTools;
        const QString key = QStringLiteral("tooWord%1").arg(i);
        ITool* tool = band.findTool(key);
        if (tool == nullptr) {
            tool = &band.addTool(accept ? int(NoteTool::AcceptWord) : int(NoteTool::FirstWord) + i,
                                 key);
            tool->setBeginsGroup(i == 0 || accept);
        }
        tool->setVisible(unknown && (accept || i < words.size()));
        tool->setCaption(accept ? QStringLiteral("&Accept This Word")
                                : QString(words.value(i)).replace(u'&', QStringLiteral("&&")));
    }
}

void TextMenu::replaceWord(const ITool& tool) {
    m_misspelt.insertText(
        QString(tool.caption()).replace(QStringLiteral("&&"), QStringLiteral("&")));
}

void TextMenu::acceptWord() {
    m_options.spellChecker()->accept(m_misspelt.selectedText());
    m_text.checkSpellingAgain();
}

void TextMenu::openObject(int index) {
    reportErrors(m_context.services().utility, QStringLiteral("YRWNotes.frmMain.OpenAttachment"),
                 QStringLiteral("Could Not Open Object"), QStringLiteral("Yarrowen Error"),
                 [&] { m_attachments.open(index); });
}

} // namespace yrw
