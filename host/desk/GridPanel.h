#pragma once

#include "host/desk/DeskGridController.h"

#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;

namespace yrw {

/// What a panel is called.
struct PanelNames {
    QString title;          ///< shown above the grid
    QString position;       ///< "Upper" or "Lower": part of the object names
    QString accessibleName; ///< of the grid
};

/// A grid with its heading: title, number of rows, filter field and choice of layout.
///
/// Objects are named after the position: `dbgUpper` (the grid), `txtUpperFilter`,
/// `cboUpperLayout`, `lblUpperTitle`, `lblUpperCount`.
/// Lifetime: owned by the window. Thread: the user-interface thread.
class GridPanel final : public QWidget {
    Q_OBJECT

public:
    GridPanel(const PanelNames& names, const QList<GridLayout>& layouts,
              DeskGridController::ObjectMaker makeObject, QWidget* parent);
    ~GridPanel() override;

    [[nodiscard]] DeskGridController& controller() const noexcept { return *m_controller; }
    [[nodiscard]] RecordGrid& grid() const noexcept { return *m_grid; }
    void setTitle(const QString& title);
    /// Puts the keyboard into the filter field.
    void focusFilter();
    /// Shows every row again.
    void clearFilter();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildHeading(const PanelNames& names);
    void showCount(qint64 rows);
    void applyFilter();

    RecordGrid* m_grid;
    DeskGridController* m_controller;
    QLabel* m_title = nullptr;
    QLabel* m_count = nullptr;
    QLineEdit* m_filter = nullptr;
    QComboBox* m_layouts = nullptr;
    QTimer m_filterDelay;
};

} // namespace yrw
