#pragma once

#include <QString>

namespace yrw {

/// Says why code from a file must not be run in the current user's name: one sentence that names
/// what somebody else can change, the file itself or a folder on the way to it, and how; empty when
/// nobody but the user and the administrator can.
///
/// The way is followed through symbolic links. Others can write what belongs to another user than
/// these two, what everybody may write (a folder with the sticky bit is fine), and what a group may
/// write, unless that group is the owner's own.
/// `path` is absolute; a file that is not there or cannot be looked at is named as well.
/// Thread: any.
[[nodiscard]] QString reasonToDistrust(const QString& path);

} // namespace yrw
