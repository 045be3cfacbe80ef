#pragma once

#include <QStringList>

namespace yrw::test {

/// Runs a host process of its own as a child of the test program:
/// "--answer FOLDER USER YEAR BUTTON" shows what is due to a user in the folder's notes database
/// and clicks that button of each popup, at noon of that year's last day. Returns its exit status;
/// -1 when the arguments name no such thing.
int runReminderChild(const QStringList& arguments);

} // namespace yrw::test
