#include "platform/toolbar/Toolbar.h"

#include "platform/component/AutomationError.h"
#include "platform/files/FileSystem.h"
#include "platform/toolbar/BandGrip.h"
#include "platform/toolbar/ToolbarPrivate.h"

#include <QContextMenuEvent>
#include <QCursor>
#include <QFile>
#include <QPointer>
#include <QShortcut>

namespace yrw {

Toolbar::Toolbar(QWidget* parent) : QWidget(parent), m_private(std::make_unique<Private>(*this)) {
    setAccessibleName(tr("Toolbar"));
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    auto* const jump = new QShortcut(QKeySequence(Qt::Key_F10), this);
    connect(jump, &QShortcut::activated, this, [this] { m_private->focusFirst(); });
}

Toolbar::~Toolbar() = default;

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
    m_private->load(parseToolbarLayout(json, nameForErrors));
}

QObject* Toolbar::asQObject() {
    return this;
}

int Toolbar::bandCount() const {
    return static_cast<int>(m_private->bands().size());
}

IBand* Toolbar::bandAt(int index) const {
    return index >= 0 && index < bandCount() ? m_private->bands()[size_t(index)].get() : nullptr;
}

IBand* Toolbar::findBand(const QString& key) const {
    return m_private->find(key);
}

IBand& Toolbar::addBand(const QString& key, bool popup) {
    if (m_private->find(key) != nullptr) {
        throw AutomationError(kErrorInvalidOperation, QStringLiteral("YRW.Toolbar"),
                              QStringLiteral("There is a band '%1' already.").arg(key));
    }
    return m_private->add(key, popup);
}

void Toolbar::removeBand(const QString& key) {
    m_private->remove(key);
}

ITool* Toolbar::findToolById(int id) const {
    for (const auto& band : m_private->bands()) {
        for (const auto& tool : band->tools()) {
            if (tool->id() == id) {
                return tool.get();
            }
        }
    }
    return nullptr;
}

ITool* Toolbar::findTool(const QString& key) const {
    for (const auto& band : m_private->bands()) {
        if (ITool* const tool = band->findTool(key)) {
            return tool;
        }
    }
    return nullptr;
}

void Toolbar::recalcLayout() {
    m_private->rebuild();
}

void Toolbar::refresh() {
    repaint();
}

void Toolbar::popup(const QString& bandKey) {
    popupAt(bandKey, m_private->clickedPlace().value_or(QCursor::pos()));
}

void Toolbar::popupAt(const QString& bandKey, const QPoint& globalPosition) {
    if (m_private->find(bandKey) != nullptr) {
        m_private->popup(bandKey, globalPosition);
    }
}

void Toolbar::activate(const QString& toolKey) {
    if (ITool* const tool = findTool(toolKey); tool != nullptr && tool->isEnabled()) {
        Click.raise(*tool);
    }
}

bool Toolbar::leave() {
    return m_private->leave();
}

QString Toolbar::arrangement() const {
    return m_private->arrangement();
}

void Toolbar::setArrangement(const QString& text) {
    m_private->setArrangement(text);
}

int Toolbar::heightForWidth(int) const {
    return m_private->height();
}

QSize Toolbar::sizeHint() const {
    return {m_private->preferredWidth(), m_private->height()};
}

QSize Toolbar::minimumSizeHint() const {
    return {0, m_private->height()};
}

void Toolbar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_private->arrange();
}

void Toolbar::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // Later, when their owner is on the screen too.
    QMetaObject::invokeMethod(
        this, [this] { m_private->showFloats(); }, Qt::QueuedConnection);
}

void Toolbar::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    m_private->showFloats();
}

void Toolbar::contextMenuEvent(QContextMenuEvent* event) {
    const QWidget* const at = childAt(event->pos());
    if (at == nullptr || qobject_cast<const BandBar*>(at) != nullptr ||
        qobject_cast<const BandGrip*>(at) != nullptr ||
        event->reason() == QContextMenuEvent::Keyboard) {
        m_private->menuWanted(event->globalPos());
    }
}

} // namespace yrw
