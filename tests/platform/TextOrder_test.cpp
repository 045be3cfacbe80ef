#include "platform/collation/TextOrder.h"

#include <QLocale>
#include <QScopeGuard>
#include <QStringList>

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

using namespace yrw;

namespace {

// The keys that a sorting compares, against the comparison of the texts and what each language
// says.
TEST(TextOrder, IsThatOfTheUsersLanguageInBothDirections) {
    const auto restore = qScopeGuard([] { QLocale::setDefault(QLocale::c()); });
    const struct {
        const char* locale;
        const char* inOrder; ///< separated by |
    } cases[] = {
        {"de_DE", "|😀|a|A|ab|Äpfel|Birnen|birnen 9|Öl|Zeta 10|zeta 9"},
        {"sv_SE", "Birnen|Zeta|Äpfel|Öl"},
        {"C", "|Äpfel|Birnen|zebra|Zeta"},
        // Dates keep the order of their characters, day first.
        {"th_TH", "|01/02/2026 09:30|01/03/2025 09:30|02/01/2026 08:00|02/01/2026 18:00"},
        {"de_DE", "#1|#10|#9"},
    };
    for (const auto& each : cases) {
        QLocale::setDefault(QLocale(each.locale));
        const QStringList wanted = QString::fromUtf8(each.inOrder).split(u'|');
        QStringList texts = wanted;
        std::reverse(texts.begin(), texts.end());
        texts += texts; // equal ones keep their order
        const std::vector<QStringView> views(texts.begin(), texts.end());
        for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
            std::vector<int> expected(views.size());
            std::iota(expected.begin(), expected.end(), 0);
            std::stable_sort(expected.begin(), expected.end(), [&](int a, int b) {
                const int compared = compareTexts(views[size_t(a)], views[size_t(b)]);
                return order == Qt::AscendingOrder ? compared < 0 : compared > 0;
            });
            EXPECT_EQ(orderOf(views, order, {}), expected) << each.inOrder;
            QStringList sorted;
            for (const int place : expected) {
                sorted.append(texts[place]);
            }
            sorted.removeDuplicates();
            QStringList shown = wanted;
            if (order == Qt::DescendingOrder) {
                std::reverse(shown.begin(), shown.end());
            }
            EXPECT_EQ(sorted, shown) << each.locale;
        }
    }
}

} // namespace
