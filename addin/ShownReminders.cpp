#include "addin/ShownReminders.h"

#include <QApplication>

#include <algorithm>
#include <iterator>

namespace yrw {

bool ShownReminders::isShown(qint64 reminderID) const {
    const auto found = m_shown.find(reminderID);
    return found != m_shown.end() && found->second.popup; // its owner may have ended it
}

void ShownReminders::add(qint64 reminderID, frmReminder* popup, const void* owner) {
    remove(reminderID);
    const int place = freePlace();
    m_shown[reminderID] = {popup, owner, place};
    ++m_places[std::size_t(place)];
}

void ShownReminders::remove(qint64 reminderID) {
    if (const auto found = m_shown.find(reminderID); found != m_shown.end()) {
        --m_places[std::size_t(found->second.place)];
        m_shown.erase(found);
    }
}

int ShownReminders::freePlace() const {
    const auto least = std::min_element(m_places.begin(), m_places.end());
    return static_cast<int>(std::distance(m_places.begin(), least));
}

frmReminder* ShownReminders::front() const {
    const QWidget* const active = QApplication::activeWindow();
    frmReminder* oldest = nullptr;
    for (const auto& [id, shown] : m_shown) {
        frmReminder* const popup = shown.popup;
        if (popup == nullptr || popup->isUnloaded()) {
            continue;
        }
        if (popup == active) {
            return popup;
        }
        if (oldest == nullptr || popup->due() < oldest->due()) {
            oldest = popup;
        }
    }
    return oldest;
}

void ShownReminders::putInOrder() const {
    std::vector<frmReminder*> popups;
    for (const auto& [id, shown] : m_shown) {
        if (shown.popup && !shown.popup->isUnloaded()) {
            popups.push_back(shown.popup);
        }
    }
    const auto isOlder = [](const frmReminder* a, const frmReminder* b) {
        return a->due() < b->due();
    };
    std::stable_sort(popups.begin(), popups.end(), isOlder);
    popups.resize(std::min(popups.size(), m_places.size()));
    for (auto popup = popups.rbegin(); popup != popups.rend(); ++popup) {
        (*popup)->raise();
    }
    if (frmReminder* const first = front()) {
        first->bringToFront();
    }
}

std::map<qint64, QPointer<frmReminder>> ShownReminders::popupsOf(const void* owner) const {
    std::map<qint64, QPointer<frmReminder>> popups;
    for (const auto& [id, shown] : m_shown) {
        if (shown.owner == owner && shown.popup) {
            popups[id] = shown.popup;
        }
    }
    return popups;
}

void ShownReminders::unloadAllOf(const void* owner) {
    for (const auto& [id, popup] : popupsOf(owner)) {
        if (popup) {
            popup->unload();
        }
    }
}

} // namespace yrw
