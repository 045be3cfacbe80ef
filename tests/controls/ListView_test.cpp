#include "platform/controls/ListView.h"

#include <QTest>

#include <gtest/gtest.h>

using namespace yrw;

namespace {

ListItem item(const QString& key, const QStringList& texts, bool bold = false) {
    return {key, texts, bold, std::nullopt};
}

} // namespace

TEST(ListViewTest, sortsByShownText) {
    ListView list;
    list.addColumn("Date", "", 1500);
    list.addItems({item("xn1", {"b"}), item("xn2", {"a"})});
    list.setSorted(true);
    list.show();
    EXPECT_EQ(list.keyAt(0), "xn2");
}
