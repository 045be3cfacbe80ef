#include "notes_window/MainControls.h"

#include "notes_window/FindBar.h"
#include "notes_window/SplitBar.h"
#include "platform/controls/ListView.h"
#include "platform/controls/StatusBar.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/toolbar/Toolbar.h"

#include <QLabel>

namespace yrw {

namespace {

template <class Control>
Control& made(QWidget& window, const char* name, const char* accessibleName) {
    auto* const control = new Control(&window);
    control->setObjectName(QLatin1String(name));
    control->setAccessibleName(QLatin1String(accessibleName));
    return *control;
}

} // namespace

MainControls::MainControls(QWidget& window)
    : atbMain(made<Toolbar>(window, "atbMain", "Notes toolbar")),
      picFind(made<FindBar>(window, "picFind", "Find")),
      lsvMain(made<ListView>(window, "lsvMain", "Notes list")),
      picHSplit(made<SplitBar>(window, "picHSplit", "Height of list and text")),
      rtxMain(made<RichTextBox>(window, "rtxMain", "Note text")),
      stbMain(made<StatusBar>(window, "stbMain", "Status")),
      lblReminders(made<QLabel>(window, "lblReminders", "Waiting reminders")) {
    picFind.hide();
    rtxMain.setTabChangesFocus(false);
    rtxMain.setEnabled(false);
    lblReminders.hide();
    stbMain.addPermanentWidget(&lblReminders);
}

} // namespace yrw
