#pragma once

#include <QString>
#include <QStringList>

namespace yrw::dao {

/// Runs what the test program does as a child of itself: "--writer FILE",
/// "--reader FILE" or "--mixed FILE NUMBER OPERATIONS". Returns its exit status; -1 when the
/// arguments name neither.
int runChild(const QStringList& arguments);

} // namespace yrw::dao
