#include "host/desk/WindowMemory.h"

#include "platform/settings/SettingsStore.h"

namespace yrw {

namespace {

const QString kApplication = QStringLiteral("YarrowenDesk");
const QString kSection = QStringLiteral("Window");

} // namespace

QString WindowMemory::text(const QString& key) const {
    return m_store.get(kApplication, kSection, key, {});
}

void WindowMemory::setText(const QString& key, const QString& text) {
    m_store.save(kApplication, kSection, key, text);
}

QByteArray WindowMemory::state(const QString& key) const {
    return QByteArray::fromBase64(text(key).toLatin1());
}

void WindowMemory::setState(const QString& key, const QByteArray& state) {
    setText(key, QString::fromLatin1(state.toBase64()));
}

} // namespace yrw
