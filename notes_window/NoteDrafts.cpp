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
    return !writeWholeFile(fileOf(draft.noteID),
                           QJsonDocument(content).toJson(QJsonDocument::Compact), true);
}

std::optional<NoteDraft> NoteDrafts::find(qint64 noteID) const {
    QFile file(fileOf(noteID));
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QJsonObject content = QJsonDocument::fromJson(file.readAll()).object();
    if (content.value(QStringLiteral("note")).toInteger() != noteID || isWriterAlive(content)) {
        return std::nullopt;
    }
    return NoteDraft{
        noteID,
        QDateTime::fromString(content.value(QStringLiteral("written")).toString(), kDateFormat),
        content.value(QStringLiteral("rtf")).toString()};
}

void NoteDrafts::remove(qint64 noteID) {
    QFile::remove(fileOf(noteID));
}

QList<qint64> NoteDrafts::noteIDs() const {
    QList<qint64> ids;
    const QStringList names = QDir(m_folder).entryList({QStringLiteral("*.draft")}, QDir::Files);
    for (const QString& name : names) {
        ids.append(QFileInfo(name).baseName().toLongLong());
    }
    return ids;
}

QString NoteDrafts::fileOf(qint64 noteID) const {
    return QStringLiteral("%1/%2.draft").arg(m_folder).arg(noteID);
}

} // namespace yrw
