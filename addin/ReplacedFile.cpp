#include "addin/ReplacedFile.h"

#include "addin/INeighbour.h"
#include "addin/NotesWindows.h"
#include "framework/ErrorGuards.h"
#include "framework/Services.h"
#include "platform/forms/Form.h"
#include "platform/prompt/Prompt.h"
#include "store/NotesContext.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace yrw {

namespace {

constexpr int kMinuteMs = 60'000;
constexpr int kSoonMs = 200;

const QString kTitle = QStringLiteral("Notes Database Replaced");

QString whatHappenedTo(const QString& path) {
    const QString what = QFileInfo::exists(path)
                             ? QStringLiteral("Another file was put in the place of the notes "
                                              "database %1 while it was open.")
                             : QStringLiteral("The notes database %1 was deleted or renamed while "
                                              "it was open.");
    return what.arg(path) + QStringLiteral(" Nothing is written any more; text that could not be "
                                           "saved is kept as a draft.\r\r");
}

} // namespace

ReplacedFile::ReplacedFile(NotesContext& context, const std::vector<INeighbour*>& active)
    : m_context(context), m_active(active) {
    m_minute.setObjectName(QStringLiteral("tmrReplacedFile"));
    m_minute.setInterval(kMinuteMs);
    m_minute.setParent(this);
    m_soon.setSingleShot(true);
    const auto lookQuietly = [this] { ignoreErrors([this] { look(); }); };
    connect(&m_minute, &QTimer::timeout, this, lookQuietly);
    connect(&m_soon, &QTimer::timeout, this, lookQuietly);
}

void ReplacedFile::start() {
    if (!m_minute.isActive()) {
        m_minute.start();
    }
}

void ReplacedFile::stop() {
    m_minute.stop();
    m_soon.stop();
    forget();
}

void ReplacedFile::forget() noexcept {
    m_isTold = false;
    m_hasDeclined = false;
    m_hasAgreed = false;
}

bool ReplacedFile::isReplaced() const {
    const Ref<dao::Database> database = m_context.database();
    return database && database->isReplaced();
}

bool ReplacedFile::isWindowOpen() const {
    return std::any_of(m_active.begin(), m_active.end(),
                       [](INeighbour* addIn) { return addIn->notesWindows().isOpen(); });
}

/// The add-in whose window the question goes over; nothing while that cannot be.
INeighbour* ReplacedFile::whoCanAsk() const {
    const auto onTop = std::find_if(m_active.begin(), m_active.end(), [](INeighbour* addIn) {
        return addIn->notesWindows().isOnTop();
    });
    if (onTop != m_active.end()) {
        return *onTop;
    }
    return m_active.empty() || isWindowOpen() || Form::isModalOpen() ? nullptr : m_active.front();
}

void ReplacedFile::look(bool again) {
    if (m_hasAgreed || !isReplaced()) {
        return;
    }
    Form::keepWhatWasTyped();
    m_hasDeclined = m_hasDeclined && !again;
    if (m_hasDeclined) {
        return;
    }
    if (INeighbour* const addIn = whoCanAsk()) {
        ask(*addIn);
    } else {
        wait();
    }
}

void ReplacedFile::wait() {
    if (isWindowOpen() && !std::exchange(m_isTold, true)) {
        m_context.services().prompt.message(
            whatHappenedTo(m_context.database()->Name()) +
                QStringLiteral("You are asked how to go on when the window that is open over your "
                               "notes is closed."),
            kTitle, PromptIcon::Exclamation);
    }
    m_soon.start(kSoonMs);
}

void ReplacedFile::ask(INeighbour& addIn) {
    const Ref<INeighbour> keep(&addIn);
    const Ref<dao::Database> database = m_context.database();
    m_isTold = true;
    const PromptAnswer answer = m_context.services().prompt.question(
        whatHappenedTo(database->Name()) +
            QStringLiteral("Do you want to go on with what is there now?"),
        kTitle, PromptButtons::YesNo, PromptIcon::Exclamation, PromptAnswer::Yes);
    if (m_context.database() != database) {
        return; // closed while the question was on screen
    }
    m_hasDeclined = answer != PromptAnswer::Yes;
    if (m_hasDeclined) {
        return;
    }
    if (!isWindowOpen()) {
        addIn.goOnWithFileThere();
        return;
    }
    m_hasAgreed = true; // `windowClosed` does the rest
    if (!addIn.notesWindows().unloadAll()) {
        m_hasAgreed = false;
        m_hasDeclined = true; // with text that could be kept nowhere
    }
}

bool ReplacedFile::tellsOf(const AutomationError& error) {
    if (error.number() != kErrorFileReplaced || !m_minute.isActive() || m_hasDeclined) {
        return false;
    }
    if (m_hasAgreed) {
        return true;
    }
    m_soon.start(0);
    const bool canAsk = whoCanAsk() != nullptr;
    m_isTold = m_isTold || !canAsk; // by the report
    return canAsk;
}

bool ReplacedFile::windowClosed(INeighbour& addIn) {
    if (!m_hasAgreed) {
        look();
        return false;
    }
    if (isWindowOpen()) {
        return false;
    }
    addIn.goOnWithFileThere();
    return true;
}

} // namespace yrw
