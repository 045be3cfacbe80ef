#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace yrw {

namespace detail {

/// What an event and its connections share, so that either may end first.
struct EventSlotsBase {
    virtual ~EventSlotsBase() = default;
    virtual void disconnect(int id) noexcept = 0;
};

} // namespace detail

/// A connection to an event; disconnects at its end. Moves, does not copy.
class [[nodiscard]] Connection {
public:
    Connection() noexcept = default;
    Connection(std::weak_ptr<detail::EventSlotsBase> slots_, int id) noexcept
        : m_slots(std::move(slots_)), m_id(id) {}
    Connection(Connection&&) noexcept = default;
    Connection& operator=(Connection&& other) noexcept {
        if (this != &other) {
            disconnect();
            m_slots = std::move(other.m_slots);
            m_id = other.m_id;
        }
        return *this;
    }
    ~Connection() { disconnect(); }

    void disconnect() noexcept {
        if (auto shared = m_slots.lock()) {
            shared->disconnect(m_id);
        }
        m_slots.reset();
    }

private:
    std::weak_ptr<detail::EventSlotsBase> m_slots;
    int m_id = 0;
};

/// A typed event that an object of the host or of the add-in raises.
///
/// Raising allocates nothing. A handler may connect, disconnect (itself or others) and even
/// destroy the event's owner while the event is being raised; handlers connected meanwhile are
/// called from the next time on, handlers disconnected meanwhile are not called any more, and
/// once the event is destroyed none is.
/// A handler's exception reaches whoever raised the event.
/// Thread: the user-interface thread only.
template <class... Args>
class Event {
public:
    using Handler = std::function<void(Args...)>;

    Event() : m_slots(std::make_shared<Slots>()) {}
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;
    ~Event() { m_slots->ended = true; }

    /// Connects a handler. The guard that comes back ends the connection.
    [[nodiscard]] Connection connect(Handler handler) {
        const int id = ++m_slots->lastId;
        m_slots->entries.push_back({id, std::make_shared<Handler>(std::move(handler))});
        return Connection(m_slots, id);
    }

    /// Calls the handlers in the order they were connected.
    void raise(Args... args) const {
        const std::shared_ptr<Slots> slots_ = m_slots;
        const RaiseScope scope(*slots_);
        const std::size_t count = slots_->entries.size();
        for (std::size_t i = 0; i < count && !slots_->ended; ++i) {
            // A copy of the pointer keeps the handler alive should it disconnect itself.
            const std::shared_ptr<Handler> handler = slots_->entries[i].handler;
            if (handler) {
                (*handler)(args...);
            }
        }
    }

    [[nodiscard]] bool isConnected() const noexcept {
        return std::any_of(m_slots->entries.begin(), m_slots->entries.end(),
                           [](const Entry& entry) { return entry.handler != nullptr; });
    }

private:
    struct Entry {
        int id;
        std::shared_ptr<Handler> handler;
    };
    struct Slots final : detail::EventSlotsBase {
        std::vector<Entry> entries;
        int lastId = 0;
        int raising = 0;
        bool ended = false; ///< the event is no more; what is left runs out

        void disconnect(int id) noexcept override {
            // What the handler holds ends last: its end may disconnect others from this event.
            std::shared_ptr<Handler> ending;
            for (Entry& entry : entries) {
                if (entry.id == id) {
                    ending = std::move(entry.handler);
                    entry.handler.reset();
                }
            }
            sweep();
        }
        void sweep() noexcept {
            if (raising == 0) {
                std::erase_if(entries, [](const Entry& entry) { return !entry.handler; });
            }
        }
    };
    struct RaiseScope {
        explicit RaiseScope(Slots& slots_) : slotsRaised(slots_) { ++slotsRaised.raising; }
        ~RaiseScope() {
            --slotsRaised.raising;
            slotsRaised.sweep();
        }
        RaiseScope(const RaiseScope&) = delete;
        RaiseScope& operator=(const RaiseScope&) = delete;
        Slots& slotsRaised;
    };

    std::shared_ptr<Slots> m_slots;
};

} // namespace yrw
