#include "platform/toolbar/BandBar.h"

#include "platform/forms/Twips.h"
#include "platform/toolbar/BandGrip.h"
#include "platform/toolbar/BandMenu.h"
#include "platform/toolbar/ToolButton.h"
#include "platform/toolbar/ToolCombo.h"

#include <QPainter>
#include <QPointer>

namespace yrw {

namespace {

constexpr int kGripWidth = 10;
constexpr int kMargin = 2;
constexpr int kSeparatorWidth = 9;

} // namespace

BandBar::BandBar(ToolBand& band, BandEvents& events, QWidget* parent)
    : QWidget(parent), m_band(band), m_events(events), m_overflow(new QToolButton(this)),
      m_grip(new BandGrip(band, events, this)) {
    setObjectName(band.key());
    setAccessibleName(band.shownCaption());
    m_grip->setObjectName(band.key() + u"Grip");
    for (const auto& tool : band.tools()) {
        if (tool->isVisible()) {
            QWidget* const control =
                tool->kind() == ToolKind::Combo ? makeCombo(*tool) : makeButton(*tool);
            m_items.push_back({tool.get(), control, tool->beginsGroup() && !m_items.empty()});
        }
    }
    m_overflow->setObjectName(band.key() + u"Overflow");
    m_overflow->setAccessibleName(tr("More tools of %1").arg(accessibleName()));
    m_overflow->setToolTip(tr("More tools"));
    m_overflow->setText(QStringLiteral("»"));
    m_overflow->setAutoRaise(true);
    m_overflow->setFocusPolicy(Qt::TabFocus);
    m_overflow->hide();
    connect(m_overflow, &QToolButton::clicked, this, &BandBar::openOverflow);
    sync(nullptr);
}

QWidget* BandBar::makeButton(BandTool& tool) {
    auto* const button = new ToolButton(m_events, this);
    connect(button, &QToolButton::clicked, this,
            [this, key = tool.key()] { m_events.toolUsed(m_band, key, 0); });
    return button;
}

QWidget* BandBar::makeCombo(BandTool& tool) {
    auto* const combo = new ToolCombo(m_events, m_band, tool.key(), this);
    combo->setFixedWidth(twipsToPixels(tool.data().widthTwips));
    connect(combo, &QComboBox::activated, this, [this, combo, key = tool.key()](int index) {
        const QPointer<BandBar> self(this);
        const ToolCombo::Source source = combo->takeSource();
        if (source == ToolCombo::Source::ClosedList) {
            return;
        }
        BandEvents& events = m_events;
        events.toolUsed(m_band, key, index + 1);
        if (source == ToolCombo::Source::List && !self.isNull()) {
            events.comboDone();
        }
    });
    return combo;
}

void BandBar::sync(const BandTool* tool) {
    for (const Item& item : m_items) {
        if (tool == nullptr || tool == item.tool) {
            syncItem(item);
        }
    }
}

void BandBar::syncItem(const Item& item) {
    item.control->setObjectName(item.tool->key());
    item.control->setAccessibleName(item.tool->plainCaption());
    item.control->setToolTip(item.tool->shownToolTip());
    item.control->setAccessibleDescription(item.tool->shownToolTip());
    item.control->setEnabled(item.tool->isEnabled());
    if (auto* const combo = qobject_cast<ToolCombo*>(item.control)) {
        combo->show(item.tool->list(), item.tool->text());
    } else if (auto* const button = qobject_cast<ToolButton*>(item.control)) {
        button->show(*item.tool);
    }
}

int BandBar::widthOf(const Item& item, bool first) {
    return item.control->sizeHint().width() + (item.separated && !first ? kSeparatorWidth : 0);
}

int BandBar::preferredWidth() const {
    return gripWidth() + toolsWidth() + kMargin;
}

int BandBar::toolsWidth() const {
    int width = 0;
    for (const Item& item : m_items) {
        width += widthOf(item, &item == &m_items.front());
    }
    return width;
}

int BandBar::gripWidth() const {
    return m_floating ? kMargin : kGripWidth;
}

void BandBar::setFloating(bool floating) {
    m_floating = floating;
    m_grip->setVisible(!floating);
}

QSize BandBar::floatingSize() const {
    return {toolsWidth() + 2 * kMargin, sizeHint().height()};
}

int BandBar::leastWidth() const {
    return qMin(preferredWidth(), gripWidth() + m_overflow->sizeHint().width() + kMargin);
}

QSize BandBar::sizeHint() const {
    int height = m_overflow->sizeHint().height();
    for (const Item& item : m_items) {
        height = qMax(height, item.control->sizeHint().height());
    }
    return {preferredWidth(), height + 2 * kMargin};
}

std::optional<QPoint> BandBar::placeBelow(const QString& toolKey) const {
    for (const Item& item : m_items) {
        if (item.tool->key().compare(toolKey, Qt::CaseInsensitive) == 0) {
            const QWidget& shown = item.control->isHidden() ? *m_overflow : *item.control;
            return shown.mapToGlobal(QPoint(0, shown.height()));
        }
    }
    return std::nullopt;
}

QList<QWidget*> BandBar::focusable() const {
    QList<QWidget*> controls;
    for (const Item& item : m_items) {
        if (item.control->isEnabled() && !item.control->isHidden()) {
            controls.append(item.control);
        }
    }
    if (!m_overflow->isHidden()) {
        controls.append(m_overflow);
    }
    return controls;
}

void BandBar::arrange() {
    const bool fits = preferredWidth() <= width();
    const int end = width() - kMargin - (fits ? 0 : m_overflow->sizeHint().width());
    int x = gripWidth();
    m_grip->setGeometry(0, kMargin, kGripWidth, height() - 2 * kMargin);
    bool full = false;
    m_lines.clear();
    for (const Item& item : m_items) {
        const bool first = &item == &m_items.front();
        const int wanted = widthOf(item, first);
        full = full || x + wanted > end;
        item.control->setVisible(!full);
        if (full) {
            continue;
        }
        if (item.separated) {
            m_lines.push_back(x + kSeparatorWidth / 2);
            x += kSeparatorWidth;
        }
        const QSize size = item.control->sizeHint();
        item.control->setGeometry(x, (height() - size.height()) / 2, size.width(), size.height());
        x += size.width();
    }
    m_overflow->setVisible(!fits);
    const QSize size = m_overflow->sizeHint();
    m_overflow->setGeometry(end, kMargin, size.width(), height() - 2 * kMargin);
}

void BandBar::openOverflow() {
    const QPointer<BandBar> self(this);
    std::vector<const BandTool*> hidden;
    for (const Item& item : m_items) {
        if (item.control->isHidden()) {
            hidden.push_back(item.tool);
        }
    }
    for (const BandTool* const tool : hidden) {
        if (tool->kind() == ToolKind::Combo) {
            m_events.comboDropped(m_band, tool->key()); // its entries are shown, as when it drops
        }
        if (self.isNull()) {
            return; // a handler changed the band
        }
    }
    ToolBand& band = m_band;
    BandEvents& events = m_events;
    const MenuChoice choice = chooseTool(hidden,
                                         {m_overflow->objectName(), m_overflow->accessibleName(),
                                          tr("Tools that the toolbar has no room for")},
                                         m_overflow->mapToGlobal(QPoint(0, m_overflow->height())));
    if (!self.isNull() && !choice.toolKey.isEmpty()) {
        events.toolUsed(band, choice.toolKey, choice.entry);
    }
}

void BandBar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

void BandBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Mid));
    for (const int x : m_lines) {
        painter.drawLine(x, 2 * kMargin, x, height() - 2 * kMargin - 1);
    }
}

} // namespace yrw
