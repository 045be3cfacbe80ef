#include "platform/richtext/PrivateCopies.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace yrw::richtext {

QString writePrivateCopy(const QString& name, const QByteArray& data) {
    static const QTemporaryDir root(QDir::tempPath() + QStringLiteral("/yarrowen-XXXXXX"));
    static int number = 0;
    // Two objects of one name, or one whose copy is still open, do not meet.
    const QString folder = root.filePath(QString::number(++number));
    if (!root.isValid() || !QDir().mkpath(folder)) {
        return {};
    }
    QFile file(folder + u'/' + name);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.flush()) {
        return {};
    }
    file.setPermissions(QFileDevice::ReadOwner);
    return file.fileName();
}

} // namespace yrw::richtext
