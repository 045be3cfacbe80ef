#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class QPrinter;
class QWidget;

namespace yrw {

/// Icon of a message or question.
enum class PromptIcon { None, Information, Question, Exclamation, Critical };

/// The buttons a question offers, and the answer that comes back. Closing the box answers the
/// button that changes nothing (`No` of `YesNo`, `Cancel` otherwise).
enum class PromptButtons { Ok, YesNo, YesNoCancel, OkCancel };
enum class PromptAnswer { Ok, Yes, No, Cancel };

/// A question whose buttons carry words of their own.
struct ChoiceRequest {
    QString text;
    QString title;
    PromptIcon icon = PromptIcon::Question;
    QStringList buttons; ///< captions, in the order shown
    int defaultButton = 0;
    int escapeButton = 0; ///< what closing the box answers
};

/// The parts of a font, of each of which a text may have several.
enum class FontPart : unsigned {
    Name = 1,
    Points = 2,
    Bold = 4,
    Italic = 8,
    Underline = 16,
    Strikethru = 32,
    Colour = 64
};
Q_DECLARE_FLAGS(FontParts, FontPart)
Q_DECLARE_OPERATORS_FOR_FLAGS(FontParts)

/// A font as plain data: the prompt speaks no window toolkit.
struct FontChoice {
    QString name;
    double points = 10;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strikethru = false;
    int colour = 0;    ///< &H00BBGGRR
    FontParts mixed{}; ///< parts that the text has several of; their values here mean nothing
};

/// What the file dialog is told.
struct FileRequest {
    QString title;
    QString prompt;       ///< label beside the file name
    QString filter;       ///< "Text|*.txt|All|*.*|": pairs of caption and patterns
    QString folder;       ///< where to begin; empty: where the last one ended
    QString name;         ///< file name that is offered when saving
    bool several = false; ///< several files may be chosen
};

/// A report of an error: the fixed message first, the details behind a button.
struct ErrorReport {
    int number = 0;
    QString source;      ///< e.g. "YRWNOTES.AddIn.ShowNotes"
    QString description; ///< the reason, as the failing part worded it
    QString message;     ///< the fixed message
    QString text;        ///< optional sentence beside the message
    QString title;
};

/// Mouse pointers by the numbers that the system's callers use.
enum class MousePointer : int { Default = 0, SizeNS = 7, Hourglass = 11 };

/// The one prompt to the user: every message box, common dialog, printer and the mouse pointer.
///
/// One instance serves the process; it is set by `main` or by a test before anything else runs.
/// Only composition roots ask `Prompt::instance()`. A CR in a text shows as a line break.
/// Every call is modal and returns with the user's answer.
/// Thread: the user-interface thread.
class Prompt {
public:
    virtual ~Prompt();

    virtual void message(const QString& text, const QString& title, PromptIcon icon) = 0;
    virtual PromptAnswer question(const QString& text, const QString& title, PromptButtons buttons,
                                  PromptIcon icon, PromptAnswer defaultAnswer) = 0;
    /// The index of the button pressed. A prompt that shows no boxes answers as closing one does.
    virtual int choose(const ChoiceRequest& request);
    /// Shows one report; a report that comes while another is on screen is logged, not stacked.
    virtual void errorReport(const ErrorReport& report) = 0;
    /// The chosen paths; empty when cancelled.
    virtual QStringList openFiles(const FileRequest& request) = 0;
    virtual QString saveFile(const FileRequest& request) = 0;
    /// The font with its colour; nothing when cancelled. Parts that are mixed stay so unless the
    /// user chose them.
    virtual std::optional<FontChoice> chooseFont(const FontChoice& start) = 0;
    /// Colour as &H00BBGGRR; nothing when cancelled.
    virtual std::optional<int> chooseColour(int start) = 0;
    /// Asks for a printer and calls `paint` with it; false when cancelled.
    virtual bool print(const QString& title, const std::function<void(QPrinter&)>& paint) = 0;
    /// Shows on the screen what `paint` paints, as often as the preview needs it; the user may
    /// print from there. A prompt without a screen shows nothing.
    virtual void preview(const QString& title, const std::function<void(QPrinter&)>& paint);
    /// Sets the application's pointer. A value, not a stack: any `Default` restores it.
    virtual void setMousePointer(MousePointer pointer) = 0;

    /// The window that boxes belong to; nothing for none. Not owned.
    virtual void setParentWindow(QWidget* window) = 0;

    /// The process-wide prompt. Raises `kErrorObjectRequired` when none was set.
    static Prompt& instance();
    /// True when a prompt was set.
    static bool hasInstance();
    /// Sets the process-wide prompt; nothing removes it. Not owned.
    static void setInstance(Prompt* prompt);
};

} // namespace yrw
