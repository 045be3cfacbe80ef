#pragma once

#include "platform/prompt/Prompt.h"

#include <QPointer>
#include <QWidget>

class QFileDialog;

namespace yrw {

class Clock;

/// The prompt made of message boxes and common dialogs.
///
/// A box belongs to the modal window on top, else to the form that the user works in, else to the
/// parent window that was set, else to the active window; that window has the keyboard afterwards.
/// Its object name is "promptBox". While one is open the pointer is the usual one; afterwards it is
/// what it was. Error reports are appended to the error log (platform/prompt/ErrorLog.h). Lifetime:
/// outlives every call; the clock outlives it. Thread: the user-interface thread.
class WidgetPrompt final : public Prompt {
public:
    explicit WidgetPrompt(const Clock& clock);
    ~WidgetPrompt() override;

    void message(const QString& text, const QString& title, PromptIcon icon) override;
    PromptAnswer question(const QString& text, const QString& title, PromptButtons buttons,
                          PromptIcon icon, PromptAnswer defaultAnswer) override;
    int choose(const ChoiceRequest& request) override;
    void errorReport(const ErrorReport& report) override;
    QStringList openFiles(const FileRequest& request) override;
    QString saveFile(const FileRequest& request) override;
    std::optional<FontChoice> chooseFont(const FontChoice& start) override;
    std::optional<int> chooseColour(int start) override;
    bool print(const QString& title, const std::function<void(QPrinter&)>& paint) override;
    void preview(const QString& title, const std::function<void(QPrinter&)>& paint) override;
    void setMousePointer(MousePointer pointer) override;
    void setParentWindow(QWidget* window) override { m_parent = window; }

private:
    class OpenBox;

    [[nodiscard]] QWidget* owner() const;
    /// Asks with a dialog that is made for it; the chosen paths, none when cancelled.
    QStringList askForFiles(QFileDialog& dialog, const FileRequest& request);

    const Clock& m_clock;
    QPointer<QWidget> m_parent;
    QString m_folder; ///< where the last file dialog ended
    MousePointer m_pointer = MousePointer::Default;
    bool m_reporting = false;
};

} // namespace yrw
