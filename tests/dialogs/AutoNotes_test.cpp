// The popup of automatic notes: its rows, its place and size, and what it tells the add-in.
#include "dialogs/frmAutoNotes.h"
#include "platform/forms/ScreenMetrics.h"
#include "platform/forms/Twips.h"
#include "tests/support/FakeAddIn.h"

#include <QHeaderView>
#include <QPointer>
#include <QScreen>
#include <QScrollBar>
#include <QTableWidget>
#include <QTest>

using namespace yrw;
using namespace yrw::test;

namespace {

class AutoNotesPopup : public testing::Test {
protected:
    AutoNotesPopup() {
        host.setGeometry(100, 80, 600, 400);
        host.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&host));
        open(frmAutoNotes::Placement::OwnWindow);
    }
    ~AutoNotesPopup() override { delete popup; }

    void open(frmAutoNotes::Placement placement) {
        delete popup;
        popup = new frmAutoNotes(world.services(), &host, placement);
        calls.clear();
        QObject::connect(popup, &frmAutoNotes::ShowNote, &host,
                         [this](qint64 id) { calls += QStringLiteral("show %1").arg(id); });
        QObject::connect(popup, &frmAutoNotes::CancelFocusCheck, &host,
                         [this] { calls += QStringLiteral("cancel"); });
        QObject::connect(popup, &frmAutoNotes::UnloadForm, &host,
                         [this] { calls += QStringLiteral("unload"); });
        QObject::connect(popup, &frmAutoNotes::settled, &host,
                         [this] { calls += QStringLiteral("settled"); });
    }
    /// Adds notes 1 to `count` and places the popup at the host's window.
    void fill(int count) {
        for (int id = 1; id <= count; ++id) {
            popup->AddNote(QStringLiteral("Customer: Larch [ANNA NOTES]"), id,
                           QStringLiteral("Subject %1").arg(id), QStringLiteral("Text"), id == 1);
        }
        place();
    }
    void place() {
        const QRect at = host.frameGeometry();
        popup->SetPosition(pixelsToTwips(at.x()), pixelsToTwips(at.y()), pixelsToTwips(at.height()),
                           pixelsToTwips(at.width()));
    }
    void present() {
        popup->present();
        EXPECT_TRUE(QTest::qWaitFor([this] { return calls.contains(QStringLiteral("settled")); }));
        calls.clear();
    }
    [[nodiscard]] QTableWidget& list() const {
        return *popup->findChild<QTableWidget*>(QStringLiteral("flxThis"));
    }
    [[nodiscard]] QPoint middleOf(int row) const {
        return list().visualItemRect(list().item(row, 0)).center();
    }
    void doubleClick(int row) const {
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, middleOf(row));
        QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, middleOf(row));
    }
    void store(const char* key, const QString& text) {
        storeText(addIn->settings(), QLatin1String(key), text);
    }
    [[nodiscard]] QString stored(const char* key) {
        return storedText(addIn->settings(), QLatin1String(key));
    }

    TestStore world;
    PromptScript prompt;
    Ref<FakeAddIn> addIn = make<FakeAddIn>(world, prompt);
    QWidget host;
    QPointer<frmAutoNotes> popup;
    QStringList calls;
};

TEST_F(AutoNotesPopup, ScreenReadersHearWhatComesUpAndTheKeyboardStays) {
    fill(12);
    present();
    const QString words =
        QStringLiteral("Automatic Notes. Customer: Larch [ANNA NOTES]. Subject 1. "
                       "Subject 2. Subject 3. Subject 4. Subject 5. Subject 6. "
                       "Subject 7. 5 more");
    const auto* const said = popup->findChild<QWidget*>(QStringLiteral("announcement"));
    ASSERT_NE(said, nullptr);
    EXPECT_EQ(said->accessibleName(), words);
    EXPECT_TRUE(said->isVisible());
    EXPECT_EQ(popup->accessibleName(), QStringLiteral("Automatic Notes"));
    EXPECT_EQ(popup->accessibleDescription(), words);
    EXPECT_TRUE(host.isActiveWindow());
}

