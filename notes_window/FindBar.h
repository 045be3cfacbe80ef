#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;

namespace yrw {

/// How far a search is: what was found can be all, the beginning, or what a failure left.
enum class FindState { Done, Searching, Failed };

/// The bar over the list into which the user types what to find.
/// Thread: the user-interface thread.
class FindBar : public QWidget {
    Q_OBJECT

public:
    explicit FindBar(QWidget* parent = nullptr);

    [[nodiscard]] QString text() const;
    void clear();
    /// Puts the cursor into the field, its text selected.
    void focusField();
    [[nodiscard]] bool fieldHasFocus() const;
    /// Tells how many of how many notes were found; both 0 clears it.
    void showCount(qsizetype found, qsizetype all, FindState state);
    /// Tells how far the index is; 100 clears it.
    void showIndexed(int percent);

Q_SIGNALS:
    void textChanged(const QString& text);
    void closeRequested();

private:
    QLineEdit* m_txtFind;
    QLabel* m_lblFound;
    QLabel* m_lblIndex;
};

} // namespace yrw
