#pragma once

namespace yrw::test {

/// True in a child of the tests that is a program of its own, to be ended by them.
[[nodiscard]] bool isEndingChild();
/// Runs that program: a desk with the add-in, in the state that its environment names.
int runEndingChild();

} // namespace yrw::test
