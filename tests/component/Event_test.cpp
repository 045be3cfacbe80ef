#include "platform/component/Event.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

using namespace yrw;

namespace {

/// An event with three handlers that write their letter; one of them also does what a test wants.
class EventTest : public testing::Test {
protected:
    EventTest()
        : first(event->connect([this] { run("a"); })), second(event->connect([this] { run("b"); })),
          third(event->connect([this] { run("c"); })) {}

    void run(const std::string& letter) {
        log += letter;
        if (letter == trigger && action) {
            action();
        }
    }
    std::string raise() {
        log.clear();
        event->raise();
        return log;
    }

    std::unique_ptr<Event<>> event = std::make_unique<Event<>>();
    std::string log;
    std::string trigger = "b";
    std::function<void()> action;
    Connection first, second, third;
};

TEST_F(EventTest, CallsHandlersInTheOrderTheyWereConnected) {
    EXPECT_EQ(raise(), "abc");
    second.disconnect();
    second.disconnect();
    EXPECT_EQ(raise(), "ac");
}

TEST_F(EventTest, AHandlerMayDisconnectItselfAndOthers) {
    action = [this] {
        first.disconnect();
        second.disconnect();
        third.disconnect();
    };
    EXPECT_EQ(raise(), "ab");
    EXPECT_FALSE(event->isConnected());
    EXPECT_EQ(raise(), "");
}

TEST_F(EventTest, AHandlerConnectedMeanwhileIsCalledFromTheNextTimeOn) {
    std::vector<Connection> more;
    action = [&] {
        for (int i = 0; i < 100; ++i) { // enough to move the list
            more.push_back(event->connect([this] { log += "."; }));
        }
        action = nullptr;
    };
    EXPECT_EQ(raise(), "abc");
    EXPECT_EQ(raise(), "abc" + std::string(100, '.'));
}

TEST_F(EventTest, DestroyingTheEventEndsTheRaise) {
    action = [this] { event.reset(); };
    EXPECT_EQ(raise(), "ab");
    third.disconnect(); // of an event that is no more
}

TEST_F(EventTest, RaisingWithinARaiseKeepsDisconnectedHandlersOut) {
    action = [this] {
        action = nullptr;
        third.disconnect();
        event->raise();
    };
    EXPECT_EQ(raise(), "abab");
}

TEST_F(EventTest, AnExceptionReachesTheRaiserAndLeavesTheEventSound) {
    action = [this] {
        second.disconnect();
        throw std::runtime_error("handler");
    };
    EXPECT_THROW(event->raise(), std::runtime_error);
    EXPECT_EQ(raise(), "ac");
}

TEST_F(EventTest, AHandlerMayOwnAnotherConnectionOfTheSameEvent) {
    auto owned = std::make_shared<Connection>(event->connect([this] { log += "d"; }));
    Connection owner = event->connect([owned] {});
    owned.reset();
    EXPECT_EQ(raise(), "abcd");
    owner.disconnect();
    EXPECT_EQ(raise(), "abc");
}

TEST(Connection, EndsWithItsGuardAndWhenAnotherTakesItsPlace) {
    int calls = 0;
    Event<int&> event;
    {
        const Connection guard = event.connect([](int& count) { ++count; });
        event.raise(calls);
    }
    event.raise(calls);
    EXPECT_EQ(calls, 1);

    Connection guard = event.connect([](int& count) { count += 10; });
    guard = event.connect([](int& count) { count += 100; });
    Connection moved = std::move(guard);
    event.raise(calls);
    EXPECT_EQ(calls, 101);
}

} // namespace
