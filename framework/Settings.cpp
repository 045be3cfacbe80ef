#include "framework/Settings.h"

#include "framework/HostUtility.h"

namespace yrw {

namespace {

const QString kApplication = QStringLiteral("Yarrowen");

constexpr int kDigits = 10; ///< of a stored number

constexpr const SettingKey* kTable[] = {
    &setting::kCheckAutoNotes,
    &setting::kCheckForReminders,
    &setting::kFlagNotesRow,
    &setting::kHighlightNotesRow,
    &setting::kShowPopupWindow,
    &setting::kShowAutoPopup,
    &setting::kShowUserNotes,
    &setting::kWindowState,
    &setting::kHeight,
    &setting::kWidth,
    &setting::kDefaultFontName,
    &setting::kDefaultFontSize,
    &setting::kDefaultFontBold,
    &setting::kDefaultFontItalic,
    &setting::kDefaultFontUnderline,
    &setting::kDefaultFontStrikethru,
    &setting::kDefaultFontColour,
    &setting::kPopupHeight,
    &setting::kPopupWidth,
    &setting::kLargestAttachment,
    &setting::kPasteKeepsLook,
    &setting::kCheckSpelling,
    &setting::kSpellingLanguage,
    &setting::kDailyCopy,
    &setting::kLastFolder,
    &setting::kColumnWidths,
    &setting::kToolbarBands,
};

QString sectionOf(const SettingKey& which) {
    return which.section == SettingSection::Own ? QStringLiteral("YRWNotes Options")
                                                : QStringLiteral("YRWNotes Settings");
}

QString keyOf(const SettingKey& which) {
    return QString::fromUtf16(which.key);
}

std::optional<double> numberIn(const QString& text) {
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

bool flagIn(const setting::Flag& which, const QString& text) {
    const QString byDefault = QString::fromUtf16(which.defaultText);
    return HostUtility::TextToBoolean(text, HostUtility::TextToBoolean(byDefault, false));
}

} // namespace

std::span<const SettingKey* const> NotesSettings::table() {
    return kTable;
}

bool NotesSettings::get(const setting::Flag& which) const {
    return flagIn(which, stored(which));
}

qint64 NotesSettings::get(const setting::Number& which) const {
    bool isNumber = false;
    const qint64 number = stored(which).toLongLong(&isNumber);
    return isNumber ? number : QString::fromUtf16(which.defaultText).toLongLong();
}

double NotesSettings::get(const setting::Real& which) const {
    return numberIn(stored(which)).value_or(QString::fromUtf16(which.defaultText).toDouble());
}

std::optional<double> NotesSettings::get(const setting::MaybeReal& which) const {
    return numberIn(stored(which));
}

QString NotesSettings::get(const setting::Text& which) const {
    return stored(which);
}

void NotesSettings::set(const setting::Flag& which, bool value) {
    store(which, HostUtility::BooleanToText(value));
}

void NotesSettings::set(const setting::Number& which, qint64 value) {
    store(which, QString::number(value));
}

void NotesSettings::set(const setting::Real& which, double value) {
    store(which, QString::number(value, 'g', kDigits));
}

void NotesSettings::set(const setting::MaybeReal& which, double value) {
    store(which, QString::number(value, 'g', kDigits));
}

void NotesSettings::set(const setting::Text& which, const QString& value) {
    store(which, value);
}

Connection NotesSettings::whenSet(const setting::Flag& which,
                                  std::function<void(bool)> handler) const {
    return m_store.Changed.connect(
        [&which, handler = std::move(handler)](const QString& application, const QString& section,
                                               const QString& key, const QString& text) {
            if (application == kApplication && section == sectionOf(which) && key == keyOf(which)) {
                handler(flagIn(which, text));
            }
        });
}

void NotesSettings::remove(const SettingKey& which) {
    if (!m_store.get(kApplication, sectionOf(which), keyOf(which), {}).isNull()) {
        m_store.remove(kApplication, sectionOf(which), keyOf(which));
    }
}

QString NotesSettings::stored(const SettingKey& which) const {
    return m_store.get(kApplication, sectionOf(which), keyOf(which),
                       QString::fromUtf16(which.defaultText));
}

void NotesSettings::store(const SettingKey& which, const QString& text) {
    m_store.save(kApplication, sectionOf(which), keyOf(which), text);
}

} // namespace yrw
