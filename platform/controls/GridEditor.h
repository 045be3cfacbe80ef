#pragma once

#include <QLineEdit>

namespace yrw {

/// The field in which a cell of the grid is edited. It leaves Escape, Enter, Tab and the keys that
/// change the row to the grid.
class GridEditor final : public QLineEdit {
    Q_OBJECT

public:
    explicit GridEditor(QWidget* parent);

Q_SIGNALS:
    void finished();             ///< Enter
    void canceled();             ///< Escape
    void tabbed(bool forward);   ///< Tab or Backtab
    void rowKeyPressed(int key); ///< up, down and the page keys
    void focusLost();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void focusOutEvent(QFocusEvent* event) override;
};

} // namespace yrw
