#pragma once

namespace yrw {

class Form;
class WindowContext;
struct MainControls;

/// Where the controls of the notes window stand: below each other across the window, with a
/// splitter between list and text; and the window's size, which the settings keep.
///
/// Positions are pixels of the window. Lifetime: all that it is given outlives it. Thread: the
/// user-interface thread.
class WindowLayout {
public:
    WindowLayout(Form& window, const MainControls& controls, WindowContext& context);

    void arrange();
    /// The window has another size.
    void windowResized();
    /// Moves the splitter as near to a place as list and text allow.
    void moveSplit(int top);
    /// Gives list and text the same height.
    void centreSplit();
    [[nodiscard]] bool allowsSplitAt(int top) const { return clampedSplit(top) == top; }

    void restoreSize();
    void storeSize();

private:
    [[nodiscard]] int clampedSplit(int top) const;
    [[nodiscard]] int leastTextHeight() const;

    Form& m_window;
    const MainControls& m_controls;
    WindowContext& m_context;
    int m_splitTop = 0; ///< top of the splitter; 0 until it is first placed
};

} // namespace yrw
