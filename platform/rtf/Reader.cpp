#include "platform/rtf/Reader.h"

#include "platform/rtf/Builder.h"
#include "platform/rtf/Parser.h"

#include <algorithm>

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

bool isRtf(QStringView text) {
    return text.trimmed().startsWith(QLatin1String("{\\rtf"));
}

Document read(QByteArrayView rtf) {
    Document document;
    if (!rtf.trimmed().startsWith("{\\rtf")) {
        return fromPlainText(QString::fromUtf8(rtf));
    }
    Parser(rtf, document).run();
    return document;
}

Document read(QStringView rtf) {
    if (!isRtf(rtf)) {
        return fromPlainText(rtf);
    }
    if (std::all_of(rtf.begin(), rtf.end(), [](QChar c) { return c.unicode() <= 0xFF; })) {
        return read(QByteArrayView(rtf.toLatin1()));
    }
    QByteArray bytes;
    bytes.reserve(rtf.size() + 64);
    for (const QChar c : rtf) {
        if (c.unicode() <= 0xFF) {
            bytes += static_cast<char>(c.unicode());
        } else {
            bytes += "{\\uc1\\u" + QByteArray::number(c.unicode()) + "?}";
        }
    }
    return read(QByteArrayView(bytes));
}

Document fromPlainText(QStringView text) {
    Document document;
    document.colours.push_back(kAutomatic);
    Builder builder(document);
    builder.font(QStringLiteral("Arial"));
    const int format = builder.charFormat(CharFormat{});
    const int par = builder.parFormat(ParFormat{});
    QString plain = text.toString();
    plain.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    plain.replace(u'\r', u'\n');
    plain.remove(QChar(u'\0'));
    const auto lines = QStringView(plain).split(u'\n');
    for (const QStringView line : lines) {
        builder.text(line, format);
        builder.endParagraph(par, format);
    }
    return document;
}

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
