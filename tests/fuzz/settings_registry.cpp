#include "platform/component/AutomationError.h"
#include "platform/component/ClassRegistry.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Any registry file is read or refused by its one error; what it names is a full path.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace yrw;
    static const QTemporaryDir folder;
    static int turn = 0;
    const QString path = folder.filePath(QString::number(++turn)); // nothing is remembered of it
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size)) < 0) {
        std::abort();
    }
    file.close();
    try {
        const ClassRegistry registry(path);
        if (!QDir::isAbsolutePath(registry.find(QStringLiteral("YRWNOTES.AddIn")).libraryFile)) {
            std::abort();
        }
    } catch (const AutomationError& error) {
        if (error.number() != kErrorCannotCreateObject) {
            std::abort();
        }
    }
    QFile::remove(path);
    return 0;
}
