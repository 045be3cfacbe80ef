#include "host/desk/GridPanel.h"

#include "platform/forms/ElidedLabel.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QVBoxLayout>

namespace yrw {

namespace {

constexpr int kFilterDelayMs = 250;

} // namespace

GridPanel::GridPanel(const PanelNames& names, const QList<GridLayout>& layouts,
                     DeskGridController::ObjectMaker makeObject, QWidget* parent)
    : QWidget(parent), m_grid(new RecordGrid(this)),
      m_controller(new DeskGridController(*m_grid, layouts, std::move(makeObject), this)) {
    m_grid->setObjectName(u"dbg" + names.position);
    m_grid->setAccessibleName(names.accessibleName);
    m_grid->setAllowAddNew(true);
    m_filterDelay.setSingleShot(true);
    m_filterDelay.setInterval(kFilterDelayMs);
    buildHeading(names);
    connect(&m_filterDelay, &QTimer::timeout, this, &GridPanel::applyFilter);
    connect(m_filter, &QLineEdit::textChanged, this, [this] { m_filterDelay.start(); });
    connect(m_filter, &QLineEdit::returnPressed, this, &GridPanel::applyFilter);
    connect(m_layouts, &QComboBox::textActivated, m_controller, &DeskGridController::loadLayout);
    connect(m_controller, &DeskGridController::layoutLoaded, m_layouts, &QComboBox::setCurrentText);
    connect(m_controller, &DeskGridController::rowsRead, this, &GridPanel::showCount);
}

GridPanel::~GridPanel() = default;

void GridPanel::buildHeading(const PanelNames& names) {
    m_title = new ElidedLabel(names.title, this);
    m_title->setObjectName(QStringLiteral("lbl%1Title").arg(names.position));
    QFont bold = m_title->font();
    bold.setBold(true);
    m_title->setFont(bold);
    m_count = new QLabel(this);
    m_count->setObjectName(QStringLiteral("lbl%1Count").arg(names.position));
    m_filter = new QLineEdit(this);
    m_filter->setObjectName(QStringLiteral("txt%1Filter").arg(names.position));
    m_filter->setAccessibleName(QStringLiteral("Filter of the %1").arg(names.title.toLower()));
    m_filter->setPlaceholderText(QStringLiteral("Filter"));
    m_filter->setClearButtonEnabled(true);
    m_filter->setMaximumWidth(240);
    m_filter->installEventFilter(this);
    m_layouts = new QComboBox(this);
    m_layouts->setObjectName(QStringLiteral("cbo%1Layout").arg(names.position));
    m_layouts->setAccessibleName(QStringLiteral("Layout of the %1").arg(names.title.toLower()));
    m_layouts->addItems(m_controller->layoutNames());

    auto* heading = new QHBoxLayout;
    heading->addWidget(m_title);
    heading->addWidget(m_count);
    heading->addStretch(1);
    heading->addWidget(m_filter, 1);
    heading->addWidget(m_layouts);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->addLayout(heading);
    all->addWidget(m_grid, 1);
}

void GridPanel::setTitle(const QString& title) {
    m_title->setText(title);
}

void GridPanel::focusFilter() {
    m_filter->setFocus(Qt::ShortcutFocusReason);
    m_filter->selectAll();
}

void GridPanel::clearFilter() {
    m_filter->clear();
    applyFilter();
}

void GridPanel::applyFilter() {
    m_filterDelay.stop();
    m_controller->setFilterText(m_filter->text().trimmed());
}

void GridPanel::showCount(qint64 rows) {
    const QString number = QLocale(QLocale::English).toString(rows);
    m_count->setText(m_controller->filterText().isEmpty() ? number : QString(number + u" found"));
}

bool GridPanel::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_filter && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Escape) {
            clearFilter();
            m_grid->setFocus();
            return true;
        }
        if (key == Qt::Key_Down) {
            applyFilter();
            m_grid->setFocus();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace yrw
