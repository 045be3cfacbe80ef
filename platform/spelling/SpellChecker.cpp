#include "platform/spelling/SpellChecker.h"

#include <hunspell/hunspell.hxx>

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStringDecoder>
#include <QStringEncoder>

namespace yrw {

namespace {

constexpr qsizetype kMostSuggestions = 5;

class HunspellChecker final : public SpellChecker {
public:
    HunspellChecker(const QString& affixes, const QString& words)
        : m_hunspell(QFile::encodeName(affixes).constData(), QFile::encodeName(words).constData()),
          m_encode(m_hunspell.get_dict_encoding().c_str()),
          m_decode(m_hunspell.get_dict_encoding().c_str()) {}

    /// False for an encoding that nothing here can write.
    [[nodiscard]] bool isUsable() const { return m_encode.isValid() && m_decode.isValid(); }

    [[nodiscard]] bool knows(const QString& word) override {
        const std::string bytes = encoded(word);
        return bytes.empty() || m_hunspell.spell(bytes);
    }
    [[nodiscard]] QStringList suggestions(const QString& word) override {
        QStringList found;
        for (const std::string& each : m_hunspell.suggest(encoded(word))) {
            found.append(m_decode(QByteArray::fromStdString(each)));
            if (found.size() == kMostSuggestions) {
                break;
            }
        }
        return found;
    }
    void accept(const QString& word) override { m_hunspell.add(encoded(word)); }

private:
    /// Empty for a word with characters that the dictionary's encoding lacks.
    [[nodiscard]] std::string encoded(const QString& word) {
        QString plain = word;
        plain.replace(QChar(0x2019), u'\'');
        const QByteArray bytes = m_encode(plain);
        const bool whole = !m_encode.hasError();
        m_encode.resetState();
        return whole ? bytes.toStdString() : std::string();
    }

    Hunspell m_hunspell;
    QStringEncoder m_encode;
    QStringDecoder m_decode;
};

/// The files of a folder that fit the language, the best first, without their suffix.
QStringList candidates(const QDir& folder, const QString& language) {
    const QString general = language.section(u'_', 0, 0);
    QStringList names{language, general};
    for (const QString& other :
         folder.entryList({general + QStringLiteral("_*.dic")}, QDir::Files, QDir::Name)) {
        names.append(other.chopped(4));
    }
    return names;
}

std::unique_ptr<SpellChecker> open(const QString& path) {
    const QString affixes = path + QStringLiteral(".aff");
    const QString words = path + QStringLiteral(".dic");
    if (!QFileInfo(affixes).isReadable() || !QFileInfo(words).isReadable()) {
        return nullptr;
    }
    auto checker = std::make_unique<HunspellChecker>(affixes, words);
    return checker->isUsable() ? std::move(checker) : nullptr;
}

} // namespace

SpellChecker::~SpellChecker() = default;

QStringList dictionaryFolders() {
    QStringList folders = qEnvironmentVariable("DICPATH").split(u':', Qt::SkipEmptyParts);
    for (const QString& data :
         QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation)) {
        folders.append(data + QStringLiteral("/hunspell"));
        folders.append(data + QStringLiteral("/myspell/dicts"));
    }
    return folders;
}

std::unique_ptr<SpellChecker> openDictionary(const QString& language, const QStringList& folders) {
    if (language.size() < 2) {
        return nullptr; // "C" is no language
    }
    for (const QString& folder : folders) {
        for (const QString& name : candidates(QDir(folder), language)) {
            if (auto checker = open(folder + u'/' + name)) {
                return checker;
            }
        }
    }
    return nullptr;
}

} // namespace yrw
