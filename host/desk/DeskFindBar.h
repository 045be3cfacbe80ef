#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;

namespace yrw {

/// The bar in which the user types what to find: `txtFind`, hidden until it is wanted.
/// Lifetime: owned by the window. Thread: the user-interface thread.
class DeskFindBar final : public QWidget {
    Q_OBJECT

public:
    explicit DeskFindBar(QWidget* parent);
    ~DeskFindBar() override;

    /// Shows the bar and puts the keyboard into it.
    void open();
    [[nodiscard]] QString text() const;
    /// Says whether the last search found something.
    void showResult(bool found);

Q_SIGNALS:
    void findWanted();
    /// The user is done: the keyboard goes back to the grid.
    void closed();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void close();

    QLineEdit* m_text;
    QLabel* m_result;
};

} // namespace yrw
