#pragma once

class QLabel;
class QWidget;

namespace yrw {

class FindBar;
class ListView;
class RichTextBox;
class SplitBar;
class StatusBar;
class Toolbar;

/// The controls of the notes window, which belong to it.
struct MainControls {
    explicit MainControls(QWidget& window);

    Toolbar& atbMain;
    FindBar& picFind;
    ListView& lsvMain;
    SplitBar& picHSplit;
    RichTextBox& rtxMain;
    StatusBar& stbMain;
    QLabel& lblReminders;
};

} // namespace yrw
