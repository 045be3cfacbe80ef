#include "platform/prompt/ErrorLog.h"

#include "platform/component/UserFolders.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace yrw {

QString errorLogFile() {
    return userfolders::state() + u"/yarrowen/log.txt";
}

void appendToErrorLog(const QDateTime& when, const ErrorReport& report) {
    const QString path = errorLogFile();
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::Append)) {
        return;
    }
    const QString words = report.message + u' ' + report.text + u' ' + report.description;
    const QStringList parts{when.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")), report.source,
                            QString::number(report.number), words.simplified()};
    file.write(parts.join(u'\t').toUtf8() + '\n');
}

} // namespace yrw
