#include "framework/SettingsWatch.h"

#include "framework/ErrorGuards.h"
#include "platform/clock/Clock.h"
#include "platform/prompt/ErrorLog.h"
#include "platform/settings/SettingsStore.h"

#include <QSet>
#include <QTimer>

namespace yrw {

SettingsWatch::SettingsWatch(SettingsStore& store, const Clock& clock, Prompt& prompt,
                             QString title)
    : m_store(store), m_clock(clock), m_prompt(prompt), m_title(std::move(title)) {
    m_store.setProblemHandler([this](const QString& problem) { problemNoted(problem); });
}

SettingsWatch::~SettingsWatch() {
    m_store.setProblemHandler({});
}

void SettingsWatch::problemNoted(const QString& problem) {
    // A host and its add-ins have a store each, over one file.
    static QSet<QString> told;
    if (told.contains(problem)) {
        (void)m_store.takeProblem();
        return;
    }
    told.insert(problem);
    ErrorReport report;
    report.number = kErrorReadOnly;
    report.source = QStringLiteral("YRW.SettingsStore");
    report.description = problem;
    appendToErrorLog(m_clock.now(), report);
    QTimer::singleShot(0, this, [this] { ignoreErrors([this] { tell(); }); });
}

void SettingsWatch::tell() {
    const QString problem = m_store.takeProblem();
    if (!problem.isEmpty()) {
        m_prompt.message(problem, m_title, PromptIcon::Exclamation);
    }
}

} // namespace yrw
