#include "platform/rtf/ShallowHtml.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <algorithm>

namespace yrw::rtf {
namespace {

TEST(ShallowHtml, KeepsTextAndStressAndLeavesOutTheRest) {
    struct Case {
        const char* html;
        const char* shallow;
    };
    const Case cases[] = {
        {"a <B>b</B> &amp; c", "a <b>b</b> &amp; c"},
        {"<html><head><title>t</title></head><body>x</body></html>", "<body>x</body>"},
        {"a<!-- <b> -->b<?php c ?>d<!DOCTYPE e>", "abd"},
        {"<script>1 < 2</p></script>x<SCRIPT>y</Script>z", "xz"},
        {"<script>never ended <p>x", ""},
        {"<b><i>a</b>b</i>", "<b><i>a</i></b>b"},
        {"a < b <3 </b> x", "a &lt; b &lt;3  x"},
        {"<<o>img src=file:///p.png>", "&lt;img src=file:///p.png>"},
        {"<a href='x\"y' onclick=\"z\">l</a>", "<a href=\"x&quot;y\">l</a>"},
        {"<p style=\"background:URL(file:///x)\" align=left>x", "<p align=\"left\">x</p>"},
        {"<img src=file:///p.png><img src='//h/p.png'><img alt=a src=' data:image/png;base64,A'>",
         "<img><img><img alt=\"a\" src=\"data:image/png;base64,A\">"},
        {"<iframe src=x>y</iframe><object data=x>z</object><link rel=stylesheet href=x>", ""},
        {"<td colspan=1000000 rowspan=-3>x", "<td colspan=\"60\" rowspan=\"1\">x</td>"},
        {"<style>b{color:red}</style><b>x</b>", "<style>b{color:red}</style><b>x</b>"},
        {"<style>@import 'x';</style><style>b{background:url(x)}</style>x", "x"},
        {"<b", ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(shallowHtml(QString::fromUtf8(c.html)).toStdString(), c.shallow) << c.html;
    }
}

TEST(ShallowHtml, IsNeitherDeepNorWide) {
    const auto most = [](const QString& html, const char* element) {
        int depth = 0;
        int deepest = 0;
        for (const QString& part : html.split(u'<')) {
            depth += part.startsWith(QLatin1String(element)) ? 1 : part.startsWith(u'/') ? -1 : 0;
            deepest = std::max(deepest, depth);
        }
        return deepest;
    };
    const QString deep =
        shallowHtml(QString(QStringLiteral("<div>").repeated(200000) + u"x</div>y"));
    EXPECT_EQ(most(deep, "div"), kDeepestElement);
    EXPECT_TRUE(deep.contains(u'x') && deep.contains(u'y'));
    const QString tables = shallowHtml(QString(QStringLiteral("<table><tr><td>c").repeated(10) +
                                               QStringLiteral("</td></tr></table>").repeated(10) +
                                               u"<table><tr><td>after"));
    EXPECT_EQ(tables.count(u"<table>"), kMostHtmlTables + 1);
    EXPECT_TRUE(tables.endsWith(u"<table><tr><td>after</td></tr></table>"));
    const QString many = shallowHtml(QStringLiteral("<b>x</b>").repeated(kMostElements + 10));
    EXPECT_EQ(many.count(u"<b>"), kMostElements);
    EXPECT_EQ(many.count(u'x'), kMostElements + 10);
    // Many rules for many elements, and attributes without end.
    const QString rules = QStringLiteral("<style>%1</style>%2")
                              .arg(QStringLiteral("b{top:0}").repeated(1000),
                                   QStringLiteral("<b>x</b>").repeated(1000));
    EXPECT_FALSE(shallowHtml(rules).contains(u"style"));
    EXPECT_LT(shallowHtml(QString(u"<p " + QStringLiteral("title=x ").repeated(100000))).size(),
              100);
    EXPECT_LT(shallowHtml(QString(u"<p style='" + QString(100000, u'x'))).size(), 100);
}

TEST(ShallowHtml, TextHasTheLinesOfTheBlocks) {
    EXPECT_EQ(textOfHtml(u"<style>b{}</style><p>a &lt;b&gt;\n c<br>d</p><p>&#233;&#x2014;&nosuch;"),
              QStringLiteral(u"a <b> c\nd\n\u00E9\u2014&nosuch;"));
}

} // namespace
} // namespace yrw::rtf
