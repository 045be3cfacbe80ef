// A library like any other: loads, but has none of a component's entry points.
extern "C" __attribute__((visibility("default"))) int answer() {
    return 42;
}
