#include "platform/component/TrustedFile.h"

#include <QByteArray>
#include <QFile>

#include <array>
#include <climits>
#include <deque>
#include <string>
#include <utility>

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace yrw {

namespace {

constexpr int kMostLinks = 40;

QString nameOf(uid_t user) {
    const passwd* entry = getpwuid(user);
    return entry == nullptr ? QString::number(user) : QString::fromLocal8Bit(entry->pw_name);
}

/// True when a group has its owner's name and is the owner's first one, so that nobody else is
/// in it.
bool isOwnersOwn(gid_t group, uid_t owner) {
    const passwd* user = getpwuid(owner);
    if (user == nullptr || user->pw_gid != group) {
        return false;
    }
    const std::string userName = user->pw_name;
    const struct group* entry = getgrgid(group);
    return entry != nullptr && userName == entry->gr_name && entry->gr_mem[0] == nullptr;
}

QString reasonOf(const QString& path, const struct stat& found) {
    if (found.st_uid != 0 && found.st_uid != geteuid()) {
        return QStringLiteral("%1 belongs to another user, %2.").arg(path, nameOf(found.st_uid));
    }
    const bool isSticky = S_ISDIR(found.st_mode) && (found.st_mode & S_ISVTX) != 0;
    if (S_ISLNK(found.st_mode) || isSticky) {
        return {};
    }
    if ((found.st_mode & S_IWOTH) != 0) {
        return QStringLiteral("%1 can be changed by every user of this computer.").arg(path);
    }
    if ((found.st_mode & S_IWGRP) != 0 && !isOwnersOwn(found.st_gid, found.st_uid)) {
        return QStringLiteral("%1 can be changed by other users of its group.").arg(path);
    }
    return {};
}

std::deque<QByteArray> partsOf(const QByteArray& path) {
    std::deque<QByteArray> parts;
    for (const QByteArray& part : path.split('/')) {
        if (!part.isEmpty() && part != ".") {
            parts.push_back(part);
        }
    }
    return parts;
}

QByteArray parentOf(const QByteArray& path) {
    return path.left(qMax(path.lastIndexOf('/'), qsizetype(0)));
}

/// What a symbolic link holds, as it stands in it.
QByteArray targetOf(const QByteArray& link) {
    std::array<char, PATH_MAX> text{};
    const ssize_t length = readlink(link.constData(), text.data(), text.size());
    return length < 0 ? QByteArray() : QByteArray(text.data(), length);
}

} // namespace

QString reasonToDistrust(const QString& path) {
    std::deque<QByteArray> rest = partsOf(QFile::encodeName(path));
    QByteArray reached; // without the last slash; empty for the root
    int links = 0;
    for (;;) {
        const QByteArray here = reached.isEmpty() ? QByteArray("/") : reached;
        const QString shown = QFile::decodeName(here);
        struct stat found {};
        if (lstat(here.constData(), &found) != 0) {
            return QStringLiteral("%1 is not there or cannot be looked at.").arg(shown);
        }
        if (const QString reason = reasonOf(shown, found); !reason.isEmpty()) {
            return reason;
        }
        if (S_ISLNK(found.st_mode)) {
            if (++links > kMostLinks) {
                return QStringLiteral("%1 leads in a circle.").arg(shown);
            }
            const QByteArray target = targetOf(here);
            std::deque<QByteArray> further = partsOf(target);
            further.insert(further.end(), rest.begin(), rest.end());
            rest = std::move(further);
            reached = target.startsWith('/') ? QByteArray() : parentOf(reached);
        }
        if (rest.empty()) {
            return {};
        }
        const QByteArray next = rest.front();
        rest.pop_front();
        reached = next == ".." ? parentOf(reached) : reached + '/' + next;
    }
}

} // namespace yrw
