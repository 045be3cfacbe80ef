#include "platform/prompt/Prompt.h"

#include "platform/component/AutomationError.h"

namespace yrw {

namespace {

Prompt*& currentPrompt() {
    static Prompt* prompt = nullptr;
    return prompt;
}

} // namespace

Prompt::~Prompt() = default;

int Prompt::choose(const ChoiceRequest& request) {
    return request.escapeButton;
}

void Prompt::preview(const QString&, const std::function<void(QPrinter&)>&) {}

bool Prompt::hasInstance() {
    return currentPrompt() != nullptr;
}

Prompt& Prompt::instance() {
    if (currentPrompt() == nullptr) {
        throw AutomationError(kErrorObjectRequired, QStringLiteral("YRW.Prompt"),
                              QStringLiteral("No way to reach the user was set up."));
    }
    return *currentPrompt();
}

void Prompt::setInstance(Prompt* prompt) {
    currentPrompt() = prompt;
}

} // namespace yrw
