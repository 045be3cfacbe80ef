#include "platform/component/ClassRegistry.h"

#include "platform/component/AutomationError.h"
#include "platform/component/TrustedFile.h"
#include "platform/component/UserFolders.h"
#include "platform/disk/WholeFile.h"

#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QSettings>

#include <utility>

namespace yrw {

IClassFactory::~IClassFactory() = default;

namespace {

[[noreturn]] void fail(const QString& description) {
    throw AutomationError(kErrorCannotCreateObject, QStringLiteral("YRW.ClassRegistry"),
                          description);
}

QString defaultFile() {
    return userfolders::data() + u"/yarrowen/classes.ini";
}

/// Program ids hold no slash or backslash, so that they can name a group of the file.
void checkProgramId(const QString& programId) {
    if (programId.isEmpty() || programId.contains(u'/') || programId.contains(u'\\')) {
        fail(QStringLiteral("'%1' is not a program id.").arg(programId));
    }
}

/// A relative path would mean another file in each folder that a program is started from.
void checkIsAbsolute(const QString& programId, const QString& libraryFile) {
    if (!QDir::isAbsolutePath(libraryFile)) {
        fail(QStringLiteral("The component of '%1' is registered without its full path: %2")
                 .arg(programId, libraryFile));
    }
}

/// What a file with one more class takes at the most, in bytes, beyond its present size.
constexpr qint64 kOneClass = 16384;

[[noreturn]] void cannotWrite(const QString& file) {
    fail(QStringLiteral("The class registry could not be written: %1").arg(file));
}

/// Raises where the registry could only be written in part, which nobody would be told.
void checkRoom(const QString& file) {
    const QFileInfo info(file);
    QDir().mkpath(info.absolutePath());
    if (!hasRoomBeside(file, info.size() + kOneClass)) {
        cannotWrite(file);
    }
}

void finishWriting(QSettings& file) {
    file.sync();
    if (file.status() != QSettings::NoError) {
        cannotWrite(file.fileName());
    }
}

Ref<Counted> instanceFrom(IClassFactory& factory, const ClassRegistration& found) {
    Ref<Counted> object;
    try {
        object = factory.createInstance();
    } catch (...) {
        fail(QStringLiteral("The component of '%1' could not make its object: %2")
                 .arg(found.programId, currentError().description()));
    }
    if (!object) {
        fail(QStringLiteral("The component of '%1' made no object: %2")
                 .arg(found.programId, found.libraryFile));
    }
    return object;
}

IClassFactory& factoryOf(const ClassRegistration& found) {
    if (!QFileInfo(found.libraryFile).isFile()) {
        fail(QStringLiteral("The component of '%1' is not there: %2")
                 .arg(found.programId, found.libraryFile));
    }
    if (const QString reason = reasonToDistrust(found.libraryFile); !reason.isEmpty()) {
        fail(
            QStringLiteral("The component of '%1' is not loaded, since others could change what it "
                           "does: %2")
                .arg(found.programId, reason));
    }
    QLibrary library(found.libraryFile);
    // Code of the window toolkit in a library must never be unloaded.
    library.setLoadHints(QLibrary::PreventUnloadHint);
    if (!library.load()) {
        fail(QStringLiteral("The component of '%1' could not be loaded: %2")
                 .arg(found.programId, library.errorString()));
    }
    const auto entry =
        reinterpret_cast<GetClassObjectFunction>(library.resolve("DllGetClassObject"));
    if (entry == nullptr) {
        fail(QStringLiteral("The file registered for '%1' is not a component: %2")
                 .arg(found.programId, found.libraryFile));
    }
    IClassFactory* factory = nullptr;
    if (entry(found.classId.toUtf8().constData(), &factory) != kComponentOk || factory == nullptr) {
        fail(QStringLiteral("The component %1 does not offer the class of '%2'.")
                 .arg(found.libraryFile, found.programId));
    }
    return *factory;
}

} // namespace

ClassRegistry::ClassRegistry() : ClassRegistry(defaultFile()) {}

ClassRegistry::ClassRegistry(QString file) : m_file(std::move(file)) {}

void ClassRegistry::registerClass(const ClassRegistration& registration) const {
    checkProgramId(registration.programId);
    checkIsAbsolute(registration.programId, registration.libraryFile);
    checkRoom(m_file);
    QSettings file(m_file, QSettings::IniFormat);
    file.beginGroup(registration.programId);
    file.setValue(QStringLiteral("ClassId"), registration.classId);
    file.setValue(QStringLiteral("Library"), registration.libraryFile);
    file.endGroup();
    finishWriting(file);
}

void ClassRegistry::unregisterClass(const QString& programId) const {
    checkProgramId(programId);
    checkRoom(m_file);
    QSettings file(m_file, QSettings::IniFormat);
    file.remove(programId);
    finishWriting(file);
}

ClassRegistration ClassRegistry::find(const QString& programId) const {
    checkProgramId(programId);
    QSettings file(m_file, QSettings::IniFormat);
    if (file.status() != QSettings::NoError) {
        fail(QStringLiteral("'%1' was not found: the class registry could not be read: %2")
                 .arg(programId, m_file));
    }
    file.beginGroup(programId);
    ClassRegistration found{programId, file.value(QStringLiteral("ClassId")).toString(),
                            file.value(QStringLiteral("Library")).toString()};
    if (found.classId.isEmpty() || found.libraryFile.isEmpty()) {
        fail(QStringLiteral("'%1' is not registered on this computer.").arg(programId));
    }
    checkIsAbsolute(programId, found.libraryFile);
    return found;
}

Ref<Counted> ClassRegistry::createObject(const QString& programId) const {
    const ClassRegistration found = find(programId);
    IClassFactory& factory = factoryOf(found);
    if (factory.contractVersion() != kContractVersion) {
        fail(QStringLiteral("The component of '%1' was made for another version of this program "
                            "(%2 instead of %3): %4")
                 .arg(programId)
                 .arg(factory.contractVersion())
                 .arg(kContractVersion)
                 .arg(found.libraryFile));
    }
    return instanceFrom(factory, found);
}

} // namespace yrw
