#pragma once

#include <QList>

namespace yrw {

class AttachmentInsertion;
class EditedNote;
class ITool;
class ListContents;
class ListFind;
class NoteChanges;
class NotePaper;
class NoteTools;
class TextCommands;
class TextMenu;
class TextOptions;
class Toolbar;
class WindowContext;
struct FormKey;

/// What the commands act on. Lifetime: all outlive the commands.
struct CommandTargets {
    NoteChanges& notes;
    ListContents& contents;
    ListFind& find;
    EditedNote& edited;
    TextCommands& text;
    TextMenu& menu;
    TextOptions& textOptions;
    AttachmentInsertion& attachments;
    NotePaper& paper;
    NoteTools& tools;
    Toolbar& toolbar;
    WindowContext& context;
};

/// The dispatcher: which tool and which key does what.
/// Thread: the user-interface thread.
class NoteCommands {
public:
    explicit NoteCommands(const CommandTargets& targets) : m_targets(targets) {}

    /// Does what a tool is for; a failure is reported. A tool of any other id does nothing.
    void run(ITool& tool);
    /// Uses the tool that a key stands for, as if it was clicked; false for any other key.
    bool press(const FormKey& key);
    /// The ids of the tools that do something.
    [[nodiscard]] static QList<int> ids();

private:
    CommandTargets m_targets;
};

} // namespace yrw
