#pragma once

#include "platform/prompt/Prompt.h"

namespace yrw {

/// A prompt that nobody sees: shows nothing, gives every question its default
/// answer and leaves every dialog without a choice. Base of the prompts that tests watch.
class SilentPrompt : public Prompt {
public:
    void message(const QString&, const QString&, PromptIcon) override {}
    PromptAnswer question(const QString&, const QString&, PromptButtons, PromptIcon,
                          PromptAnswer defaultAnswer) override {
        return defaultAnswer;
    }
    void errorReport(const ErrorReport&) override {}
    QStringList openFiles(const FileRequest&) override { return {}; }
    QString saveFile(const FileRequest&) override { return {}; }
    std::optional<FontChoice> chooseFont(const FontChoice&) override { return std::nullopt; }
    std::optional<int> chooseColour(int) override { return std::nullopt; }
    bool print(const QString&, const std::function<void(QPrinter&)>&) override { return false; }
    void setMousePointer(MousePointer) override {}
    void setParentWindow(QWidget*) override {}
};

} // namespace yrw
