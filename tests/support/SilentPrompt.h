#pragma once

#include "platform/prompt/Prompt.h"

#include <optional>

namespace yrw {

/// A prompt that nobody sees: shows nothing, gives every question one answer or its default, leaves
/// every dialog without a choice, and writes down what it was told.
class SilentPrompt : public Prompt {
public:
    QStringList told; ///< messages, questions, and reports as "message (description)"
    std::optional<PromptAnswer> answer;
    MousePointer pointer = MousePointer::Default;

    void message(const QString& text, const QString&, PromptIcon) override { told += text; }
    PromptAnswer question(const QString& text, const QString&, PromptButtons, PromptIcon,
                          PromptAnswer defaultAnswer) override {
        told += text;
        return answer.value_or(defaultAnswer);
    }
    void errorReport(const ErrorReport& report) override {
        told += report.message + QStringLiteral(" (") + report.description + u')';
    }
    QStringList openFiles(const FileRequest&) override { return {}; }
    QString saveFile(const FileRequest&) override { return {}; }
    std::optional<FontChoice> chooseFont(const FontChoice&) override { return std::nullopt; }
    std::optional<int> chooseColour(int) override { return std::nullopt; }
    bool print(const QString&, const std::function<void(QPrinter&)>&) override { return false; }
    void setMousePointer(MousePointer wanted) override { pointer = wanted; }
    void setParentWindow(QWidget*) override {}
};

/// A silent prompt that serves until its end; then the one that did before serves again.
class ServingPrompt final : public SilentPrompt {
public:
    ServingPrompt() : m_before(&instance()) { setInstance(this); }
    ServingPrompt(const ServingPrompt&) = delete;
    ServingPrompt& operator=(const ServingPrompt&) = delete;
    ~ServingPrompt() override { setInstance(m_before); }

private:
    Prompt* m_before;
};

} // namespace yrw
