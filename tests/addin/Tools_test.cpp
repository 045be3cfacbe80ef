// The tools in the host's toolbars and what their clicks do.
#include "tests/addin/AddInFixture.h"

using namespace yrw;
using namespace yrw::test;

namespace {

class ToolsTest : public AddInFixture {};

TEST_F(ToolsTest, TheFirstOfTheKnownBandsIsUsed) {
    struct Case {
        QStringList bands;
        QString used;
    };
    const Case cases[] = {
        {{QStringLiteral("Addins"), QStringLiteral("Main"), QStringLiteral("bndMain")},
         QStringLiteral("bndMain")},
        {{QStringLiteral("Addins"), QStringLiteral("Main")}, QStringLiteral("Main")},
        {{QStringLiteral("Addins"), QStringLiteral("other")}, QStringLiteral("Addins")},
        {{QStringLiteral("other")}, QStringLiteral("Addins")},
    };
    makeNotesDatabase();
    create();
    for (const Case& bands : cases) {
        SCOPED_TRACE(bands.bands.join(QLatin1Char(' ')).toStdString());
        while (window().componentBar->bandCount() > 0) {
            window().componentBar->removeBand(window().componentBar->bandAt(0)->key());
        }
        for (const QString& key : bands.bands) {
            window().componentBar->addBand(key, false);
        }
        ASSERT_TRUE(addIn->Activate());
        ITool* tool = showNotesTool(bands.used);
        ASSERT_NE(tool, nullptr);
        EXPECT_EQ(tool->id(), 50800);
        EXPECT_EQ(tool->caption(), QStringLiteral("Show Notes"));
        ASSERT_TRUE(addIn->Activate());
        EXPECT_EQ(window().componentBar->findBand(bands.used)->toolCount(), 1);
        addIn->DeActivate();
        EXPECT_EQ(window().componentBar->findTool(kNotesToolKey), nullptr);
    }
}

TEST_F(ToolsTest, TheGridsMenuGetsTheToolOnceAndOnlyThatMenu) {
    activate();
    IBand& other = window().interfaceBar->addBand(QStringLiteral("bndOther"), true);
    window().interfaceBar->BandOpen.raise(other);
    EXPECT_EQ(other.toolCount(), 0);
    window().interfaceBar->BandOpen.raise(gridBand());
    window().interfaceBar->BandOpen.raise(gridBand());
    ASSERT_EQ(gridBand().toolCount(), 1);
    EXPECT_EQ(gridBand().toolAt(0)->id(), 50801);
    EXPECT_EQ(gridBand().toolAt(0)->caption(), QStringLiteral("&Notes"));
    EXPECT_TRUE(gridBand().toolAt(0)->beginsGroup());

    addIn->DeActivate();
    EXPECT_EQ(gridBand().toolCount(), 0);
    window().interfaceBar->BandOpen.raise(gridBand());
    EXPECT_EQ(gridBand().toolCount(), 0);
    ASSERT_TRUE(addIn->Activate());
    window().interfaceBar->BandOpen.raise(gridBand());
    EXPECT_EQ(gridBand().toolCount(), 1);
}

TEST_F(ToolsTest, AToolClickedWhileClosedIsOffUntilTheNextActivate) {
    activate();
    window().interfaceBar->BandOpen.raise(gridBand());
    Module1::instance().application().Terminate();
    window().componentBar->activate(kNotesToolKey);
    window().interfaceBar->activate(kNotesToolKey);
    EXPECT_FALSE(showNotesTool()->isEnabled());
    EXPECT_FALSE(gridBand().toolAt(0)->isEnabled());
    EXPECT_TRUE(formsNamed(QStringLiteral("frmMain")).isEmpty());
    EXPECT_EQ(prompt.pointer, MousePointer::Default);
    ASSERT_TRUE(addIn->Activate());
    EXPECT_TRUE(showNotesTool()->isEnabled());
    EXPECT_TRUE(gridBand().toolAt(0)->isEnabled());
}

TEST_F(ToolsTest, ClicksShowTheNotesOfTheRecordOrOfNone) {
    activate();
    window().upper->grid->setCurrentRow(1);
    QStringList captions;
    const auto close = [&](Form& form) {
        captions += form.windowTitle();
        EXPECT_EQ(window().status, QStringLiteral("Showing Notes..."));
        EXPECT_EQ(prompt.pointer, MousePointer::Default);
        form.unload();
    };
    whenShown(QStringLiteral("frmMain"), close);
    window().componentBar->activate(kNotesToolKey);
    whenShown(QStringLiteral("frmMain"), close);
    clickGridNotes();
    ASSERT_EQ(captions.size(), 2);
    EXPECT_TRUE(captions[0].contains(QStringLiteral("System Notes")));
    EXPECT_TRUE(captions[1].contains(QStringLiteral("Ferry Lane"))) << captions[1].toStdString();
    EXPECT_EQ(window().status, QString());
}

TEST_F(ToolsTest, TheStatusBarOpensNotesOnlyWhileItShowsAMessageAboutThem) {
    activate();
    int shown = 0;
    for (const char* tag : {"", "98987987", "989879879 ", "989879879"}) {
        if (QLatin1String(tag) == AutoNotes::kMarker) {
            whenShown(QStringLiteral("frmMain"), [&](Form& form) {
                ++shown;
                form.unload();
            });
        }
        window().statusBar->setTag(QLatin1String(tag));
        QTest::mouseDClick(window().statusBar, Qt::LeftButton);
    }
    EXPECT_EQ(shown, 1);
}

} // namespace
