#include "notes_window/ListColumns.h"

#include "notes_window/WindowContext.h"
#include "platform/controls/ListView.h"
#include "platform/forms/Twips.h"
#include "platform/toolbar/ToolIcons.h"

#include <QEvent>
#include <QHeaderView>
#include <QScopedValueRollback>

#include <algorithm>

namespace yrw {

namespace {

constexpr int kSubjectColumn = 1;
constexpr int kUserPlace = 4;         ///< of the user column, when it is there
constexpr int kUserWidth = 900;       ///< twips
constexpr int kMinSubjectWidth = 120; ///< pixels
const QString kUserColumn = QStringLiteral("usercode");

} // namespace

ListColumns::ListColumns(ListView& list, WindowContext& context)
    : m_list(list), m_context(context) {
    m_list.addColumn(QStringLiteral("Date"), QStringLiteral("date"), 1950);
    m_list.addColumn(QStringLiteral("Subject"), QStringLiteral("subject"), 6600);
    m_list.addColumn(QStringLiteral("Status"), QStringLiteral("status"), 975);
    m_list.addColumn(QStringLiteral("Popup?"), QStringLiteral("popup"), 900);
    m_list.items().setMark(
        {kSubjectColumn, toolIcon(QStringLiteral("alarm")), QStringLiteral("has reminders")});
    m_list.viewport()->installEventFilter(this);
    connect(m_list.header(), &QHeaderView::sectionResized, this,
            [this](int column) { resized(column); });
}

void ListColumns::showUsers(bool shown) {
    ignoreErrors([&] {
        if (!shown) {
            store();
            m_list.removeColumn(kUserColumn);
        } else if (!hasUsers()) {
            m_list.addColumn(QStringLiteral("User"), kUserColumn, kUserWidth);
            restoreFrom(m_list.items().columnOf(kUserColumn));
        }
    });
    fitSubject();
}

bool ListColumns::hasUsers() const {
    return m_list.items().columnOf(kUserColumn) >= 0;
}

QStringList ListColumns::storedWidths() const {
    return m_context.settings()
        .get(setting::kColumnWidths)
        .split(QLatin1Char(';'), Qt::SkipEmptyParts);
}

void ListColumns::restoreFrom(int first) {
    const QStringList widths = storedWidths();
    const QScopedValueRollback<bool> fitting(m_fitting, true);
    for (int i = first; i < widths.size() && i < m_list.items().columnCount(); ++i) {
        if (const int pixels = twipsToPixels(widths[i].toInt()); pixels > 0) {
            m_list.setColumnWidth(i, pixels);
            m_subjectFits = m_subjectFits && i != kSubjectColumn;
        }
    }
}

void ListColumns::store() {
    // A subject column that takes what is left has no width of its own.
    QStringList widths;
    for (int i = 0; i < m_list.items().columnCount(); ++i) {
        const bool fits = i == kSubjectColumn && m_subjectFits;
        widths.append(QString::number(fits ? 0 : pixelsToTwips(m_list.columnWidth(i))));
    }
    // The last column is not there while only the user's own notes are shown.
    if (m_list.items().columnCount() == kUserPlace) {
        widths.append(storedWidths().mid(kUserPlace, 1));
    }
    m_context.settings().set(setting::kColumnWidths, widths.join(QLatin1Char(';')));
}

bool ListColumns::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) {
        fitSubject();
    }
    return QObject::eventFilter(watched, event);
}

void ListColumns::resized(int column) {
    if (m_fitting) {
        return;
    }
    if (column == kSubjectColumn) {
        m_subjectFits = false; // from now on it keeps the width that the user gave it
    }
    fitSubject();
}

void ListColumns::fitSubject() {
    if (!m_subjectFits || m_fitting) {
        return;
    }
    const QScopedValueRollback<bool> fitting(m_fitting, true);
    const int spare = m_list.viewport()->width() - m_list.header()->length();
    m_list.setColumnWidth(kSubjectColumn,
                          std::max(kMinSubjectWidth, m_list.columnWidth(kSubjectColumn) + spare));
}

} // namespace yrw
