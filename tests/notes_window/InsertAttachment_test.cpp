// The attachment dialog: what it offers, warns of and raises.
#include "notes_window/frmInsertAttachment.h"
#include "tests/support/FakeAddIn.h"

#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

namespace yrw::test {

class InsertAttachment : public NotesFixture {
protected:
    void open(ObjectDisplay display = ObjectDisplay::Content) {
        dialog = std::make_unique<frmInsertAttachment>(store);
        dialog->Initialise(addIn, display);
        dialog->load();
        dialog->show();
    }
    template <class Control>
    [[nodiscard]] Control& control(const char* name) const {
        return *dialog->findChild<Control*>(QLatin1String(name));
    }
    void press(const char* name) const { control<QAbstractButton>(name).click(); }

    PromptScript script;
    Ref<FakeAddIn> addIn = make<FakeAddIn>(store, script);
    std::unique_ptr<frmInsertAttachment> dialog;
};

TEST_F(InsertAttachment, WarnsOfLinksInAnyCase) {
    open();
    EXPECT_FALSE(control<QLabel>("lblForm(1)").isVisible());
    const std::pair<const char*, bool> cases[] = {
        {"/a/b.lnk", true}, {"/a/b.LNK", true}, {"/a/b.lnkx", false}, {"lnk", true}, {"", false}};
    for (const auto& [path, warns] : cases) {
        control<QLineEdit>("txtFile").setText(path);
        EXPECT_EQ(control<QLabel>("lblForm(1)").isVisible(), warns) << path;
    }
}

TEST_F(InsertAttachment, BrowsesWithTheFilterOfTheSystemSettings) {
    open();
    script.chooseFiles({store.folder() + "/first.txt", "/a/second.txt"});
    press("cmdBrowse");
    EXPECT_EQ(script.fileRequests.last().folder, "");
    open(); // the folder is remembered beyond the dialog
    script.chooseFiles({"/gone/first.txt"});
    press("cmdBrowse");
    EXPECT_EQ(script.fileRequests.last().folder, store.folder());
    script.chooseFiles({});
    press("cmdBrowse");
    EXPECT_EQ(script.fileRequests.last().folder, "");
    EXPECT_EQ(control<QLineEdit>("txtFile").text(), "/gone/first.txt");
    EXPECT_EQ(script.asked.first(), "Insert File: Please select the file to insert");
    EXPECT_TRUE(script.fileRequests[0].several);
    EXPECT_EQ(script.fileRequests[0].filter.count('|'), 10);
    EXPECT_TRUE(script.fileRequests[0].filter.startsWith(
        "Excel And Word Documents (*.xls, *.doc)|*.xls;*.doc|Word Documents (*.doc)|*.doc|Text"));

    store.database()->RunScript(
        "DELETE FROM tblSystem; INSERT INTO tblSystem (FileOpenFilter) VALUES ('Notes|*.nts|')");
    script.chooseFiles({});
    press("cmdBrowse");
    EXPECT_EQ(script.fileRequests[3].filter, "Notes|*.nts|");
}

TEST_F(InsertAttachment, OkRaisesTheChoiceWhileHiddenAndComesBackWhenCancelled) {
    struct Case {
        ObjectDisplay start;
        const char* click; ///< nothing keeps the start
        ObjectDisplay raised;
        bool cancel;
        bool fails;
    };
    const Case cases[] = {
        {ObjectDisplay::Icon, nullptr, ObjectDisplay::Icon, false, false},
        {ObjectDisplay::Content, nullptr, ObjectDisplay::Content, true, false},
        {ObjectDisplay::Content, "optDisplay(0)", ObjectDisplay::Icon, false, false},
        {ObjectDisplay::Icon, "optDisplay(1)", ObjectDisplay::Content, false, true},
    };
    for (const Case& each : cases) {
        open(each.start);
        control<QLineEdit>("txtFile").setText("/a/b.txt");
        if (each.click != nullptr) {
            press(each.click);
        }
        int raised = 0;
        const Connection chosen =
            dialog->Continue.connect([&](const QString& file, ObjectDisplay display, bool& cancel) {
                ++raised;
                EXPECT_EQ(file, "/a/b.txt");
                EXPECT_EQ(display, each.raised);
                EXPECT_FALSE(cancel);
                EXPECT_FALSE(dialog->isVisible());
                EXPECT_EQ(script.pointer, MousePointer::Hourglass);
                cancel = each.cancel;
                if (each.fails) {
                    throw AutomationError(kErrorDiskFull, "test", "no space");
                }
            });
        QTest::keyClick(&control<QLineEdit>("txtFile"), Qt::Key_Return);
        EXPECT_EQ(raised, 1);
        EXPECT_EQ(dialog->isVisible(), each.cancel);
        EXPECT_EQ(dialog->isUnloaded(), !each.cancel);
        EXPECT_EQ(script.pointer, MousePointer::Default);
        QTest::keyClick(dialog.get(), Qt::Key_Escape);
        EXPECT_TRUE(dialog->isUnloaded());
        EXPECT_EQ(raised, 1);
    }
}

} // namespace yrw::test
