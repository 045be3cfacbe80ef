#include "framework/ErrorGuards.h"
#include "framework/Settings.h"
#include "tests/support/PromptScript.h"
#include "tests/support/StoredSettings.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <stdexcept>

namespace yrw {
namespace {

using test::storedText;
using test::storeText;

TEST(HostUtilityTest, TurnsTextIntoBooleans) {
    const struct {
        const char* text;
        bool whenTrue, whenFalse; // results for either default
    } cases[] = {
        {"True", true, true},    {" yes ", true, true}, {"ON", true, true},
        {"1", true, true},       {"-1", true, true},    {"2.5", true, true},
        {"False", false, false}, {"no", false, false},  {"Off", false, false},
        {"0", false, false},     {"0.0", false, false}, {"", true, false},
        {"maybe", true, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(HostUtility::TextToBoolean(QString::fromLatin1(c.text), true), c.whenTrue)
            << c.text;
        EXPECT_EQ(HostUtility::TextToBoolean(QString::fromLatin1(c.text), false), c.whenFalse)
            << c.text;
    }
}

TEST(HostUtilityTest, ReadsNullsAndKeys) {
    EXPECT_EQ(HostUtility::NullToText(QVariant()), QString());
    EXPECT_EQ(HostUtility::NullToText(17), QStringLiteral("17"));
    EXPECT_FALSE(HostUtility::NullToBoolean(QVariant()));
    EXPECT_TRUE(HostUtility::NullToBoolean(-1));
    EXPECT_FALSE(HostUtility::NullToBoolean(QStringLiteral("False")));
    const QString prefix = QStringLiteral("xn");
    EXPECT_EQ(HostUtility::RemoveKeyPrefix(QStringLiteral("xn17"), prefix), 17);
    EXPECT_EQ(HostUtility::RemoveKeyPrefix(QStringLiteral("xnx"), prefix), 0);
    EXPECT_EQ(HostUtility::RemoveKeyPrefix(QStringLiteral("17"), prefix), 0);
    EXPECT_EQ(HostUtility::RemoveKeyPrefix(QStringLiteral("xr17"), prefix), 0);
}

TEST(HostUtilityTest, OpenFileGivesTheFirstPathAndPassesTheFlag) {
    PromptScript prompt;
    const HostUtility utility(prompt);
    prompt.chooseFiles({});
    EXPECT_EQ(utility.OpenFile({}, {}, {}, 0), QString());
    prompt.chooseFiles({QStringLiteral("/a"), QStringLiteral("/b")});
    EXPECT_EQ(utility.OpenFile({}, {}, {}, kOpenFileAllowSeveral | 4), QStringLiteral("/a"));
    EXPECT_TRUE(prompt.fileRequests.last().several);
}

TEST(ErrorGuardsTest, ReportCarriesTheFixedWordsAndTheReason) {
    PromptScript prompt;
    const HostUtility utility(prompt);
    prompt.expectReport();
    const QString source = QStringLiteral("YRWNOTES.AddIn.ShowNotes");
    EXPECT_FALSE(reportErrors(utility, source, QStringLiteral("M"), QStringLiteral("T"),
                              [] { throw std::runtime_error("reason"); }));
    EXPECT_EQ(prompt.reports.last().source, source);
    EXPECT_EQ(prompt.reports.last().message, QStringLiteral("M"));
    EXPECT_EQ(prompt.reports.last().title, QStringLiteral("T"));
    EXPECT_EQ(prompt.reports.last().description, QStringLiteral("reason"));
    EXPECT_TRUE(reportErrors(utility, source, {}, {}, [] {}));
    EXPECT_FALSE(ignoreErrors([] { throw 1; }));
}

TEST(NotesSettingsTest, AnswersDefaultsAndOutsideNonsense) {
    const QTemporaryDir folder;
    SettingsStore store(folder.path());
    NotesSettings settings(store);
    EXPECT_TRUE(settings.get(setting::kCheckForReminders));
    EXPECT_EQ(settings.get(setting::kDefaultFontName), QStringLiteral("Comic Sans MS"));
    EXPECT_EQ(settings.get(setting::kLargestAttachment), 32);
    EXPECT_EQ(settings.get(setting::kHeight), std::nullopt);
    settings.remove(setting::kHeight);
    EXPECT_FALSE(QFile::exists(store.fileOf("Yarrowen"))) << "nothing to remove";

    settings.set(setting::kCheckForReminders, false);
    settings.set(setting::kDefaultFontSize, 10.5);
    settings.set(setting::kHeight, 6000);
    settings.set(setting::kDailyCopy, false); // one that no other program knows
    EXPECT_FALSE(settings.get(setting::kCheckForReminders));
    EXPECT_EQ(storedText(store, "CheckForReminders"), "False");
    EXPECT_EQ(storedText(store, "DefaultFontSize"), "10.5");
    EXPECT_EQ(storedText(store, "Height"), "6000");
    EXPECT_EQ(storedText(store, "DailyCopy"), "False");

    for (const QString key :
         {"CheckForReminders", "DefaultFontSize", "Height", "DefaultFontColour"}) {
        storeText(store, key, "perhaps");
    }
    EXPECT_TRUE(settings.get(setting::kCheckForReminders));
    EXPECT_EQ(settings.get(setting::kDefaultFontSize), 10);
    EXPECT_EQ(settings.get(setting::kDefaultFontColour), 0);
    EXPECT_EQ(settings.get(setting::kHeight), std::nullopt);
    settings.remove(setting::kHeight);
    EXPECT_EQ(storedText(store, "Height", "none"), "none");
}

// The page lists what the table holds, no more and no less.
TEST(NotesSettingsTest, ThePageOfSettingsIsTheTable) {
    QFile page(QStringLiteral(YRW_SOURCE_DIR "/docs/settings.md"));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    QStringList stands = QString::fromUtf8(page.readAll()).split(u'\n');
    stands.removeIf([](const QString& line) { return !line.startsWith(QStringLiteral("| `")); });
    QStringList wanted;
    for (const SettingKey* one : NotesSettings::table()) {
        const QString text = QString::fromUtf16(one->defaultText);
        wanted += QStringLiteral("| `%1` | %2 | %3 |")
                      .arg(QString::fromUtf16(one->key),
                           text.isEmpty() ? QStringLiteral("(empty)") : text,
                           QString::fromUtf8(one->meaning));
    }
    EXPECT_EQ(stands, wanted);
}

} // namespace
} // namespace yrw