TEST_F(AutoNotesPopup, NotesOfOneCategoryFollowUnderOneHeading) {
    popup->AddNote(QStringLiteral("First"), 4, QStringLiteral("Left over"), {}, true);
    popup->AddNote(QStringLiteral("First"), 7, QStringLiteral("Ring"), QStringLiteral("At\r\nsix"),
                   true);
    popup->AddNote(QStringLiteral("First"), 8, QStringLiteral("Write"), {}, false);
    popup->AddNote(QStringLiteral("Second"), 9, QStringLiteral("Visit"), QStringLiteral("<b>x"),
                   false);
    struct Row {
        const char* text;
        int noteID;
        QRgb back; ///< 0: as the theme has it
        bool bold;
    };
    const QRgb heading = qRgb(0xFF, 0xC0, 0x80);
    const QRgb subject = qRgb(0xFF, 0xFF, 0x80);
    const Row rows[] = {
        {"First", 0, heading, true}, {"Ring", 7, subject, true}, {"At\nsix", 7, 0, false},
        {"Write", 8, subject, true}, {"", 8, 0, false},          {"Second", 0, heading, true},
        {"Visit", 9, subject, true}, {"<b>x", 9, 0, false},
    };
    ASSERT_EQ(list().rowCount(), static_cast<int>(std::size(rows)));
    for (int i = 0; i < list().rowCount(); ++i) {
        const QTableWidgetItem& cell = *list().item(i, 0);
        EXPECT_EQ(cell.text(), rows[i].text);
        EXPECT_EQ(cell.data(Qt::UserRole).toLongLong(), rows[i].noteID) << i;
        EXPECT_EQ(cell.font().bold(), rows[i].bold) << i;
        if (rows[i].back == 0) {
            EXPECT_EQ(cell.background().style(), Qt::NoBrush) << i;
        } else {
            EXPECT_EQ(cell.background().color().rgb(), rows[i].back) << i;
            EXPECT_EQ(cell.foreground().color(), QColor(Qt::black)) << i;
        }
    }
    EXPECT_EQ(list().item(0, 0)->font().pointSize(), 12);
    EXPECT_EQ(list().font().family(), QStringLiteral("Comic Sans MS"));
}

TEST_F(AutoNotesPopup, ARowIsAsTallAsItsWrappedTextAlsoAfterAResize) {
    QString text;
    for (int word = 0; word < 60; ++word) {
        text += QStringLiteral("word ");
    }
    popup->AddNote(QStringLiteral("C"), 1, QStringLiteral("S"), QStringLiteral("a\nb\n\nd"), true);
    popup->AddNote(QStringLiteral("C"), 2, QStringLiteral("S"), text, false);
    popup->AddNote(QStringLiteral("C"), 3, QStringLiteral("S"), QString(400, u'x'), false);
    place();
    present();
    const int line = popup->fontMetrics().height();
    EXPECT_EQ(list().rowHeight(1), line + 5);
    EXPECT_EQ(list().rowHeight(2), 4 * line + 5);
    const int words = list().rowHeight(4);
    EXPECT_GT(words, 3 * line);
    EXPECT_GT(list().rowHeight(6), 4 * line); // one long word is broken, not cut
    popup->resize(popup->width() * 2, popup->height());
    EXPECT_TRUE(QTest::qWaitFor([&] { return list().rowHeight(4) < words; }));
    EXPECT_EQ(list().rowHeight(2), 4 * line + 5);
    const int room = list().width() - list().columnWidth(0);
    EXPECT_GE(room, systemMetric(SystemMetric::VerticalScrollArrow));
    EXPECT_LE(room, systemMetric(SystemMetric::VerticalScrollArrow) + 2 * list().frameWidth());
}

