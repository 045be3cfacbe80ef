#include "platform/richtext/Links.h"

#include "platform/prompt/Prompt.h"
#include "platform/richtext/Formats.h"

#include <QDesktopServices>
#include <QTextCursor>
#include <QTextEdit>
#include <QUrl>

namespace yrw::richtext {

namespace {

/// Only these open: a link in a note must not start a program or reveal a file.
bool isSafe(const QUrl& url) {
    static const QStringList schemes = {QStringLiteral("http"), QStringLiteral("https"),
                                        QStringLiteral("mailto"), QStringLiteral("ftp")};
    return url.isValid() && schemes.contains(url.scheme().toLower());
}

} // namespace

void leaveLink(QTextEdit& editor) {
    const QTextCursor cursor = editor.textCursor();
    const QTextCharFormat format = cursor.charFormat();
    if (cursor.hasSelection() || !format.hasProperty(kField)) {
        return;
    }
    QTextCursor next = cursor;
    next.movePosition(QTextCursor::NextCharacter);
    const bool inside =
        !cursor.atBlockEnd() && next.charFormat().property(kField) == format.property(kField);
    if (!inside) {
        // What is typed behind a link does not belong to it.
        QTextCharFormat plain = format;
        plain.clearProperty(kField);
        plain.clearProperty(QTextFormat::IsAnchor);
        plain.clearProperty(QTextFormat::AnchorHref);
        editor.setCurrentCharFormat(plain);
    }
}

void openLink(const QString& target, Prompt* prompt) {
    const QUrl url = QUrl::fromUserInput(target);
    if (!isSafe(url)) {
        if (prompt != nullptr) {
            prompt->message(
                QStringLiteral("This link is not opened, for it leads to no web page or mail "
                               "address:\r") +
                    target,
                QStringLiteral("Open Link"), PromptIcon::Exclamation);
        }
        return;
    }
    const bool open =
        prompt == nullptr ||
        prompt->question(QStringLiteral("Open this address?\r") + url.toDisplayString(),
                         QStringLiteral("Open Link"), PromptButtons::YesNo, PromptIcon::Question,
                         PromptAnswer::Yes) == PromptAnswer::Yes;
    if (open) {
        QDesktopServices::openUrl(url);
    }
}

} // namespace yrw::richtext
