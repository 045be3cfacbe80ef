#pragma once

#include "dialogs/frmReminder.h"

#include <QPointer>

#include <array>
#include <map>
#include <vector>

namespace yrw {

/// The reminders on screen, by their ids, with the popup of each and whose it is. One that is here
/// is not shown a second time in this process.
/// Thread: the user-interface thread.
class ShownReminders {
public:
    [[nodiscard]] bool isShown(qint64 reminderID) const;
    [[nodiscard]] bool isEmpty() const noexcept { return m_shown.empty(); }
    void add(qint64 reminderID, frmReminder* popup, const void* owner);
    /// No error when it is not there.
    void remove(qint64 reminderID);
    /// The place of the cascade that the fewest popups have; the lowest of several.
    [[nodiscard]] int freePlace() const;
    /// The popup that belongs in front: the one that the user works in, else the oldest promise.
    /// Nothing when none is open.
    [[nodiscard]] frmReminder* front() const;
    /// Puts the popups that one sees at a time into their order: the older the promise, the nearer
    /// to the front; `front` above all.
    void putInOrder() const;
    [[nodiscard]] int count() const noexcept { return static_cast<int>(m_shown.size()); }
    /// The popups of one owner by their ids.
    [[nodiscard]] std::map<qint64, QPointer<frmReminder>> popupsOf(const void* owner) const;
    /// Unloads the popups of one owner; each takes itself out.
    void unloadAllOf(const void* owner);

private:
    struct Shown {
        QPointer<frmReminder> popup;
        const void* owner;
        int place;
    };
    std::map<qint64, Shown> m_shown;
    std::array<int, frmReminder::kPlaces> m_places{}; ///< popups that lie at each place
};

} // namespace yrw
