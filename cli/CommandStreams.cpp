#include "cli/CommandStreams.h"

#include "cli/SafeText.h"

#include <QIODevice>

namespace yrw {

void complain(const CommandStreams& streams, const QString& text) {
    streams.err.write(QString(u"yrwnotes: " + onOneLine(text) + u'\n').toUtf8());
}

} // namespace yrw
