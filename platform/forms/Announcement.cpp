#include "platform/forms/Announcement.h"

#include <QAccessibleWidget>
#include <QPointer>
#include <QWidget>

namespace yrw {

namespace {

const QString kName = QStringLiteral("announcement");

/// An announcement is a widget without size whose name are the words.
QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    if (object == nullptr || !object->isWidgetType() || object->objectName() != kName) {
        return nullptr;
    }
    return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Notification);
}

} // namespace

void announce(QWidget& window, const QString& words) {
    static const bool isInstalled = [] {
        QAccessible::installFactory(&makeInterface);
        return true;
    }();
    Q_UNUSED(isInstalled)
    delete window.findChild<QWidget*>(kName, Qt::FindDirectChildrenOnly);
    auto* said = new QWidget(&window);
    said->setObjectName(kName);
    said->setAccessibleName(words);
    said->setFocusPolicy(Qt::NoFocus);
    said->setAttribute(Qt::WA_TransparentForMouseEvents);
    said->resize(0, 0);
    said->show(); // which tells readers that a notification shows
}

} // namespace yrw
