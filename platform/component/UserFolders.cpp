#include "platform/component/UserFolders.h"

#include <QDir>

namespace yrw::userfolders {

namespace {

QString folderOf(const char* variable, QStringView below) {
    const QString set = qEnvironmentVariable(variable);
    return QDir::isAbsolutePath(set) ? QDir::cleanPath(set) : QDir::homePath() + below;
}

} // namespace

QString data() {
    return folderOf("XDG_DATA_HOME", u"/.local/share");
}

QString config() {
    return folderOf("XDG_CONFIG_HOME", u"/.config");
}

QString state() {
    return folderOf("XDG_STATE_HOME", u"/.local/state");
}

} // namespace yrw::userfolders
