#pragma once

class QMessageBox;
class QWidget;

namespace yrw {

/// Makes a message box show its texts whole on the screen of its owner (the first one without an
/// owner): lines break, also within a word that is too long, a text that is too high scrolls, and
/// a caption of a button that is too long leaves its middle to the tool-tip.
/// Called last, when texts and buttons are complete.
void fitToScreen(QMessageBox& box, const QWidget* owner);

} // namespace yrw
