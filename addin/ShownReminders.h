#pragma once

#include "platform/forms/Form.h"

#include <QPointer>

#include <map>
#include <utility>
#include <vector>

namespace yrw {

/// The reminders on screen, by their ids, with the popup of each and whose it is. One that is here
/// is not shown a second time in this process.
/// Thread: the user-interface thread.
class ShownReminders {
public:
    [[nodiscard]] bool isShown(qint64 reminderID) const {
        const auto found = m_shown.find(reminderID);
        return found != m_shown.end() && found->second.popup; // its owner may have ended it
    }
    void add(qint64 reminderID, Form* popup, const void* owner) {
        m_shown[reminderID] = {popup, owner};
    }
    /// No error when it is not there.
    void remove(qint64 reminderID) { m_shown.erase(reminderID); }
    /// Unloads the popups of one owner; each takes itself out.
    void unloadAllOf(const void* owner) {
        std::vector<QPointer<Form>> popups;
        for (const auto& [id, shown] : m_shown) {
            if (shown.owner == owner) {
                popups.push_back(shown.popup);
            }
        }
        for (const QPointer<Form>& popup : popups) {
            if (popup) {
                popup->unload();
            }
        }
    }

private:
    struct Shown {
        QPointer<Form> popup;
        const void* owner;
    };
    std::map<qint64, Shown> m_shown;
};

} // namespace yrw
