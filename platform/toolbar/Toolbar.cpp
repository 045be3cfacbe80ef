#include "platform/toolbar/Toolbar.h"

#include "platform/component/AutomationError.h"
#include "platform/files/FileSystem.h"
#include "platform/toolbar/BandDock.h"
#include "platform/toolbar/BandGrip.h"
#include "platform/toolbar/BandMenu.h"

#include <QContextMenuEvent>
#include <QCursor>
#include <QFile>
#include <QPointer>
#include <QShortcut>

namespace yrw {

Toolbar::Toolbar(QWidget* parent)
    : QWidget(parent), m_bands(std::make_unique<BandList>(
                           [this](const ToolBand& band, const BandTool* tool, ToolChange change) {
                               changed(band, tool, change);
                           })),
      m_dock(std::make_unique<BandDock>(*this, *this, *m_bands)) {
    setAccessibleName(tr("Toolbar"));
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    auto* const jump = new QShortcut(QKeySequence(Qt::Key_F10), this);
    connect(jump, &QShortcut::activated, this, [this] { m_dock->focusFirst(); });
}

Toolbar::~Toolbar() = default;

void Toolbar::changed(const ToolBand& band, const BandTool* tool, ToolChange change) {
    if (m_loading) {
        return;
    }
    if (change == ToolChange::Layout && !band.isPopup()) {
        m_dock->rebuild();
    } else {
        m_dock->sync(band, tool);
    }
}

void Toolbar::loadLayout(const FileSystem& files, const QString& path) {
    QFile file(files.resolve(path));
    if (!file.open(QIODevice::ReadOnly)) {
        throw AutomationError(
            kErrorLayout, QStringLiteral("YRW.Toolbar"),
            QStringLiteral("%1 could not be read: %2").arg(file.fileName(), file.errorString()));
    }
    loadLayoutText(file.readAll(), file.fileName());
}

void Toolbar::loadLayoutText(const QByteArray& json, const QString& nameForErrors) {
    const QList<BandLayout> layout = parseToolbarLayout(json, nameForErrors);
    m_loading = true;
    m_dock->end();
    m_bands->load(layout);
    m_loading = false;
    m_dock->rebuild();
}

QObject* Toolbar::asQObject() {
    return this;
}

int Toolbar::bandCount() const {
    return static_cast<int>(m_bands->all().size());
}

IBand* Toolbar::bandAt(int index) const {
    return index >= 0 && index < bandCount() ? m_bands->all()[size_t(index)].get() : nullptr;
}

IBand* Toolbar::findBand(const QString& key) const {
    return m_bands->find(key);
}

IBand& Toolbar::addBand(const QString& key, bool popup) {
    if (m_bands->find(key) != nullptr) {
        throw AutomationError(kErrorInvalidOperation, QStringLiteral("YRW.Toolbar"),
                              QStringLiteral("There is a band '%1' already.").arg(key));
    }
    return m_bands->add(key, popup);
}

void Toolbar::removeBand(const QString& key) {
    if (const ToolBand* const band = m_bands->find(key)) {
        m_dock->end();
        m_bands->remove(*band);
        m_dock->rebuild();
    }
}

ITool* Toolbar::findToolById(int id) const {
    return m_bands->findTool([id](const ITool& tool) { return tool.id() == id; });
}

ITool* Toolbar::findTool(const QString& key) const {
    return m_bands->findTool(
        [&key](const ITool& tool) { return tool.key().compare(key, Qt::CaseInsensitive) == 0; });
}

void Toolbar::recalcLayout() {
    m_dock->rebuild();
}

void Toolbar::refresh() {
    repaint();
}

void Toolbar::popup(const QString& bandKey) {
    popupAt(bandKey, m_dock->clickedPlace().value_or(QCursor::pos()));
}

void Toolbar::popupAt(const QString& bandKey, const QPoint& globalPosition) {
    ToolBand* const opening = m_bands->find(bandKey);
    if (opening == nullptr) {
        return;
    }
    const QPointer<Toolbar> alive(this);
    BandOpen.raise(*opening);
    // A handler may have taken the band, or the toolbar, away.
    const ToolBand* const band = alive.isNull() ? nullptr : m_bands->find(bandKey);
    if (band == nullptr) {
        return;
    }
    std::vector<const BandTool*> tools;
    for (const auto& tool : band->tools()) {
        tools.push_back(tool.get());
    }
    const MenuChoice choice = chooseTool(
        tools, {band->key(), band->caption(), tr("Commands of the menu %1").arg(band->caption())},
        globalPosition);
    ToolBand* const after = alive.isNull() ? nullptr : m_bands->find(bandKey);
    if (after != nullptr && !choice.toolKey.isEmpty()) {
        m_dock->toolUsed(*after, choice.toolKey, choice.entry);
    }
}

void Toolbar::activate(const QString& toolKey) {
    if (ITool* const tool = findTool(toolKey); tool != nullptr && tool->isEnabled()) {
        Click.raise(*tool);
    }
}

bool Toolbar::leave() {
    return m_dock->leave();
}

QString Toolbar::arrangement() const {
    return m_bands->arrangement();
}

void Toolbar::setArrangement(const QString& text) {
    m_bands->setArrangement(text);
    m_dock->settle();
}

int Toolbar::heightForWidth(int) const {
    return m_dock->height();
}

QSize Toolbar::sizeHint() const {
    return {m_dock->preferredWidth(), m_dock->height()};
}

QSize Toolbar::minimumSizeHint() const {
    return {0, m_dock->height()};
}

void Toolbar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_dock->arrange();
}

void Toolbar::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // Later, when their owner is on the screen too.
    QMetaObject::invokeMethod(
        this, [this] { m_dock->showFloats(); }, Qt::QueuedConnection);
}

void Toolbar::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    m_dock->showFloats();
}

void Toolbar::contextMenuEvent(QContextMenuEvent* event) {
    const QWidget* const at = childAt(event->pos());
    if (at == nullptr || qobject_cast<const BandBar*>(at) != nullptr ||
        qobject_cast<const BandGrip*>(at) != nullptr ||
        event->reason() == QContextMenuEvent::Keyboard) {
        m_dock->menuWanted(event->globalPos());
    }
}

} // namespace yrw
