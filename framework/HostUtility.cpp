#include "framework/HostUtility.h"

#include "platform/files/FileSystem.h"

namespace yrw {

HostUtility::HostUtility(Prompt& prompt) : m_prompt(prompt) {}

void HostUtility::ReportError(const AutomationError& error, const QString& source,
                              const QString& message, const QString& title,
                              const QString& text) const {
    if (m_teller && m_teller(error)) {
        return;
    }
    ErrorReport report;
    report.number = error.number();
    report.source = source;
    report.description = error.description();
    report.message = message;
    report.text = text;
    report.title = title;
    m_prompt.errorReport(report);
}

bool HostUtility::TextToBoolean(const QString& text, bool defaultValue) {
    const QString word = text.trimmed().toCaseFolded();
    if (word == u"true" || word == u"yes" || word == u"on") {
        return true;
    }
    if (word == u"false" || word == u"no" || word == u"off") {
        return false;
    }
    bool isNumber = false;
    const double number = word.toDouble(&isNumber);
    return isNumber ? number != 0 : defaultValue;
}

QString HostUtility::BooleanToText(bool value) {
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

QString HostUtility::FolderOfPath(const QString& path) {
    return FileSystem::folderOf(path);
}

QString HostUtility::NullToText(const QVariant& value) {
    return value.isNull() ? QString() : value.toString();
}

bool HostUtility::NullToBoolean(const QVariant& value) {
    if (value.isNull()) {
        return false;
    }
    if (value.typeId() == QMetaType::QString) {
        return TextToBoolean(value.toString(), false);
    }
    return value.toBool();
}

qint64 HostUtility::RemoveKeyPrefix(const QString& key, const QString& prefix) {
    if (!key.startsWith(prefix, Qt::CaseInsensitive)) {
        return 0;
    }
    bool isNumber = false;
    const qint64 number = key.mid(prefix.size()).toLongLong(&isNumber);
    return isNumber ? number : 0;
}

QString HostUtility::OpenFile(const QString& promptText, const QString& title,
                              const QString& filter, int flags, const QString& folder) const {
    FileRequest request;
    request.folder = folder;
    request.title = title;
    request.prompt = promptText;
    request.filter = filter;
    request.several = (flags & kOpenFileAllowSeveral) != 0;
    const QStringList chosen = m_prompt.openFiles(request);
    return chosen.isEmpty() ? QString() : chosen.first();
}

} // namespace yrw
