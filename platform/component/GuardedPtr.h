#pragma once

#include "platform/component/Counted.h"

#include <QObject>
#include <QPointer>

namespace yrw {

/// Points to an object of the host that the host owns: a plain interface (`T`) which is also a Qt
/// object. Becomes nothing when the host destroys it; following it then raises
/// `kErrorObjectRequired`. `T` has `QObject* asQObject()`.
/// Thread: the user-interface thread.
template <class T>
class GuardedPtr {
public:
    GuardedPtr() = default;
    // NOLINTNEXTLINE(google-explicit-constructor): stands wherever a pointer could
    GuardedPtr(T* object) : m_object(object), m_guard(object ? object->asQObject() : nullptr) {}

    [[nodiscard]] T* get() const noexcept { return m_guard.isNull() ? nullptr : m_object; }
    T* operator->() const { return required(); }
    T& operator*() const { return *required(); }
    explicit operator bool() const noexcept { return get() != nullptr; }
    void reset() noexcept { *this = GuardedPtr(); }

private:
    T* required() const {
        if (m_guard.isNull()) [[unlikely]] {
            detail::raiseObjectRequired();
        }
        return m_object;
    }

    T* m_object = nullptr;
    QPointer<QObject> m_guard;
};

} // namespace yrw
