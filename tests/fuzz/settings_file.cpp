#include "platform/settings/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

const QString kApplication = QStringLiteral("Yarrowen");
const QString kSection = QStringLiteral("YRWNotes Settings");
const QString kKey = QStringLiteral("Height");

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

} // namespace

/// Any file of settings is read or its defaults are used. What is saved is read again; a file that
/// was not understood is left as it is.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace yrw;
    static const QTemporaryDir folder;
    static int turn = 0;
    const QString place = folder.filePath(QString::number(++turn)); // nothing is remembered of it
    SettingsStore reader(place);
    require(QDir().mkpath(place));
    const QByteArray written(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QFile file(reader.fileOf(kApplication));
    require(file.open(QIODevice::WriteOnly) && file.write(written) == written.size());
    file.close();

    static_cast<void>(reader.get(kApplication, kSection, kKey, QStringLiteral("none")));
    const QString text = QString::fromUtf8(written.left(40)).remove(QChar(0));
    if (reader.save(kApplication, kSection, kKey, text)) {
        require(reader.get(kApplication, kSection, kKey, QStringLiteral("none")) == text);
    } else {
        require(contentOf(file.fileName()) == written);
        require(!reader.takeProblem().isEmpty());
    }
    QFile::remove(file.fileName());
    return 0;
}
