#include "cli/SafeText.h"

namespace yrw {

namespace {

bool isControl(QChar c) {
    return c.category() == QChar::Other_Control;
}

bool isLineOrTab(QChar c) {
    return c == u'\n' || c == u'\r' || c == u'\t';
}

/// UTF-8 with `replacement(byte)` in place of each control character (C0, DEL, C1) but tabs and
/// line ends.
template <class Replacement>
QByteArray replaced(const QByteArray& utf8, const Replacement& replacement) {
    QByteArray written;
    qsizetype kept = 0; // up to here it stands in `written`
    for (qsizetype at = 0; at < utf8.size(); ++at) {
        const auto byte = static_cast<unsigned char>(utf8.at(at));
        const bool isSecond = byte >= 0x80 && byte <= 0x9f && at > 0 && utf8.at(at - 1) == '\xc2';
        const bool isAlone =
            (byte < 0x20 && byte != '\n' && byte != '\r' && byte != '\t') || byte == 0x7f;
        if (isSecond || isAlone) {
            written += QByteArrayView(utf8).sliced(kept, at - kept - int(isSecond));
            written += replacement(byte);
            kept = at + 1;
        }
    }
    return kept == 0 ? utf8 : written + utf8.sliced(kept);
}

} // namespace

QString onOneLine(const QString& text) {
    QString line = text;
    for (QChar& c : line) {
        if (isControl(c) || c == QChar::LineSeparator || c == QChar::ParagraphSeparator) {
            c = u' ';
        }
    }
    return line;
}

QString shellText(const QString& text) {
    QString shown = text;
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    shown.replace(u'\r', u'\n');
    for (QChar& c : shown) {
        if (isControl(c) && !isLineOrTab(c)) {
            c = u' ';
        }
    }
    return shown + u'\n';
}

QByteArray forTerminal(const QByteArray& utf8) {
    return replaced(utf8, [](unsigned char) { return QByteArrayLiteral("?"); });
}

QByteArray escapedJson(const QByteArray& json) {
    return replaced(json, [](unsigned char byte) {
        return QByteArray("\\u00" + QByteArray::number(byte, 16));
    });
}

QString harmlessCell(const QString& text) {
    QString cell = withoutControls(text);
    // Blanks and line ends before the sign do not keep every program from reading a formula.
    const QString begin = cell.trimmed();
    const bool isFormula = !begin.isEmpty() && QStringView(u"=+-@").contains(begin.front());
    const bool isTab = cell.startsWith(u'\t') || cell.startsWith(u'\r');
    return isFormula || isTab ? u'\'' + cell : cell;
}

QString withoutControls(QString text) {
    return text.removeIf([](QChar c) { return isControl(c) && !isLineOrTab(c); });
}

} // namespace yrw
