#pragma once

#include <QWidget>

namespace yrw {

/// The bar between list and editor that the user drags; it also moves with the arrow keys.
///
/// It knows nothing of its surroundings: it says what the user does, and whoever owns it moves it.
/// Thread: the user-interface thread.
class SplitBar : public QWidget {
    Q_OBJECT

public:
    explicit SplitBar(QWidget* parent = nullptr);

    /// Grey while it is being dragged, else the colour of a button's face.
    void setDragged(bool dragged);

Q_SIGNALS:
    void mouseDown();
    /// While the left button is held: where the bar's top would be, in the parent's coordinates.
    void mouseMove(int top);
    void mouseUp();
    void dblClick();
    /// A key asks to move the bar by that many pixels, negative for up.
    void stepped(int pixels);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    int m_grip = 0; ///< where the bar was taken, from its top
    bool m_dragged = false;
};

} // namespace yrw
