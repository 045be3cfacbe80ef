#pragma once

#include "platform/settings/SettingsStore.h"

#include <QString>

#include <functional>
#include <optional>
#include <span>

namespace yrw {

/// Section of the per-user settings that a key lies in.
enum class SettingSection {
    Notes, ///< "YRWNotes Settings", shared with other programs that know these keys
    Own,   ///< "YRWNotes Options", what this add-in alone knows
};

/// One key of the per-user settings, its default as it would be stored, and its section.
struct SettingKey {
    const char16_t* key;
    const char16_t* defaultText;
    const char* meaning;
    SettingSection section = SettingSection::Notes;
};

/// A key with the type of its value.
template <class T>
struct Setting : SettingKey {};

/// Every setting of the notes add-in: key, type, default and meaning.
namespace setting {

using enum SettingSection;
using Flag = Setting<bool>;
using Number = Setting<qint64>;
using Real = Setting<double>;
using Text = Setting<QString>;
using MaybeReal = Setting<std::optional<double>>;

inline constexpr Flag kCheckAutoNotes{
    {u"CheckAutoNotes", u"True", "Watch the window's focus for the automatic notes"}};
inline constexpr Flag kCheckForReminders{
    {u"CheckForReminders", u"True", "Check for due reminders every minute"}};
inline constexpr Flag kFlagNotesRow{
    {u"FlagNotesRow", u"True", "Mark the grid cells of rows that have notes"}};
inline constexpr Flag kHighlightNotesRow{
    {u"HighlightNotesRow", u"True", "Colour the grid rows that have notes"}};
inline constexpr Flag kShowPopupWindow{
    {u"ShowPopupWindow", u"True", "Show automatic notes when the cursor rests on a row or cell"}};
inline constexpr Flag kShowAutoPopup{
    {u"ShowAutoPopup", u"True",
     "Let automatic notes pop up at all; read at every check, written by nothing"}};
inline constexpr Flag kShowUserNotes{
    {u"ShowUserNotes", u"False", "List only the user's own notes"}};
inline constexpr Number kWindowState{
    {u"WindowState", u"0", "Notes window: 0 normal, 1 minimised, 2 maximised"}};
inline constexpr MaybeReal kHeight{
    {u"Height", u"", "Height of the notes window in twips; empty: as designed"}};
inline constexpr MaybeReal kWidth{
    {u"Width", u"", "Width of the notes window in twips; empty: as designed"}};
inline constexpr Text kDefaultFontName{{u"DefaultFontName", u"Comic Sans MS", "Font of new notes"}};
inline constexpr Real kDefaultFontSize{
    {u"DefaultFontSize", u"10", "Size of that font in points, a whole number"}};
inline constexpr Flag kDefaultFontBold{{u"DefaultFontBold", u"False", "Whether that font is bold"}};
inline constexpr Flag kDefaultFontItalic{
    {u"DefaultFontItalic", u"False", "Whether that font is italic"}};
inline constexpr Flag kDefaultFontUnderline{
    {u"DefaultFontUnderline", u"False", "Whether that font is underlined"}};
inline constexpr Flag kDefaultFontStrikethru{
    {u"DefaultFontStrikethru", u"False", "Whether that font is struck through"}};
inline constexpr Number kDefaultFontColour{
    {u"DefaultFontColour", u"0", "Colour of new notes' text as &H00BBGGRR; 0 is black"}};
inline constexpr MaybeReal kPopupHeight{
    {u"PopupWindow-H", u"",
     "Height of the automatic notes as a fraction of the host window; empty: as designed"}};
inline constexpr MaybeReal kPopupWidth{
    {u"PopupWindow-W", u"",
     "Width of the automatic notes as a fraction of the host window; empty: as designed"}};
inline constexpr Number kLargestAttachment{
    {u"LargestAttachment", u"32", "Largest file that can be attached to a note, in megabytes",
     Own}};
inline constexpr Flag kPasteKeepsLook{{u"PasteKeepsLook", u"False",
                                       "Whether pasted text keeps its own fonts, sizes and colours",
                                       Own}};
inline constexpr Flag kCheckSpelling{
    {u"CheckSpelling", u"True", "Underline unknown words where a dictionary is installed", Own}};
inline constexpr Text kSpellingLanguage{
    {u"SpellingLanguage", u"", "Language of the dictionary, as de_AT; empty: the user's", Own}};
inline constexpr Flag kDailyCopy{{u"DailyCopy", u"True",
                                  "Copy the notes database once a day into Backups/Notes beside it",
                                  Own}};
inline constexpr Text kLastFolder{
    {u"LastFolder", u"", "Folder that the last attached file was chosen in", Own}};
inline constexpr Text kColumnWidths{
    {u"ColumnWidths", u"", "Widths of the list's columns; empty: as designed", Own}};
inline constexpr Text kToolbarBands{
    {u"ToolbarBands", u"",
     "Rows of the notes window's toolbar bands and where floating ones are; empty: as the layout "
     "file says",
     Own}};

} // namespace setting

/// The per-user settings of the notes add-in: application "Yarrowen", two sections. What cannot be
/// read as a setting's type counts as its default. Booleans are stored as "True" or "False".
/// Lifetime: the store's at most. Thread: the user-interface thread.
class NotesSettings {
public:
    explicit NotesSettings(SettingsStore& store) : m_store(store) {}

    /// Every setting, in the order of the page that lists them.
    [[nodiscard]] static std::span<const SettingKey* const> table();

    [[nodiscard]] bool get(const setting::Flag& which) const;
    [[nodiscard]] qint64 get(const setting::Number& which) const;
    [[nodiscard]] double get(const setting::Real& which) const;
    /// The stored number; nothing where there is none.
    [[nodiscard]] std::optional<double> get(const setting::MaybeReal& which) const;
    [[nodiscard]] QString get(const setting::Text& which) const;

    void set(const setting::Flag& which, bool value);
    void set(const setting::Number& which, qint64 value);
    void set(const setting::Real& which, double value);
    void set(const setting::MaybeReal& which, double value);
    void set(const setting::Text& which, const QString& value);

    /// Calls the handler with every value that is set in this process from now on, also one that
    /// the file cannot keep, while the guard that comes back lives.
    [[nodiscard]] Connection whenSet(const setting::Flag& which,
                                     std::function<void(bool)> handler) const;

    /// Back to the default; nothing is written where nothing is stored.
    void remove(const SettingKey& which);

private:
    [[nodiscard]] QString stored(const SettingKey& which) const;
    void store(const SettingKey& which, const QString& text);

    SettingsStore& m_store;
};

} // namespace yrw
