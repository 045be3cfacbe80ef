// The tools in the host's toolbars and what their clicks do.
#include "tests/addin/AddInFixture.h"

using namespace yrw;
using namespace yrw::test;

namespace {

class ToolsTest : public AddInFixture {};

TEST_F(ToolsTest, TheFirstOfTheKnownBandsIsUsed) {
    const std::pair<const char*, const char*> cases[] = {{"Addins Main bndMain", "bndMain"},
                                                         {"Addins Main", "Main"},
                                                         {"Addins other", "Addins"},
                                                         {"other", "Addins"}};
    makeNotesDatabase();
    create();
    for (const auto& [bands, used] : cases) {
        SCOPED_TRACE(bands);
        while (window().componentBar->bandCount() > 0) {
            window().componentBar->removeBand(window().componentBar->bandAt(0)->key());
        }
        for (const QString& key : QString(bands).split(' ')) {
            window().componentBar->addBand(key, false);
        }
        ASSERT_TRUE(addIn->Activate());
        ITool* tool = showNotesTool(used);
        ASSERT_NE(tool, nullptr);
        EXPECT_EQ(tool->id(), 50800);
        EXPECT_EQ(tool->caption(), QStringLiteral("Show Notes"));
        ASSERT_TRUE(addIn->Activate());
        EXPECT_EQ(window().componentBar->findBand(used)->toolCount(), 1);
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

} // namespace
