#include "notes_window/NoteDrafts.h"

#include "platform/component/UserFolders.h"
#include "platform/disk/WholeFile.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

namespace yrw {

namespace {

const QString kDateFormat = QStringLiteral("yyyy-MM-dd HH:mm:ss");

/// When a process began, as the system counts; empty when there is none with that id. Together
/// with the id it names a process for good: ids are given again.
QString startOf(qint64 processID) {
    QFile file(QStringLiteral("/proc/%1/stat").arg(processID));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    // Behind the name in brackets, which may hold anything, follow single words.
    const QString stat = QString::fromUtf8(file.readAll());
    constexpr int startTime = 20;
    return stat.section(QLatin1Char(')'), -1).section(QLatin1Char(' '), startTime, startTime);
}

/// True while the process that wrote a draft lives and is not this one.
bool isWriterAlive(const QJsonObject& draft) {
    const qint64 processID = draft.value(QStringLiteral("process")).toInteger();
    const QString start = startOf(processID);
    return processID != QCoreApplication::applicationPid() && !start.isEmpty() &&
           start == draft.value(QStringLiteral("started")).toString();
}

/// The draft in a file; nothing for a damaged one, or where its writer still works on it.
std::optional<NoteDraft> readDraft(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QJsonObject content = QJsonDocument::fromJson(file.readAll()).object();
    if (content.isEmpty() || isWriterAlive(content)) {
        return std::nullopt;
    }
    return NoteDraft{
        content.value(QStringLiteral("note")).toInteger(),
        QDateTime::fromString(content.value(QStringLiteral("written")).toString(), kDateFormat),
        content.value(QStringLiteral("rtf")).toString(), path};
}

} // namespace

NoteDrafts::NoteDrafts(const QString& folder, const QString& database) {
    const QByteArray hash =
        QCryptographicHash::hash(database.toUtf8(), QCryptographicHash::Sha1).toHex().left(16);
    m_folder = folder + QLatin1Char('/') + QString::fromLatin1(hash);
}

QString NoteDrafts::userFolder() {
    return userfolders::state() + QStringLiteral("/yrwnotes/drafts");
}

bool NoteDrafts::write(const NoteDraft& draft) {
    QDir().mkpath(m_folder);
    const QJsonObject content{
        {QStringLiteral("note"), draft.noteID},
        {QStringLiteral("written"), draft.written.toString(kDateFormat)},
        {QStringLiteral("process"), QCoreApplication::applicationPid()},
        {QStringLiteral("started"), startOf(QCoreApplication::applicationPid())},
        {QStringLiteral("rtf"), draft.rtf},
    };
    const auto problem = writeWholeFile(
        fileOf(draft.noteID), QJsonDocument(content).toJson(QJsonDocument::Compact), true);
    m_problem = problem.value_or(QString());
    return !problem;
}

std::optional<NoteDraft> NoteDrafts::find(qint64 noteID) const {
    const QStringList patterns{QStringLiteral("%1.draft").arg(noteID),
                               QStringLiteral("%1.*.draft").arg(noteID)};
    std::optional<NoteDraft> latest;
    const QFileInfoList files = QDir(m_folder).entryInfoList(patterns, QDir::Files);
    for (const QFileInfo& each : files) {
        std::optional<NoteDraft> draft = readDraft(each.filePath());
        if (draft && draft->noteID == noteID && (!latest || latest->written < draft->written)) {
            latest = std::move(draft);
        }
    }
    return latest;
}

void NoteDrafts::remove(qint64 noteID) {
    QFile file(fileOf(noteID));
    if (file.open(QIODevice::ReadOnly) &&
        !isWriterAlive(QJsonDocument::fromJson(file.readAll()).object())) {
        file.remove();
    }
}

void NoteDrafts::remove(const NoteDraft& found) {
    if (readDraft(found.file)) { // else another living process has written it meanwhile
        QFile::remove(found.file);
    }
}

void NoteDrafts::putAside(const NoteDraft& found) const {
    if (found.file != fileOf(found.noteID)) {
        return; // it lies aside already
    }
    // A name that is taken is not replaced.
    constexpr int most = 1000;
    bool moved = false;
    for (int number = 1; !moved && number < most; ++number) {
        moved = QFile::rename(
            found.file,
            QStringLiteral("%1/%2.%3.draft").arg(m_folder).arg(found.noteID).arg(number));
    }
}

QList<qint64> NoteDrafts::noteIDs() const {
    QList<qint64> ids;
    const QStringList names = QDir(m_folder).entryList({QStringLiteral("*.draft")}, QDir::Files);
    for (const QString& name : names) {
        const qint64 id = QFileInfo(name).baseName().toLongLong();
        if (!ids.contains(id)) {
            ids.append(id);
        }
    }
    return ids;
}

void NoteDrafts::removeHalfWritten(const QDateTime& now) const {
    constexpr qint64 longAgo = 3600; // seconds: nobody writes it any more
    const QFileInfoList files = QDir(m_folder).entryInfoList({QStringLiteral("*.draft.*")});
    for (const QFileInfo& file : files) {
        if (file.lastModified().secsTo(now) > longAgo) {
            QFile::remove(file.filePath());
        }
    }
}

QString NoteDrafts::fileOf(qint64 noteID) const {
    return QStringLiteral("%1/%2.draft").arg(m_folder).arg(noteID);
}

} // namespace yrw
