#include "platform/toolbar/Toolbar.h"

#include "platform/files/FileSystem.h"
#include "tests/support/Raised.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace yrw;

namespace {

const QByteArray kGood = R"({"version":1,"bands":[
    {"key":"bndA","caption":"First","tools":[
        {"id":1,"key":"tooA","caption":"&Add","kind":"check","checked":true,"enabled":false},
        {"id":2,"key":"tooList","caption":"Show","kind":"combo","list":["x","y"],"text":"y"}]},
    {"key":"bndPopup","popup":true,"tools":[{"id":1,"key":"tooA","caption":"&Add"}]}]})";

QString faultOf(const QByteArray& json) {
    Toolbar bar;
    const AutomationError error =
        test::raisedBy([&] { bar.loadLayoutText(json, QStringLiteral("Menus.tb")); });
    EXPECT_EQ(error.number(), kErrorLayout);
    return error.description();
}

QByteArray withTool(const QByteArray& tool) {
    return R"({"version":1,"bands":[{"key":"b","tools":[{"id":7,"key":"k","caption":"c"},)" + tool +
           "]}]}";
}

TEST(ToolbarLayoutTest, toolsHaveWhatTheFileSays) {
    Toolbar bar;
    bar.loadLayoutText(kGood, "Menus.tb");
    ASSERT_EQ(bar.bandCount(), 2);
    EXPECT_EQ(bar.bandAt(0)->caption(), "First");
    EXPECT_TRUE(bar.findBand("BNDPOPUP")->isPopup());
    ITool* const tool = bar.findToolById(1);
    ASSERT_NE(tool, nullptr);
    EXPECT_EQ(tool->caption(), "&Add");
    EXPECT_EQ(tool->kind(), ToolKind::Check);
    EXPECT_TRUE(tool->isChecked());
    EXPECT_FALSE(tool->isEnabled());
    EXPECT_EQ(bar.findTool("toolist")->listIndex(), 2);
    EXPECT_EQ(bar.bandAt(2), nullptr);
    EXPECT_EQ(bar.findToolById(99), nullptr);
    EXPECT_EQ(bar.findTool("tooNone"), nullptr);
}

TEST(ToolbarLayoutTest, faultsAreNamedWithFileAndPlace) {
    const std::pair<QByteArray, QString> cases[] = {
        {"{\n\"version\":1,\n\"bands\":[}", "Menus.tb: line 3:"},
        {"[]", "Menus.tb: version"},
        {R"({"version":2,"bands":[]})", "Menus.tb: version must be 1"},
        {R"({"version":1})", "Menus.tb: bands is missing"},
        {R"({"version":1,"bands":{}})", "Menus.tb: bands must be a list"},
        {R"({"version":1,"bands":[5]})", "Menus.tb: bands[0] must be an object"},
        {R"({"version":1,"bands":[{"key":"a"}],"extra":1})", "Menus.tb: extra is not known"},
        {R"({"version":1,"bands":[{}]})", "bands[0].key is missing"},
        {R"({"version":1,"bands":[{"key":"a"},{"key":"A"}]})", "bands[1].key is 'A' a second time"},
        {R"({"version":1,"bands":[{"key":"a","popup":"yes"}]})", "bands[0].popup must be true"},
        {R"({"version":1,"bands":[{"key":"a","row":1.5}]})", "bands[0].row must be a whole"},
        {withTool(R"({"key":"t","caption":"c"})"), "bands[0].tools[1].id must be a whole"},
        {withTool(R"({"id":-1,"key":"t","caption":"c"})"), "tools[1].id must be a whole"},
        {withTool(R"({"id":1,"caption":"c"})"), "tools[1].key is missing"},
        {withTool(R"({"id":1,"key":"t"})"), "tools[1].caption is missing"},
        {withTool(R"({"id":1,"key":"K","caption":"c"})"), "tools[1].key is 'K' a second time"},
        {withTool(R"({"id":7,"key":"t","caption":"c"})"), "tools[1].id is 7 a second time"},
        {withTool(R"({"id":1,"key":"t","caption":"c","kind":"knob"})"), "kind is 'knob'"},
        {withTool(R"({"id":1,"key":"t","caption":"c","style":3})"), "style must be a text"},
        {withTool(R"({"id":1,"key":"t","caption":"c","lable":"x"})"), "lable is not known"},
        {withTool(R"({"id":1,"key":"t","caption":"c","list":["a"]})"), "list belongs to a combo"},
        {withTool(R"({"id":1,"key":"t","caption":"c","kind":"combo","list":[1]})"),
         "list must hold texts"},
    };
    for (const auto& [json, fault] : cases) {
        const QString found = faultOf(json);
        EXPECT_TRUE(found.contains(fault)) << json.toStdString() << " gave " << found.toStdString();
        EXPECT_TRUE(found.startsWith("Menus.tb: "));
    }
}

TEST(ToolbarLayoutTest, brokenFileChangesNothing) {
    Toolbar bar;
    bar.loadLayoutText(kGood, "Menus.tb");
    EXPECT_THROW(bar.loadLayoutText("{", "Menus.tb"), AutomationError);
    EXPECT_EQ(bar.bandCount(), 2);
    EXPECT_NE(bar.findTool("tooList"), nullptr);
}

TEST(ToolbarLayoutTest, fileIsFoundInAnyCaseAndAMissingOneIsNamed) {
    QTemporaryDir folder;
    QFile file(folder.filePath("Menus.tb"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(kGood);
    file.close();
    Toolbar bar;
    bar.loadLayout(FileSystem(), folder.path() + "\\menus.TB");
    EXPECT_EQ(bar.bandCount(), 2);
    EXPECT_TRUE(test::raisedBy([&] { bar.loadLayout(FileSystem(), folder.filePath("None.tb")); })
                    .description()
                    .contains("None.tb"));
}

} // namespace
