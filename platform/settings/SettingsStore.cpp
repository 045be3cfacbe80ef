#include "platform/settings/SettingsStore.h"

#include "platform/component/UserFolders.h"
#include "platform/disk/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <algorithm>
#include <utility>

namespace yrw {

namespace {

/// The bytes of an INI file as lines of it are read: a backslash takes the next byte with it,
/// quotes hold line ends and all else, and a semicolon outside of them begins a comment.
class IniLines {
public:
    explicit IniLines(const QByteArray& text) : m_text(text) {}

    /// False as soon as a line is neither a group, a comment, empty, nor a key with its value.
    [[nodiscard]] bool areWellFormed() {
        while (m_at < m_text.size()) {
            if (!isWellFormedLine()) {
                return false;
            }
        }
        return true;
    }

private:
    bool isWellFormedLine() {
        while (m_at < m_text.size() && QByteArrayView(" \t\r\n").contains(m_text[m_at])) {
            ++m_at;
        }
        if (m_at == m_text.size() || m_text[m_at] == '#' || m_text[m_at] == ';') {
            while (m_at < m_text.size() && m_text[m_at] != '\n' && m_text[m_at] != '\r') {
                ++m_at;
            }
            return true;
        }
        const qsizetype start = m_at;
        bool inQuotes = false;
        bool hasValue = false;
        for (; m_at < m_text.size(); ++m_at) {
            const char c = m_text[m_at];
            if (c == '"') {
                inQuotes = !inQuotes;
            } else if (c == '\\') {
                ++m_at;
            } else if (!inQuotes && c == '=') {
                hasValue = true;
            } else if (!inQuotes && (c == '\n' || c == '\r' || c == ';')) {
                break;
            }
        }
        const QByteArray line = m_text.mid(start, m_at - start).trimmed();
        return !inQuotes && (hasValue || (line.startsWith('[') && line.endsWith(']')));
    }

    const QByteArray& m_text;
    qsizetype m_at = 0;
};

/// False for a file that is no INI file throughout: QSettings would serve what it understands of
/// it and drop the rest when it writes.
bool isWellFormed(const QString& path) {
    QFile file(path);
    if (!file.exists()) {
        return true;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QByteArray text = file.readAll();
    return IniLines(text).areWellFormed();
}

/// What a file with one more setting takes at the most, in bytes, beyond its present size.
constexpr qint64 kOneSetting = 16384;

/// A key that ends with a slash is written with a sign at its end that the next one who reads takes
/// for something else.
bool canBeWrittenAgain(const QStringList& keys) {
    return std::ranges::none_of(keys, [](const QString& key) { return key.endsWith(u'/'); });
}

/// A text with commas that was typed by hand, without quotes, is read as a list.
QString textOf(const QVariant& value) {
    return value.typeId() == QMetaType::QStringList ? value.toStringList().join(u", ")
                                                    : value.toString();
}

} // namespace

SettingsStore::SettingsStore() : SettingsStore(userfolders::config()) {}

SettingsStore::SettingsStore(QString folder) : m_folder(std::move(folder)) {}

QString SettingsStore::fileOf(const QString& application) const {
    return m_folder + u'/' + application + u".ini";
}

QString SettingsStore::get(const QString& application, const QString& section, const QString& key,
                           const QString& defaultText) const {
    if (!isWellFormed(fileOf(application))) {
        noteProblem(application, false);
        return defaultText;
    }
    // A QSettings object per call: it shares its cache with the others of the same file and
    // re-reads the file only when its time stamp moved.
    QSettings file(fileOf(application), QSettings::IniFormat);
    file.sync();
    return textOf(file.value(section + u'/' + key, defaultText));
}

bool SettingsStore::save(const QString& application, const QString& section, const QString& key,
                         const QString& text) {
    const bool isKept =
        write(application, [&](QSettings& file) { file.setValue(section + u'/' + key, text); });
    Changed.raise(application, section, key, text);
    return isKept;
}

bool SettingsStore::remove(const QString& application, const QString& section, const QString& key) {
    return write(application, [&](QSettings& file) { file.remove(section + u'/' + key); });
}

bool SettingsStore::write(const QString& application,
                          const std::function<void(QSettings&)>& change) {
    QDir().mkpath(m_folder);
    const QString path = fileOf(application);
    if (isWellFormed(path) && hasRoomBeside(path, QFileInfo(path).size() + kOneSetting)) {
        // Format errors do not count: the lines were looked at above, and QSettings takes a comment
        // that begins with # for one, or not, by what of the file it happens to have read before.
        QSettings file(path, QSettings::IniFormat);
        if (file.status() != QSettings::AccessError && canBeWrittenAgain(file.allKeys())) {
            change(file);
            file.sync();
            if (file.status() != QSettings::AccessError) {
                return true;
            }
        }
    }
    noteProblem(application, true);
    return false;
}

void SettingsStore::noteProblem(const QString& application, bool writing) const {
    if (std::exchange(m_problemTold, true)) {
        return;
    }
    m_problem = (writing ? QStringLiteral("The settings file could not be written, so changes of "
                                          "settings are not kept: %1")
                         : QStringLiteral("The settings file could not be read, so the defaults "
                                          "are used and changes of settings are not kept: %1"))
                    .arg(fileOf(application));
    if (m_handler) {
        m_handler(QString(m_problem));
    }
}

void SettingsStore::setProblemHandler(std::function<void(const QString&)> handler) {
    m_handler = std::move(handler);
}

QString SettingsStore::takeProblem() {
    return std::exchange(m_problem, QString());
}

} // namespace yrw
