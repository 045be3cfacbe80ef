#include "platform/controls/GridAccessible.h"

#include "platform/controls/GridBody.h"

#include <QAccessibleWidget>

#include <mutex>

namespace yrw {

namespace {

/// One row in view: its texts with their headers.
class RowItem final : public QAccessibleInterface {
public:
    /// The pane's own item, which holds this one, ends with the pane.
    RowItem(GridBody& body, qint64 row) : m_body(body), m_row(row) {}

    [[nodiscard]] bool isValid() const override { return !m_body.rowRect(m_row).isEmpty(); }
    [[nodiscard]] QObject* object() const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(&m_body);
    }
    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }
    [[nodiscard]] QRect rect() const override {
        const QRect line = m_body.rowRect(m_row);
        return {m_body.mapToGlobal(line.topLeft()), line.size()};
    }
    void setText(QAccessible::Text, const QString&) override {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        switch (kind) {
        case QAccessible::Name:
            return m_body.rowText(m_row);
        case QAccessible::Value:
            return m_body.cursorText(m_row);
        case QAccessible::Description:
            return m_body.rowRemark(m_row, true).join(u'\n');
        default:
            return {};
        }
    }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.selectable = true;
        state.focusable = true;
        state.selected = m_body.isCursorRow(m_row);
        state.focused = state.selected && m_body.hasFocus();
        return state;
    }

private:
    GridBody& m_body;
    qint64 m_row;
};

/// The rows of one pane as a list of those in view.
class BodyList final : public QAccessibleWidget {
public:
    explicit BodyList(GridBody& body) : QAccessibleWidget(&body, QAccessible::List), m_body(body) {}
    BodyList(const BodyList&) = delete;
    BodyList& operator=(const BodyList&) = delete;
    ~BodyList() override { forgetItems(); }

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? m_body.gridName() : QAccessibleWidget::text(kind);
    }
    [[nodiscard]] int childCount() const override { return m_body.rowsInView(); }
    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        return index < 0 || index >= childCount() ? nullptr : item(m_body.firstRow() + index);
    }
    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
        const qint64 row = m_body.rowAt(m_body.mapFromGlobal(QPoint(x, y)).y());
        return row < 0 ? nullptr : item(row);
    }
    [[nodiscard]] QAccessibleInterface* focusChild() const override {
        const qint64 row = m_body.cursorRow();
        return row < 0 ? nullptr : item(row);
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* wanted) const override {
        for (auto it = m_items.constBegin(); it != m_items.constEnd(); ++it) {
            if (QAccessible::accessibleInterface(it.value()) == wanted) {
                return static_cast<int>(it.key() - m_body.firstRow());
            }
        }
        return -1;
    }

private:
    static constexpr int kMostItems = 500;

    QAccessibleInterface* item(qint64 row) const {
        if (m_items.contains(row)) {
            return QAccessible::accessibleInterface(m_items.value(row));
        }
        if (m_items.size() >= kMostItems) {
            forgetItems();
        }
        auto* const made = new RowItem(m_body, row);
        m_items.insert(row, QAccessible::registerAccessibleInterface(made));
        return made;
    }
    void forgetItems() const {
        for (const QAccessible::Id id : std::as_const(m_items)) {
            QAccessible::deleteAccessibleInterface(id);
        }
        m_items.clear();
    }

    GridBody& m_body;
    mutable QHash<qint64, QAccessible::Id> m_items;
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* const body = qobject_cast<GridBody*>(object);
    return body == nullptr ? nullptr : new BodyList(*body);
}

} // namespace

void installGridAccessibility() {
    static std::once_flag once;
    std::call_once(once, [] { QAccessible::installFactory(makeInterface); });
}

} // namespace yrw
