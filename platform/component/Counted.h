#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

namespace yrw {

namespace detail {
/// Raises `kErrorObjectRequired` (424): a member of nothing was asked for.
[[noreturn]] void raiseObjectRequired();
} // namespace detail

/// Base of every object that is shared by counting.
///
/// Lifetime: born with a count of zero; the first `Ref` makes it one, the last `Ref` to let go
/// deletes it. Never take a `Ref` to `this` in a constructor: letting it go would delete the
/// half-built object.
/// Thread: the user-interface thread only; the count is not atomic.
class Counted {
public:
    Counted() = default;
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

    void addRef() const noexcept { ++m_count; }
    void release() const noexcept;
    /// Number of references held right now; for tests and for "am I the last?" decisions.
    [[nodiscard]] int referenceCount() const noexcept { return m_count; }

protected:
    virtual ~Counted();

private:
    mutable int m_count = 0;
};

/// Holds one reference to a counted object, or none. Following one that holds none raises
/// `kErrorObjectRequired`; `get` answers nothing.
///
/// Implicitly made from a raw pointer, so that a factory can `return Ref<T>(new T)` and an
/// interface call can pass `this` where that is safe. Interfaces derive virtually from `Counted`.
template <class T>
class Ref {
public:
    Ref() noexcept = default;
    // Implicit on purpose: a reference stands wherever a pointer could.
    // NOLINTBEGIN(google-explicit-constructor)
    Ref(std::nullptr_t) noexcept {}
    Ref(T* object) noexcept : m_object(object) { retain(); }
    Ref(const Ref& other) noexcept : m_object(other.m_object) { retain(); }
    Ref(Ref&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    template <class U>
    requires std::is_convertible_v<U*, T*> Ref(const Ref<U>& other)
    noexcept : m_object(other.get()) { retain(); }
    // NOLINTEND(google-explicit-constructor)
    ~Ref() { drop(); }

    Ref& operator=(Ref other) noexcept {
        std::swap(m_object, other.m_object);
        return *this;
    }

    [[nodiscard]] T* get() const noexcept { return m_object; }
    T* operator->() const { return required(); }
    T& operator*() const { return *required(); }
    explicit operator bool() const noexcept { return m_object != nullptr; }
    void reset() noexcept { *this = Ref(); }

    friend bool operator==(const Ref& a, const Ref& b) noexcept { return a.get() == b.get(); }
    friend bool operator==(const Ref& a, std::nullptr_t) noexcept { return a.get() == nullptr; }

private:
    T* required() const {
        if (m_object == nullptr) [[unlikely]] {
            detail::raiseObjectRequired();
        }
        return m_object;
    }
    void retain() const noexcept {
        if (m_object != nullptr) {
            m_object->addRef();
        }
    }
    void drop() noexcept {
        if (m_object != nullptr) {
            std::exchange(m_object, nullptr)->release();
        }
    }

    T* m_object = nullptr;
};

/// Makes a counted object and returns the first reference to it.
template <class T, class... Args>
[[nodiscard]] Ref<T> make(Args&&... args) {
    return Ref<T>(new T(std::forward<Args>(args)...));
}

/// Asks an object for another of its interfaces; nothing when it does not have it (or is nothing).
template <class T, class U>
[[nodiscard]] Ref<T> query(const Ref<U>& object) {
    return Ref<T>(dynamic_cast<T*>(object.get()));
}
template <class T, class U>
[[nodiscard]] Ref<T> query(U* object) {
    return Ref<T>(dynamic_cast<T*>(object));
}

} // namespace yrw
