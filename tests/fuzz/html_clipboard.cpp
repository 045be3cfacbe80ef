#include "platform/rtf/ShallowHtml.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// What the toolkit's reader is given is shallow, names no file and means the same the second time.
void check(const QString& shallow) {
    int depth = 0;
    int deepest = 0;
    for (qsizetype at = shallow.indexOf(u'<'); at >= 0; at = shallow.indexOf(u'<', at + 1)) {
        const QStringView rest = QStringView(shallow).sliced(at + 1);
        const bool ends = rest.startsWith(u'/');
        const bool empty = rest.startsWith(u"br") || rest.startsWith(u"hr") ||
                           rest.startsWith(u"img") || rest.startsWith(u"col");
        if (rest.isEmpty() || (!ends && !rest[0].isLetter()) || (empty && rest[0] != u'c')) {
            continue;
        }
        depth += ends ? -1 : rest.startsWith(u"col") && !rest.startsWith(u"colgroup") ? 0 : 1;
        deepest = std::max(deepest, depth);
    }
    require(deepest <= yrw::rtf::kDeepestElement + 1); // a style sheet before the rest
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString html =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QString shallow = yrw::rtf::shallowHtml(html);
    check(shallow);
    require(shallow.size() <= html.size() * 8 + 1000);
    require(yrw::rtf::textOfHtml(html).size() <= html.size() * 2 + 16);
    require(yrw::rtf::shallowHtml(shallow) == shallow);
    return 0;
}
