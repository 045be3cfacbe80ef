#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace yrw {

/// Knows which control of a toolbar's window had the keyboard before the toolbar, and gives it
/// back.
///
/// Lifetime: belongs to the toolbar. Thread: the user-interface thread.
class KeyboardReturn final : public QObject {
public:
    explicit KeyboardReturn(QWidget& toolbar);

    /// The user has called the toolbar by its key.
    void called() noexcept { m_called = true; }
    /// True from then on until the keyboard leaves the toolbar.
    [[nodiscard]] bool wasCalled() const noexcept { return m_called; }
    /// Gives the keyboard back; where that control is off or gone, to the next one of the window.
    void giveBack();

private:
    [[nodiscard]] bool isOutside(const QWidget* control) const;
    [[nodiscard]] QWidget* target() const;

    QWidget& m_toolbar;
    QPointer<QWidget> m_before;
    bool m_called = false;
};

} // namespace yrw
