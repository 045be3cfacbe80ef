#pragma once

#include "framework/HostObjects.h"
#include "host/desk/GridLayout.h"

#include <QObject>
#include <QTimer>

#include <functional>

namespace yrw {

/// The controller behind one of the desk's grids: fetches its rows, orders and filters them, keeps
/// its layout, and raises the events of the contract.
///
/// Lifetime: owned by the window, as the grid is.
/// Thread: the user-interface thread.
class DeskGridController final : public QObject, public IGridController {
    Q_OBJECT

public:
    /// Makes the collection to show, or nothing when there are no rows to show. The argument is
    /// true when the layout wants every record.
    using ObjectMaker = std::function<Ref<ICollection>(bool everyRecord)>;

    /// How long the cursor rests before `StayOnRow` and `StayOnCell` are raised, milliseconds.
    static constexpr int kRestMs = 300;

    DeskGridController(RecordGrid& grid, QList<GridLayout> layouts, ObjectMaker makeObject,
                       QObject* parent);
    ~DeskGridController() override;

    [[nodiscard]] QObject* asQObject() override { return this; }
    [[nodiscard]] IRecordGrid* Grid() override;
    [[nodiscard]] Ref<IRecord> CurrentRecord() override;
    [[nodiscard]] Ref<ICollection> CurrentObject() override;
    [[nodiscard]] bool Busy() override;
    [[nodiscard]] QString LayoutName() override;
    [[nodiscard]] Ref<dao::Recordset> Recordset() override;

    [[nodiscard]] RecordGrid& grid() const noexcept { return m_grid; }
    [[nodiscard]] QStringList layoutNames() const;
    /// True when the layout shows every record, whatever the other grid stands on.
    [[nodiscard]] bool showsEveryRecord() const { return layout().everyRecord; }
    /// Shows another layout and reads its rows. An unknown name loads the first layout.
    void loadLayout(const QString& name);
    /// Reads the rows anew, keeping the cursor on its record where that is still there.
    void rebind();
    /// Shows nothing; for the end.
    void unbind();
    /// Shows only rows that hold the text in one of their visible columns; empty: all.
    void setFilterText(const QString& text);
    [[nodiscard]] const QString& filterText() const noexcept { return m_filterText; }
    /// Orders by a field; by the same field again, the other way round.
    void sortBy(const QString& field);
    [[nodiscard]] QString sortField() const { return m_sortField; }
    void setSplit(bool split);
    /// Moves the cursor to the next row (after the last one, from the first) that holds the text
    /// in a visible column; false when none does.
    bool findNext(const QString& text);
    /// Moves the cursor to a record; false when it is not among the rows.
    bool goToRecord(qint64 recordID);
    /// Key of the record under the cursor, 0 when there is none.
    [[nodiscard]] qint64 currentRecordID() const;
    /// Whether this is the grid that the user works in: only then do the resting events come.
    void setCurrent(bool current);

Q_SIGNALS:
    /// The cursor stands on another record, or on none.
    void recordChanged();
    /// The rows were read, or their number changed.
    void rowsRead(qint64 count);
    /// A new record was written; the cursor stands on it.
    void recordAdded();
    void layoutLoaded(const QString& name);

private:
    void connectGrid();
    void rowWritten();
    void cursorMoved();
    void rested();
    void rememberWidths();
    void bindRows(const Ref<dao::Recordset>& rows);
    void restoreCursor(qint64 recordID, qint64 row);
    void showHeaders();
    void noteRecord();
    [[nodiscard]] GridLayout& layout() { return m_layouts[m_layout]; }
    [[nodiscard]] const GridLayout& layout() const { return m_layouts[m_layout]; }
    /// Condition that a visible column holds the text.
    [[nodiscard]] QString holding(const QString& text) const;
    [[nodiscard]] bool anyRowHolds(const QString& text) const;
    [[nodiscard]] RecordsetRequest request() const;
    /// First row at or after `from`, before `to`, that the test accepts; -1 when none.
    [[nodiscard]] qint64 scan(qint64 from, qint64 to,
                              const std::function<bool(const dao::Recordset&)>& test) const;

    RecordGrid& m_grid;
    QList<GridLayout> m_layouts;
    ObjectMaker m_makeObject;
    qsizetype m_layout = 0;
    Ref<ICollection> m_object;
    Ref<dao::Recordset> m_rows;
    QString m_sortField;
    bool m_descending = false;
    QString m_filterText;
    QTimer m_rest;
    bool m_current = false;
    bool m_binding = false;
    bool m_adding = false;      ///< a new record is being typed
    qint64 m_noticedRecord = 0; ///< record that `recordChanged` was raised for last
    qint64 m_restedRow = -1;    ///< row that `StayOnRow` was raised for last
};

} // namespace yrw
