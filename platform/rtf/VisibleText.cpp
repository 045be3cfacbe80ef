#include "platform/rtf/VisibleText.h"

#include "platform/rtf/Model.h"
#include "platform/rtf/Reader.h"
#include "platform/rtf/Tokenizer.h"

namespace yrw::rtf {

namespace {

/// The part of a group that shows it, braces included; empty without one.
QByteArrayView resultOf(QByteArrayView group) {
    if (group.indexOf("\\result") < 0) {
        return {};
    }
    Tokenizer tokens(group);
    qsizetype begin = 0;
    for (Token token = tokens.next(); token.kind != TokenKind::End; token = tokens.next()) {
        if (token.kind == TokenKind::GroupStart) {
            begin = token.begin;
        } else if (token.kind == TokenKind::Word && token.text == "objdata") {
            tokens.skipGroup();
        } else if (token.kind == TokenKind::Word && token.text == "result") {
            tokens.skipGroup();
            return group.sliced(begin, tokens.position() - begin);
        }
    }
    return {};
}

} // namespace

QString visibleText(QByteArrayView group, int codePage) {
    const QByteArrayView result = resultOf(group);
    if (result.isEmpty()) {
        return {};
    }
    const QByteArray whole =
        "{\\rtf1\\ansicpg" + QByteArray::number(codePage) + ' ' + result.toByteArray() + '}';
    Document shown = read(QByteArrayView(whole));
    // What lies in an object's picture of itself is not looked into further.
    for (Inline& each : shown.inlines) {
        each.kind = InlineKind::Kept;
    }
    return shown.plainText().trimmed();
}

} // namespace yrw::rtf
