#include "platform/rtf/Fields.h"

#include "platform/rtf/CodePage.h"
#include "platform/rtf/Tokenizer.h"
#include "platform/rtf/Writer.h"

#include <QRegularExpression>

namespace yrw::rtf {

namespace {

/// The characters of a group without its control words.
QString plainTextOf(const QByteArray& group) {
    Tokenizer tokens{QByteArrayView(group)};
    QString text;
    int skip = 0;
    for (Token token = tokens.next(); token.kind != TokenKind::End; token = tokens.next()) {
        const bool item = token.kind == TokenKind::Text || token.kind == TokenKind::Hex;
        if (item && skip > 0) {
            --skip;
            text += QString::fromLatin1(token.text.isEmpty() ? token.text : token.text.sliced(1));
        } else if (token.kind == TokenKind::Text) {
            text += decode(1252, token.text);
        } else if (token.kind == TokenKind::Hex) {
            const char byte = static_cast<char>(token.number);
            text += decode(1252, QByteArrayView(&byte, 1));
        } else if (token.kind == TokenKind::Word && token.text == "u") {
            text += QChar(static_cast<char16_t>(token.number));
            skip = 1;
        } else if (token.kind == TokenKind::Symbol && token.number != '*') {
            text += QChar(static_cast<char16_t>(token.number));
        }
    }
    return text;
}

} // namespace

Field fieldOf(const QByteArray& group) {
    static const QRegularExpression pattern(
        QStringLiteral(R"(^\s*HYPERLINK\s+(?:(\\l)\s+)?(?:"([^"]*)\"?|(\S+)))"),
        QRegularExpression::CaseInsensitiveOption);
    Field field{.instruction = group, .link = {}};
    const auto match = pattern.match(plainTextOf(group));
    if (match.hasMatch()) {
        const QString target = match.captured(2).isEmpty() ? match.captured(3) : match.captured(2);
        field.link = match.captured(1).isEmpty() ? target : u'#' + target;
        // A backslash in an instruction is written twice.
        field.link.replace(QLatin1String("\\\\"), QLatin1String("\\"));
    }
    return field;
}

Field hyperlink(const QString& target) {
    QString address = target;
    address.replace(u'"', QLatin1String("%22"));
    address.replace(u'\\', QLatin1String("\\\\"));
    QString words = QStringLiteral("HYPERLINK ");
    if (address.startsWith(u'#')) {
        words += QLatin1String("\\l ");
        address.remove(0, 1);
    }
    words += u'"' + address + u'"';
    return Field{.instruction = "{\\*\\fldinst " + escape(words).toLatin1() + '}', .link = target};
}

} // namespace yrw::rtf