TEST_F(AutoNotesPopup, StandsInTheUpperRightOfTheHostWithinItsScreen) {
    const QList<QScreen*> screens = QGuiApplication::screens();
    ASSERT_EQ(screens.size(), 2);
    struct Case {
        QPoint host;
        int screen;
    };
    for (const Case& one :
         {Case{{100, 0}, 0}, Case{{100, 300}, 0}, Case{{900, 400}, 1}, Case{{1800, 400}, 1}}) {
        SCOPED_TRACE(one.host.x() + one.host.y());
        open(frmAutoNotes::Placement::OwnWindow);
        host.move(one.host);
        fill(2);
        present();
        const QRect frame = popup->frameGeometry();
        const QRect screen = screens.at(one.screen)->geometry();
        EXPECT_EQ(frame.top(), screen.top() + systemMetric(SystemMetric::CaptionHeight));
        const int border = systemMetric(SystemMetric::SizingFrameWidth);
        EXPECT_EQ(frame.right(), std::min(host.frameGeometry().right() - border, screen.right()));
        EXPECT_GE(frame.left(), screen.left());
    }
}

TEST_F(AutoNotesPopup, KeepsItsSizeAsAFractionOfTheHosts) {
    fill(2);
    present();
    popup->resize(300, 200);
    const QSize size = popup->frameGeometry().size();
    const QSize hostSize = host.frameGeometry().size();
    popup->unload();
    EXPECT_NEAR(stored("PopupWindow-W").toDouble(), 1.0 * size.width() / hostSize.width(), 1e-6);
    EXPECT_NEAR(stored("PopupWindow-H").toDouble(), 1.0 * size.height() / hostSize.height(), 1e-6);
    // The same again, however often it opens and closes, and in proportion in a larger window.
    for (int round = 0; round < 3; ++round) {
        open(frmAutoNotes::Placement::OwnWindow);
        fill(2);
        present();
        EXPECT_EQ(popup->size(), QSize(300, 200)) << round;
        popup->unload();
    }
    host.resize(host.width() + 150, host.height());
    open(frmAutoNotes::Placement::OwnWindow);
    fill(2);
    EXPECT_GT(popup->width(), 360);
    EXPECT_EQ(popup->height(), 200);
}

TEST_F(AutoNotesPopup, ABrokenStoredFractionIsDeletedAndTheSizeOfNowKept) {
    const QSize designed = popup->size();
    for (const char* text : {"", "wide", "0", "-0.5", "nan", "inf", "0,5", "1e400"}) {
        store("PopupWindow-H", QLatin1String(text));
        store("PopupWindow-W", QLatin1String(text));
        open(frmAutoNotes::Placement::OwnWindow);
        fill(1);
        EXPECT_EQ(popup->size(), designed) << text;
        EXPECT_EQ(stored("PopupWindow-H"), QString()) << text;
        EXPECT_EQ(stored("PopupWindow-W"), QString()) << text;
    }
    // A number that makes no usable window is bounded by least size and screen.
    const std::pair<const char*, bool> extremes[] = {{"0.0001", false}, {"5000", true}};
    for (const auto& [text, large] : extremes) {
        store("PopupWindow-H", QLatin1String(text));
        store("PopupWindow-W", QLatin1String(text));
        open(frmAutoNotes::Placement::OwnWindow);
        fill(1);
        EXPECT_EQ(popup->width() > designed.width(), large) << text;
        EXPECT_GE(popup->height(), 100) << text;
        EXPECT_TRUE(host.screen()->geometry().contains(popup->geometry())) << text;
    }
    // Without a host's size there is no fraction.
    open(frmAutoNotes::Placement::OwnWindow);
    popup->AddNote(QStringLiteral("C"), 1, QStringLiteral("S"), {}, true);
    store("PopupWindow-H", QStringLiteral("0.5"));
    popup->SetPosition(0, 0, 0, 0);
    EXPECT_EQ(popup->size(), designed);
    popup->present();
    popup->unload();
    EXPECT_EQ(stored("PopupWindow-H"), QStringLiteral("0.5"));
}

TEST_F(AutoNotesPopup, ClosedWhileHiddenItSavesAndTellsNothing) {
    fill(1);
    popup->load();
    calls.clear();
    popup->unload();
    EXPECT_TRUE(calls.isEmpty());
    EXPECT_EQ(stored("PopupWindow-H"), QString());
}

