#pragma once

#include "platform/prompt/Prompt.h"

#include <gtest/gtest.h>

#include <deque>
#include <type_traits>

namespace yrw {

/// The prompt for tests: answers from a script and writes down what was asked.
///
/// A question, dialog or message that the script does not expect fails the test, as does an answer
/// that nobody asked for. `PromptScript script;` serves until its end, then the prompt that was
/// there before serves again.
class PromptScript final : public Prompt {
public:
    PromptScript() : m_before(hasInstance() ? &instance() : nullptr) { setInstance(this); }
    PromptScript(const PromptScript&) = delete;
    PromptScript& operator=(const PromptScript&) = delete;
    ~PromptScript() override {
        EXPECT_EQ(m_messages, 0) << "messages that did not come";
        EXPECT_EQ(m_reports, 0) << "error reports that did not come";
        EXPECT_TRUE(m_answers.empty()) << "questions that did not come";
        EXPECT_TRUE(m_choices.empty()) << "choices that did not come";
        EXPECT_TRUE(m_files.empty()) << "file dialogs that did not come";
        EXPECT_TRUE(m_fonts.empty()) << "font dialogs that did not come";
        EXPECT_TRUE(m_colours.empty()) << "colour dialogs that did not come";
        EXPECT_TRUE(m_printers.empty()) << "print dialogs that did not come";
        setInstance(m_before);
    }

    // The script.
    void expectMessage(int count = 1) { m_messages += count; }
    void expectReport(int count = 1) { m_reports += count; }
    void answer(PromptAnswer answer) { m_answers.push_back(answer); }
    void chooseFiles(const QStringList& paths) { m_files.push_back(paths); }
    void chooseFont(const std::optional<FontChoice>& font) { m_fonts.push_back(font); }
    void chooseColour(std::optional<int> colour) { m_colours.push_back(colour); }
    /// Presses the button with that caption, its "&" left out; an empty one closes the box.
    void press(const QString& caption) { m_choices.push_back(caption); }
    /// Prints, or shows in a preview, on the given printer; nothing cancels.
    void choosePrinter(QPrinter* printer) { m_printers.push_back(printer); }
    /// Runs before each message, question, report or dialog is answered: what happens meanwhile.
    std::function<void()> whileOpen;

    // What was asked. "title: text" of messages and questions, "title: message" of reports.
    QStringList asked;
    QList<ErrorReport> reports;
    QList<FileRequest> fileRequests;
    FontChoice fontAsked; ///< what the last font dialog began with
    PromptIcon lastIcon = PromptIcon::None;
    PromptButtons lastButtons = PromptButtons::Ok;
    PromptAnswer lastDefault = PromptAnswer::Ok;
    MousePointer pointer = MousePointer::Default;
    QList<MousePointer> pointers; ///< every pointer that was set, in order
    QWidget* parentWindow = nullptr;

    void message(const QString& text, const QString& title, PromptIcon icon) override {
        note(title, text);
        lastIcon = icon;
        EXPECT_GT(m_messages, 0) << "unexpected message: " << text.toStdString();
        m_messages = qMax(0, m_messages - 1);
    }
    PromptAnswer question(const QString& text, const QString& title, PromptButtons buttons,
                          PromptIcon icon, PromptAnswer defaultAnswer) override {
        note(title, text);
        lastIcon = icon;
        lastButtons = buttons;
        lastDefault = defaultAnswer;
        return take(m_answers, defaultAnswer, "question: " + text);
    }
    int choose(const ChoiceRequest& request) override {
        note(request.title, request.text);
        lastIcon = request.icon;
        QStringList captions = request.buttons;
        captions.replaceInStrings(QStringLiteral("&"), QString());
        const QString caption =
            take(m_choices, QString(), "choice: " + request.text + captions.join(u'/'));
        const auto pressed = captions.indexOf(caption);
        EXPECT_TRUE(caption.isEmpty() || pressed >= 0) << "no button " << caption.toStdString();
        return pressed < 0 ? request.escapeButton : int(pressed);
    }
    void errorReport(const ErrorReport& report) override {
        note(report.title, report.message);
        reports.append(report);
        EXPECT_GT(m_reports, 0) << "unexpected report: " << report.message.toStdString() << " ("
                                << report.description.toStdString() << ", "
                                << report.source.toStdString() << ")";
        m_reports = qMax(0, m_reports - 1);
    }
    QStringList openFiles(const FileRequest& request) override {
        note(request.title, request.prompt);
        fileRequests.append(request);
        return take(m_files, {}, "open dialog: " + request.title);
    }
    QString saveFile(const FileRequest& request) override {
        note(request.title, request.prompt);
        fileRequests.append(request);
        return take(m_files, {}, "save dialog: " + request.title).value(0);
    }
    std::optional<FontChoice> chooseFont(const FontChoice& start) override {
        note("font", {});
        fontAsked = start;
        return take(m_fonts, std::nullopt, "font dialog");
    }
    std::optional<int> chooseColour(int) override {
        note("colour", {});
        return take(m_colours, std::nullopt, "colour dialog");
    }
    bool print(const QString& title, const std::function<void(QPrinter&)>& paint) override {
        note("print", title);
        QPrinter* const printer = take(m_printers, nullptr, "print dialog: " + title);
        if (printer != nullptr) {
            paint(*printer);
        }
        return printer != nullptr;
    }
    void preview(const QString& title, const std::function<void(QPrinter&)>& paint) override {
        note("preview", title);
        if (QPrinter* const printer = take(m_printers, nullptr, "preview: " + title)) {
            paint(*printer);
        }
    }
    void setMousePointer(MousePointer wanted) override {
        pointer = wanted;
        pointers.append(wanted);
    }
    void setParentWindow(QWidget* window) override { parentWindow = window; }

private:
    void note(const QString& title, const QString& text) {
        asked.append(title + ": " + text);
        if (whileOpen) {
            whileOpen();
        }
    }
    template <class Answer>
    static Answer take(std::deque<Answer>& queue, const std::type_identity_t<Answer>& otherwise,
                       const QString& what) {
        if (queue.empty()) {
            ADD_FAILURE() << "unexpected " << what.toStdString();
            return otherwise;
        }
        const Answer answer = queue.front();
        queue.pop_front();
        return answer;
    }

    Prompt* m_before;
    int m_messages = 0;
    int m_reports = 0;
    std::deque<PromptAnswer> m_answers;
    std::deque<QString> m_choices;
    std::deque<QStringList> m_files;
    std::deque<std::optional<FontChoice>> m_fonts;
    std::deque<std::optional<int>> m_colours;
    std::deque<QPrinter*> m_printers;
};

} // namespace yrw
