#pragma once

// What several programs do to one file at once.

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace yrw::test {

/// Runs an action in so many processes, which begin once all are there; the status that each gives,
/// -1 of one that died. The action opens for itself what it works with.
inline std::vector<int> inProcesses(int count, const std::function<int()>& action) {
    int gate[2];
    EXPECT_EQ(::pipe(gate), 0);
    std::vector<pid_t> children;
    for (int i = 0; i < count; ++i) {
        children.push_back(::fork());
        if (children.back() == 0) {
            ::close(gate[1]);
            char byte = 0;
            const auto act = [&]() noexcept { return action(); }; // or it would go on as the parent
            ::_exit(::read(gate[0], &byte, 1) == 0 ? act() : 127);
        }
    }
    ::close(gate[0]);
    ::close(gate[1]);
    std::vector<int> statuses;
    for (const pid_t child : children) {
        int status = 0;
        ::waitpid(child, &status, 0);
        statuses.push_back(WIFEXITED(status) ? WEXITSTATUS(status) : -1);
    }
    return statuses;
}

} // namespace yrw::test