TEST_F(AutoNotesPopup, ADoubleClickOnANoteShowsItAndOneOnAHeadingNothing) {
    fill(2);
    present();
    const std::pair<int, QStringList> rows[] = {{0, {}},
                                                {1, {QStringLiteral("show 1")}},
                                                {2, {QStringLiteral("show 1")}},
                                                {4, {QStringLiteral("show 2")}}};
    for (const auto& [row, shown] : rows) {
        calls.clear();
        doubleClick(row);
        EXPECT_EQ(calls.filter(QStringLiteral("show")), shown) << row;
        EXPECT_TRUE(calls.contains(QStringLiteral("cancel"))) << row;
    }
    calls.clear();
    QTest::keyClick(&list(), Qt::Key_Return);
    EXPECT_EQ(calls.filter(QStringLiteral("show")), QStringList{QStringLiteral("show 2")});
}

TEST_F(AutoNotesPopup, EveryUseCancelsTheFocusCheckAndNothingElseDoes) {
    fill(20);
    EXPECT_TRUE(calls.contains(QStringLiteral("cancel"))); // placing it lays it out
    present();
    popup->AddNote(QStringLiteral("C"), 99, QStringLiteral("S"), {}, false);
    popup->ResizeForm();
    QTest::qWait(20);
    EXPECT_TRUE(calls.isEmpty());
    QWidget* body = list().viewport();
    const std::pair<const char*, std::function<void()>> uses[] = {
        {"move", [&] { QTest::mouseMove(body, middleOf(1) + QPoint(3, 0)); }},
        {"press", [&] { QTest::mousePress(body, Qt::LeftButton, {}, middleOf(1)); }},
        {"select", [&] { list().setCurrentCell(3, 0); }},
        {"scroll", [&] { list().verticalScrollBar()->setValue(40); }},
        {"resize", [&] { popup->resize(popup->size() + QSize(10, 10)); }},
    };
    for (const auto& [name, use] : uses) {
        calls.clear();
        use();
        EXPECT_TRUE(QTest::qWaitFor([&] { return calls.contains(QStringLiteral("cancel")); }, 500))
            << name;
    }
    // Used before it has settled: it does not ask for the check afterwards.
    popup->unload();
    open(frmAutoNotes::Placement::OwnWindow);
    fill(2);
    popup->present();
    QTest::mousePress(list().viewport(), Qt::LeftButton, {}, middleOf(1));
    QTest::qWait(300);
    EXPECT_FALSE(calls.contains(QStringLiteral("settled")));
}

TEST_F(AutoNotesPopup, EscapeTellsAndClosesAlsoAsAPartOfTheHost) {
    for (const auto placement :
         {frmAutoNotes::Placement::OwnWindow, frmAutoNotes::Placement::InsideHost}) {
        open(placement);
        fill(2);
        present();
        QTest::keyClick(&list(), Qt::Key_Escape);
        ASSERT_FALSE(calls.isEmpty());
        EXPECT_EQ(calls.first(), QStringLiteral("unload"));
        EXPECT_TRUE(popup->isUnloaded());
        EXPECT_FALSE(popup->isVisible());
        EXPECT_TRUE(QTest::qWaitFor([this] { return popup.isNull(); })); // deletes itself
    }
    EXPECT_TRUE(host.isVisible());
}

TEST_F(AutoNotesPopup, WhereWindowsCannotBePlacedItIsAPartOfTheHost) {
    QWidget field(&host);
    field.setFocusPolicy(Qt::StrongFocus);
    field.show();
    field.setFocus();
    open(frmAutoNotes::Placement::InsideHost);
    fill(2);
    present();
    EXPECT_FALSE(popup->isWindow());
    EXPECT_EQ(popup->geometry().right(),
              host.width() - 1 - systemMetric(SystemMetric::SizingFrameWidth));
    EXPECT_EQ(popup->y(), systemMetric(SystemMetric::CaptionHeight));
    EXPECT_TRUE(field.hasFocus());
    QTest::mouseMove(list().viewport(), middleOf(1));
    EXPECT_TRUE(QTest::qWaitFor([&] { return calls.contains(QStringLiteral("cancel")); }, 500));
}

} // namespace
