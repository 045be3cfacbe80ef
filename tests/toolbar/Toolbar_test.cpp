#include "platform/toolbar/Toolbar.h"

#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

using namespace yrw;

TEST(ToolbarSmoke, showsTools) {
    Toolbar bar;
    bar.loadLayoutText(R"({"version":1,"bands":[{"key":"bndA","tools":[
        {"id":1,"key":"tooA","caption":"&Add","icon":"document-new"}]}]})",
                       "x");
    bar.show();
    int clicks = 0;
    const Connection connection = bar.Click.connect([&](ITool&) { ++clicks; });
    QTest::mouseClick(bar.findChild<QToolButton*>("tooA"), Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
}
