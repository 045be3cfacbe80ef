#include "framework/Settings.h"

#include "framework/HostUtility.h"

#include <algorithm>

namespace yrw {

namespace {

const QString kApplication = QStringLiteral("Yarrowen");
const QString kSection = QStringLiteral("YRWNotes Settings");
const QString kOwnSection = QStringLiteral("YRWNotes Options");

constexpr SettingKey kKeys[] = {
    {u"CheckAutoNotes", u"True", "Watch the window's focus for the automatic notes"},
    {u"CheckForReminders", u"True", "Check for due reminders every minute"},
    {u"FlagNotesRow", u"True", "Mark the grid cells of rows that have notes"},
    {u"HighlightNotesRow", u"True", "Colour the grid rows that have notes"},
    {u"ShowPopupWindow", u"True", "Show automatic notes when the cursor rests on a row or cell"},
    {u"ShowAutoPopup", u"True",
     "Let automatic notes pop up at all; read at every check, written by nothing"},
    {u"ShowUserNotes", u"False", "List only the user's own notes"},
    {u"WindowState", u"0", "Notes window: 0 normal, 1 minimised, 2 maximised"},
    {u"Height", u"", "Height of the notes window in twips; empty: as designed"},
    {u"Width", u"", "Width of the notes window in twips; empty: as designed"},
    {u"DefaultFontName", u"Comic Sans MS", "Font of new notes"},
    {u"DefaultFontSize", u"10", "Size of that font in points, a whole number"},
    {u"DefaultFontBold", u"False", "Whether that font is bold"},
    {u"DefaultFontItalic", u"False", "Whether that font is italic"},
    {u"DefaultFontUnderline", u"False", "Whether that font is underlined"},
    {u"DefaultFontStrikethru", u"False", "Whether that font is struck through"},
    {u"DefaultFontColour", u"0", "Colour of new notes' text as &H00BBGGRR; 0 is black"},
    {u"PopupWindow-H", u"",
     "Height of the automatic notes as a fraction of the host window; empty: as designed"},
    {u"PopupWindow-W", u"",
     "Width of the automatic notes as a fraction of the host window; empty: as designed"},
    {u"LargestAttachment", u"32", "Largest file that can be attached to a note, in megabytes",
     SettingSection::Own},
    {u"PasteKeepsLook", u"False", "Whether pasted text keeps its own fonts, sizes and colours",
     SettingSection::Own},
    {u"CheckSpelling", u"True", "Underline unknown words where a dictionary is installed",
     SettingSection::Own},
    {u"SpellingLanguage", u"", "Language of the dictionary, as de_AT; empty: the user's",
     SettingSection::Own},
    {u"DailyCopy", u"True", "Copy the notes database once a day into Backups/Notes beside it",
     SettingSection::Own},
    {u"LastFolder", u"", "Folder that the last attached file was chosen in", SettingSection::Own},
    {u"ColumnWidths", u"", "Widths of the list's columns; empty: as designed", SettingSection::Own},
    {u"ToolbarBands", u"",
     "Rows of the notes window's toolbar bands and where floating ones are; empty: as the layout "
     "file says",
     SettingSection::Own},
};

const SettingKey* find(const QString& key) {
    const auto* found = std::find_if(std::begin(kKeys), std::end(kKeys), [&](const SettingKey& k) {
        return key.compare(QStringView(k.key), Qt::CaseInsensitive) == 0;
    });
    return found == std::end(kKeys) ? nullptr : found;
}

/// The table's default of a key; empty for a key that the table does not have.
QString defaultOf(const QString& key) {
    const SettingKey* found = find(key);
    return found == nullptr ? QString() : QString::fromUtf16(found->defaultText);
}

QString sectionOf(const QString& key) {
    const SettingKey* found = find(key);
    return found != nullptr && found->section == SettingSection::Own ? kOwnSection : kSection;
}

} // namespace

std::span<const SettingKey> NotesSettings::table() {
    return kKeys;
}

QString NotesSettings::text(const QString& key) const {
    return text(key, defaultOf(key));
}

QString NotesSettings::text(const QString& key, const QString& defaultText) const {
    return m_store.get(kApplication, sectionOf(key), key, defaultText);
}

bool NotesSettings::boolean(const QString& key) const {
    const bool defaultValue = HostUtility::TextToBoolean(defaultOf(key), false);
    return HostUtility::TextToBoolean(text(key), defaultValue);
}

void NotesSettings::setText(const QString& key, const QString& text) {
    m_store.save(kApplication, sectionOf(key), key, text);
}

void NotesSettings::setBoolean(const QString& key, bool value) {
    setText(key, HostUtility::BooleanToText(value));
}

void NotesSettings::remove(const QString& key) {
    m_store.remove(kApplication, sectionOf(key), key);
}

} // namespace yrw
