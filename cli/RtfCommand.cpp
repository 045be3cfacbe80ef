// rtf: converts a file.
#include "cli/CommandContext.h"
#include "cli/RtfHtml.h"
#include "cli/SafeText.h"
#include "platform/rtf/Reader.h"
#include "platform/rtf/Writer.h"

namespace yrw {

ExitStatus convertRtf(const CommandContext& context) {
    const QString html = QStringLiteral("html");
    const QString text = QStringLiteral("text");
    const QString to =
        context.line.word(QStringLiteral("to"), {text, html, QStringLiteral("rtf")}, text);
    const rtf::Document document = rtf::read(context.readFile(context.line.argument()));
    if (to == text) {
        context.print(shellText(document.plainText()));
    } else if (to == html) {
        context.print(
            QStringLiteral("<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title></title>"
                           "</head><body>\n%1</body></html>\n")
                .arg(withoutControls(htmlOf(document))));
    } else {
        context.print(rtf::write(document));
    }
    if (document.incomplete) {
        context.complain(
            QStringLiteral("%1 is cut off or damaged; what could be read was converted.")
                .arg(context.line.argument()));
    }
    return kExitDone;
}

} // namespace yrw
