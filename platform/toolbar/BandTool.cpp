#include "platform/toolbar/BandTool.h"

namespace yrw {

QString BandTool::plainCaption() const {
    QString plain;
    for (qsizetype i = 0; i < m_data.caption.size(); ++i) {
        if (m_data.caption.at(i) == u'&') {
            ++i; // "&&" is one '&', "&x" is x
        }
        if (i < m_data.caption.size()) {
            plain.append(m_data.caption.at(i));
        }
    }
    return plain;
}

QString BandTool::shownToolTip() const {
    QString tip = m_data.toolTip.isEmpty() ? plainCaption() : m_data.toolTip;
    if (!m_data.shortcut.isEmpty()) {
        tip += u" (" + m_data.shortcut + u')';
    }
    return tip;
}

} // namespace yrw
