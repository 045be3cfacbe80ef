#include "platform/component/Counted.h"
#include "platform/component/GuardedPtr.h"
#include "platform/component/NamedCalls.h"
#include "tests/support/Raised.h"

#include <QObject>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>

using namespace Qt::StringLiterals;
using namespace yrw;

namespace {

class ILeft : public virtual Counted {};
class IRight : public virtual Counted {};

class Both final : public ILeft, public IRight {
public:
    explicit Both(bool& alive) : m_alive(alive) { m_alive = true; }
    ~Both() override { m_alive = false; }

private:
    bool& m_alive;
};

TEST(Ref, TheLastReferenceEndsTheObject) {
    bool alive = false;
    Ref<Both> first = make<Both>(alive);
    Ref<ILeft> second = first;
    EXPECT_EQ(first->referenceCount(), 2);
    first.reset();
    EXPECT_TRUE(alive);
    second = nullptr;
    EXPECT_FALSE(alive);
}

TEST(Ref, AssigningToItselfAndMovingKeepTheCount) {
    bool alive = false;
    Ref<Both> ref = make<Both>(alive);
    const Ref<Both>& same = ref;
    ref = same;
    EXPECT_EQ(ref->referenceCount(), 1);
    const Ref<Both> moved = std::move(ref);
    EXPECT_EQ(moved->referenceCount(), 1);
    EXPECT_TRUE(alive);
}

TEST(Ref, QueryFindsTheOtherInterfaceOfTheSameObject) {
    bool alive = false;
    const Ref<ILeft> left = make<Both>(alive);
    const Ref<IRight> right = query<IRight>(left);
    ASSERT_TRUE(right);
    EXPECT_EQ(right->referenceCount(), 2);
    EXPECT_FALSE(query<IRight>(Ref<ILeft>()));
    EXPECT_FALSE(query<Both>(make<ILeft>()));
}

struct HostPart : QObject {
    QObject* asQObject() { return this; }
};

TEST(GuardedPtr, BecomesNothingWhenTheHostDestroysTheObject) {
    auto part = std::make_unique<HostPart>();
    const GuardedPtr<HostPart> guarded(part.get());
    EXPECT_EQ(guarded.get(), part.get());
    part.reset();
    EXPECT_FALSE(guarded);
    EXPECT_FALSE(GuardedPtr<HostPart>(nullptr));
}

TEST(Ref, FollowingNothingRaises) {
    const Ref<Both> nothing;
    const GuardedPtr<HostPart> gone;
    for (const std::function<void()>& follow : std::initializer_list<std::function<void()>>{
             [&] { (void)nothing->referenceCount(); }, [&] { (void)*nothing; },
             [&] { (void)gone->asQObject(); }, [&] { (void)*gone; },
             [] { callByName(nullptr, QStringLiteral("Refresh")); }}) {
        EXPECT_EQ(test::raisedBy(follow).number(), kErrorObjectRequired);
    }
}

TEST(CurrentError, KeepsAutomationErrorsAndWrapsOthers) {
    const auto caught = [](const auto& thrown) {
        try {
            throw thrown;
        } catch (...) {
            return currentError();
        }
    };
    const AutomationError kept = caught(AutomationError(7, u"A.B"_s, u"words"_s));
    EXPECT_EQ(kept.number(), 7);
    EXPECT_EQ(kept.source(), u"A.B");
    EXPECT_STREQ(kept.what(), "A.B: words");
    EXPECT_EQ(caught(std::runtime_error("low")).description(), u"low");
    EXPECT_FALSE(caught(3).description().isEmpty());
}

} // namespace
