#include "cli/OutputFile.h"

#include "platform/component/AutomationError.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace yrw {

namespace {

constexpr int kMostLinks = 40; ///< as the system has it

/// Where a path leads in the end; its last part need not be there.
QString finalPath(QString path) {
    for (int links = 0; links < kMostLinks && QFileInfo(path).isSymLink(); ++links) {
        path = QFileInfo(path).symLinkTarget();
    }
    const QFileInfo info(path);
    const QString folder = QFileInfo(info.absolutePath()).canonicalFilePath();
    return (folder.isEmpty() ? info.absolutePath() : folder) + u'/' + info.fileName();
}

} // namespace

bool isSameFile(const QString& a, const QString& b) {
    struct stat first {};
    struct stat second {};
    const bool areThere = ::stat(QFile::encodeName(a).constData(), &first) == 0 &&
                          ::stat(QFile::encodeName(b).constData(), &second) == 0;
    if (areThere) {
        return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
    }
    return finalPath(a) == finalPath(b);
}

void requireOther(const QString& path, const QStringList& untouchable) {
    for (const QString& other : untouchable) {
        if (isSameFile(path, other)) {
            throw AutomationError(
                kErrorInvalidOperation, QStringLiteral("yrwnotes"),
                QStringLiteral("%1 is %2, which holds the data itself; name another file.")
                    .arg(path, other));
        }
    }
}

OutputFile::OutputFile(const QString& path, const QStringList& untouchable)
    : m_path(path), m_file(path) {
    requireOther(path, untouchable);
    if (!m_file.open()) {
        fail();
    }
}

void OutputFile::fail() const {
    throw AutomationError(
        kErrorFileWrite, QStringLiteral("yrwnotes"),
        QStringLiteral("%1 could not be written: %2").arg(m_path, m_file.problem()));
}

void OutputFile::write(const QByteArray& bytes) {
    if (!m_file.write(bytes)) {
        fail();
    }
}

void OutputFile::finish() {
    if (!m_file.commit()) {
        fail();
    }
}

} // namespace yrw
