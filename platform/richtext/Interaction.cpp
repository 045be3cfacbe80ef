#include "platform/forms/ContextMenuKey.h"
#include "platform/richtext/Formats.h"
#include "platform/richtext/InlineRenderer.h"
#include "platform/richtext/ListNumbers.h"
#include "platform/richtext/ReadableColours.h"
#include "platform/richtext/RichTextBox.h"

#include <QApplication>
#include <QDrag>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QToolTip>

#include <utility>

// Keys, links and objects under the mouse.

namespace yrw {

namespace {

/// Only these open: a link in a note must not start a program or reveal a file.
bool isSafe(const QUrl& url) {
    static const QStringList schemes = {QStringLiteral("http"), QStringLiteral("https"),
                                        QStringLiteral("mailto"), QStringLiteral("ftp")};
    return url.isValid() && schemes.contains(url.scheme().toLower());
}

} // namespace

void RichTextBox::setPrompt(Prompt* prompt) {
    m_prompt = prompt;
}

void RichTextBox::setUrlOpener(UrlOpener opener) {
    m_openUrl = std::move(opener);
}

void RichTextBox::leaveLink() {
    const QTextCursor cursor = textCursor();
    const QTextCharFormat format = cursor.charFormat();
    if (cursor.hasSelection() || !format.hasProperty(richtext::kField)) {
        return;
    }
    QTextCursor next = cursor;
    next.movePosition(QTextCursor::NextCharacter);
    const bool inside = !cursor.atBlockEnd() && next.charFormat().property(richtext::kField) ==
                                                    format.property(richtext::kField);
    if (!inside) {
        // What is typed behind a link does not belong to it.
        QTextCharFormat plain = format;
        plain.clearProperty(richtext::kField);
        plain.clearProperty(QTextFormat::IsAnchor);
        plain.clearProperty(QTextFormat::AnchorHref);
        setCurrentCharFormat(plain);
    }
}

void RichTextBox::setMarks(const QList<ExtraSelection>& marks) {
    m_marks = marks;
    setExtraSelections(m_readable + m_marks);
}

/// Marks what is in view and would be painted dark on dark. Another paint follows only where that
/// has changed.
void RichTextBox::makeColoursReadable() {
    const QPoint scrolled(horizontalScrollBar()->value(), verticalScrollBar()->value());
    const QList<ExtraSelection> pieces = richtext::readableColours(
        *document(), viewport()->rect().translated(scrolled), palette().color(QPalette::Base));
    if (!richtext::isSame(pieces, m_readable)) {
        m_readable = pieces;
        setExtraSelections(m_readable + m_marks);
    }
}

bool RichTextBox::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::Paint) {
        makeColoursReadable();
        const QPoint scrolled(horizontalScrollBar()->value(), verticalScrollBar()->value());
        m_renderer->setView(viewport()->rect().translated(scrolled));
        const bool painted = QTextEdit::viewportEvent(event);
        QPainter painter(viewport());
        painter.translate(-scrolled);
        const QRect shown = static_cast<QPaintEvent*>(event)->rect().translated(scrolled);
        richtext::paintListNumbers(painter, *document(), shown, palette());
        return painted;
    }
    if (event->type() == QEvent::ToolTip) {
        const auto* const help = static_cast<QHelpEvent*>(event);
        const QString target = anchorAt(help->pos());
        const int object = objectAt(help->pos());
        QString text;
        if (object >= 0) {
            text = objectName(object).toHtmlEscaped() +
                   QStringLiteral("<br>Double-click to open, drag to copy");
        } else if (!target.isEmpty()) {
            text = target.toHtmlEscaped() + QStringLiteral("<br>Ctrl+click to open");
        }
        QToolTip::showText(help->globalPos(), text, viewport()); // an empty text hides it
        return true;
    }
    return QTextEdit::viewportEvent(event);
}

