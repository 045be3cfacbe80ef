#pragma once

class QString;
class QTextEdit;

namespace yrw {

class Prompt;

namespace richtext {

/// Ends the link that the insertion point stands behind: what is typed there does not belong to it.
void leaveLink(QTextEdit& editor);

/// Opens an address as the desktop does; the prompt, where there is one, is asked before. Only web
/// pages and mail addresses open.
void openLink(const QString& target, Prompt* prompt);

} // namespace richtext
} // namespace yrw
