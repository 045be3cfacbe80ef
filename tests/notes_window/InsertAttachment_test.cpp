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

TEST_F(InsertAttachment, OkRaisesTheChoiceWhileHiddenAndAFailureClosesIt) {
    for (const ObjectDisplay chosen : {ObjectDisplay::Icon, ObjectDisplay::Content}) {
        const bool fails = chosen == ObjectDisplay::Content;
        open(fails ? ObjectDisplay::Icon : ObjectDisplay::Content);
        control<QLineEdit>("txtFile").setText("/a/b.txt");
        press(fails ? "optDisplay(1)" : "optDisplay(0)");
        int raised = 0;
        const Connection continued =
            dialog->Continue.connect([&](const QString& file, ObjectDisplay display, bool&) {
                ++raised;
                EXPECT_EQ(file, "/a/b.txt");
                EXPECT_EQ(display, chosen);
                EXPECT_FALSE(dialog->isVisible());
                EXPECT_EQ(script.pointer, MousePointer::Hourglass);
                if (fails) {
                    throw AutomationError(kErrorDiskFull, "test", "no space");
                }
            });
        QTest::keyClick(&control<QLineEdit>("txtFile"), Qt::Key_Return);
        EXPECT_EQ(raised, 1);
        EXPECT_TRUE(dialog->isUnloaded());
        EXPECT_EQ(script.pointer, MousePointer::Default);
    }
}

} // namespace yrw::test
