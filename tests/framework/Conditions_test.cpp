#include "framework/HostDataHelper.h"
#include "platform/component/AutomationError.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace yrw {
namespace {

TEST(HostDataHelperTest, AddsConditionsOneByOne) {
    const struct {
        const char* sql;
        const char* expected;
    } cases[] = {
        {"SELECT q.* FROM q", "SELECT q.* FROM q WHERE [S]=1"},
        {"SELECT q.* FROM q WHERE [A]=2", "SELECT q.* FROM q WHERE [A]=2 AND [S]=1"},
        {"SELECT q.* FROM q ORDER BY [D] DESC", "SELECT q.* FROM q WHERE [S]=1 ORDER BY [D] DESC"},
        // Words inside a value or a name do not count.
        {"SELECT q.* FROM [where x]", "SELECT q.* FROM [where x] WHERE [S]=1"},
        {"SELECT q.* FROM q where [A]=\"x ORDER BY y\"",
         "SELECT q.* FROM q where [A]=\"x ORDER BY y\" AND [S]=1"},
        {"SELECT q.* FROM nowhere", "SELECT q.* FROM nowhere WHERE [S]=1"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(HostDataHelper::AddCondition(QString::fromLatin1(c.sql), QStringLiteral("[S]=1")),
                  QString::fromLatin1(c.expected));
    }
}

TEST(HostDataHelperTest, WritesLiteralsByKind) {
    const QDateTime date(QDate(2026, 3, 9), QTime(8, 5));
    const struct {
        QVariant value;
        const char* expected;
    } cases[] = {
        {QVariant(17), "[F]=17"},
        {QVariant(qint64(-9000000000)), "[F]=-9000000000"},
        {QVariant(0.5), "[F]=0.5"},
        {QVariant(true), "[F]=True"},
        {QVariant(QStringLiteral("cu")), "[F]=\"cu\""},
        {QVariant(QString(QLatin1String(""))), "[F]=\"\""},
        {QVariant(QStringLiteral("a \"b\"")), "[F]='a \"b\"'"},
        {QVariant(date), "[F]=#2026-03-09 08:05:00#"},
        {QVariant(), "[F] Is Null"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(HostDataHelper::EqualCondition(QStringLiteral("F"), c.value),
                  QString::fromLatin1(c.expected));
    }
    // What neither kind of quote can hold would go on as a condition.
    EXPECT_THROW(HostDataHelper::EqualCondition("F", "x\" OR 'a'='a"), AutomationError);
}

} // namespace
} // namespace yrw