void RichTextBox::keyPressEvent(QKeyEvent* event) {
    if (askedForMenu(*this, *event)) {
        return;
    }
    if (event->key() == Qt::Key_V &&
        event->modifiers() == (Qt::ControlModifier | Qt::ShiftModifier)) {
        pastePlain();
        event->accept();
        return;
    }
    if (leavesList(*event)) {
        setSelBullet(false);
        event->accept();
        return;
    }
    QTextEdit::keyPressEvent(event);
}

/// Enter in an empty item and Backspace before an item's text end the list there.
bool RichTextBox::leavesList(const QKeyEvent& event) const {
    const QTextCursor cursor = textCursor();
    if (isReadOnly() || cursor.currentList() == nullptr || cursor.hasSelection()) {
        return false;
    }
    const bool enter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    return (enter && event.modifiers() == Qt::NoModifier && cursor.block().length() == 1) ||
           (event.key() == Qt::Key_Backspace && cursor.atBlockStart());
}

void RichTextBox::mousePressEvent(QMouseEvent* event) {
    const QPoint at = event->position().toPoint();
    const int index = event->button() == Qt::LeftButton && event->modifiers() == Qt::NoModifier
                          ? objectAt(at)
                          : -1;
    if (index >= 0) {
        selectObject(index);
        m_objectPressed = at;
        event->accept();
        return;
    }
    QTextEdit::mousePressEvent(event);
}

void RichTextBox::mouseMoveEvent(QMouseEvent* event) {
    if (!m_objectPressed) {
        QTextEdit::mouseMoveEvent(event);
        return;
    }
    const QPoint way = event->position().toPoint() - *m_objectPressed;
    if (way.manhattanLength() >= QApplication::startDragDistance()) {
        m_objectPressed.reset();
        dragObject();
    }
}

void RichTextBox::mouseReleaseEvent(QMouseEvent* event) {
    if (m_objectPressed) {
        m_objectPressed.reset();
        event->accept();
        return;
    }
    QTextEdit::mouseReleaseEvent(event);
    const bool wanted =
        event->button() == Qt::LeftButton && event->modifiers() == Qt::ControlModifier;
    const QString target = wanted ? anchorAt(event->position().toPoint()) : QString();
    if (!target.isEmpty() && !textCursor().hasSelection()) {
        openLink(target);
    }
}

/// Drags the selected object: into the text as it is, to other programs as a file. They get a copy;
/// only a move inside the box takes it away from where it was.
void RichTextBox::dragObject() {
    QTextCursor original = textCursor();
    auto* const drag = new QDrag(viewport()); // deletes itself when it is over
    QMimeData* const mime = createMimeDataFromSelection();
    if (const QString copy = objectCopy(currentObject()); !copy.isEmpty()) {
        mime->setUrls({QUrl::fromLocalFile(copy)});
    }
    drag->setMimeData(mime);
    drag->exec(Qt::CopyAction);
    if (drag->target() == viewport() && !isReadOnly()) {
        original.removeSelectedText();
    }
}

void RichTextBox::openLink(const QString& target) {
    const QUrl url = QUrl::fromUserInput(target);
    if (!isSafe(url)) {
        if (m_prompt != nullptr) {
            m_prompt->message(
                QStringLiteral("This link is not opened, for it leads to no web page or mail "
                               "address:\r") +
                    target,
                QStringLiteral("Open Link"), PromptIcon::Exclamation);
        }
        return;
    }
    const bool open =
        m_prompt == nullptr ||
        m_prompt->question(QStringLiteral("Open this address?\r") + url.toDisplayString(),
                           QStringLiteral("Open Link"), PromptButtons::YesNo, PromptIcon::Question,
                           PromptAnswer::Yes) == PromptAnswer::Yes;
    if (open && m_openUrl) {
        m_openUrl(url);
    }
}

void RichTextBox::mouseDoubleClickEvent(QMouseEvent* event) {
    const int index = objectAt(event->position().toPoint());
    if (index >= 0) {
        event->accept();
        m_objectPressed.reset();
        Q_EMIT objectActivated(index);
        return;
    }
    QTextEdit::mouseDoubleClickEvent(event);
}

} // namespace yrw
