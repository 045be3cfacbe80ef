#pragma once

#include "platform/component/Event.h"
#include "platform/dao/Types.h"

#include <QString>
#include <QStringList>

#include <optional>

class QObject;

namespace yrw {

/// State of a grid's new-record row, by the numbers that its callers use.
enum class AddNewMode : int {
    None = 0,          ///< the current row is a stored record
    AddNewCurrent = 1, ///< the cursor stands on the new-record row
    AddNewPending = 2, ///< a new record is being typed
};

/// What a handler found out about a row while its style was fetched, for the styles of the row's
/// cells in the same paint. Each handler has its own; only the last one's is kept.
class RowFinding {
public:
    void keep(const void* handler, bool finding) noexcept {
        m_handler = handler;
        m_finding = finding;
    }
    /// What that handler kept; nothing when it kept none for this row.
    [[nodiscard]] std::optional<bool> of(const void* handler) const noexcept {
        return handler == m_handler && handler != nullptr ? std::optional<bool>(m_finding)
                                                          : std::nullopt;
    }

private:
    const void* m_handler = nullptr;
    bool m_finding = false;
};

/// What a handler of `FetchRowStyle` may set.
class RowStyle {
public:
    RowFinding finding; ///< handed on to the styles of the row's cells

    /// Background as &H00BBGGRR.
    void setBackColor(int colour) noexcept {
        m_backColor = colour;
        m_hasBackColor = true;
    }
    [[nodiscard]] bool hasBackColor() const noexcept { return m_hasBackColor; }
    [[nodiscard]] int backColor() const noexcept { return m_backColor; }

private:
    int m_backColor = 0;
    bool m_hasBackColor = false;
};

/// What a handler of `FetchCellStyle` may set: a frame inside the cell.
class CellStyle {
public:
    CellStyle() = default;
    explicit CellStyle(const RowFinding& rowFinding) : finding(rowFinding) {}

    RowFinding finding;                                                  ///< of the row's style
    void setBorderKind(short kind) noexcept { m_borderKind = kind; }     ///< 0 none, 6 a frame
    void setBorderColor(int colour) noexcept { m_borderColor = colour; } ///< &H00BBGGRR
    void setBorderWidth(int pixels) noexcept { m_borderWidth = pixels; } ///< device-independent
    [[nodiscard]] short borderKind() const noexcept { return m_borderKind; }
    [[nodiscard]] int borderColor() const noexcept { return m_borderColor; }
    [[nodiscard]] int borderWidth() const noexcept { return m_borderWidth; }

private:
    short m_borderKind = 0;
    int m_borderColor = 0;
    int m_borderWidth = 0;
};

/// What a handler of `FetchRowRemark` may say of a row beside its cells: for the row's tool-tip and
/// for screen readers.
class RowRemark {
public:
    /// `wantsDetails`: false asks for the short text alone, which must cost no more than a style.
    explicit RowRemark(bool wantsDetails) : m_wantsDetails(wantsDetails) {}

    [[nodiscard]] bool wantsDetails() const noexcept { return m_wantsDetails; }
    /// A few words, read out behind the row's cells.
    void setText(const QString& text) { m_text = text; }
    /// One more line below the text.
    void addDetail(const QString& line) { m_details += line; }
    [[nodiscard]] const QString& text() const noexcept { return m_text; }
    /// Text and details, one a line; empty when there is nothing to say.
    [[nodiscard]] QStringList lines() const {
        return m_text.isEmpty() ? m_details : QStringList(m_text) + m_details;
    }

private:
    bool m_wantsDetails;
    QString m_text;
    QStringList m_details;
};

/// The panes that a grid is split into, side by side, and which of them fetch styles.
///
/// Lifetime: as its grid; hold it in a `GuardedPtr`. Thread: the user-interface thread.
class IGridSplits {
public:
    virtual ~IGridSplits();
    [[nodiscard]] virtual QObject* asQObject() = 0;

    [[nodiscard]] virtual int splitCount() const = 0;
    [[nodiscard]] virtual bool fetchesRowStyle(int split) const = 0;
    virtual void setFetchRowStyle(int split, bool fetch) = 0;
    [[nodiscard]] virtual bool fetchesCellStyle(int split) const = 0;
    virtual void setFetchCellStyle(int split, bool fetch) = 0;
};

/// The record grid of a host: rows of a recordset, painted as they come into view.
///
/// Split and column numbers count from 0. Style events are raised while a row is painted, once per
/// row (or cell) and only for splits that fetch styles; a handler must be quick and must not
/// change the grid.
/// Lifetime: a Qt object owned by its window; hold it in a `GuardedPtr`.
/// Thread: the user-interface thread.
class IRecordGrid {
public:
    virtual ~IRecordGrid();
    [[nodiscard]] virtual QObject* asQObject() = 0;

    /// The grid's splits; nothing when it tells nothing of them.
    [[nodiscard]] virtual IGridSplits* Splits() = 0;

    [[nodiscard]] virtual int columnCount() const = 0;
    /// Field that a column shows.
    [[nodiscard]] virtual QString columnField(int column) const = 0;
    [[nodiscard]] virtual bool isColumnVisible(int column) const = 0;
    /// Column bound to a field (any case), -1 when there is none.
    [[nodiscard]] virtual int columnOf(const QString& field) const = 0;
    /// Column of the cursor, -1 when there is none.
    [[nodiscard]] virtual int currentColumn() const = 0;
    virtual void setCurrentColumn(int column) = 0;
    [[nodiscard]] virtual AddNewMode addNewMode() const = 0;
    /// Paints all rows anew, asking for their styles again.
    virtual void refresh() = 0;

    Event<int, dao::Bookmark, RowStyle&> FetchRowStyle; ///< split, row, style
    /// condition (0), split, row, column, style
    Event<int, int, dao::Bookmark, int, CellStyle&> FetchCellStyle;
    /// split, row, remark: the pointer rests on a row, or a screen reader asks about it
    Event<int, dao::Bookmark, RowRemark&> FetchRowRemark;
    Event<dao::Bookmark, int> RowColChange; ///< the row (null for none) and column before
    Event<> Scroll;                         ///< the user scrolled
    Event<int> AfterColUpdate;              ///< a cell's new value was written; its column
};

/// The host's status bar.
class IStatusBar {
public:
    virtual ~IStatusBar();
    [[nodiscard]] virtual QObject* asQObject() = 0;
    [[nodiscard]] virtual QString text() const = 0;
    virtual void setText(const QString& text) = 0;
    [[nodiscard]] virtual QString toolTipText() const = 0;
    virtual void setToolTipText(const QString& text) = 0;
    /// Text that the bar keeps for its users and never shows.
    [[nodiscard]] virtual QString tag() const = 0;
    virtual void setTag(const QString& tag) = 0;
    /// Paints at once.
    virtual void refresh() = 0;

    Event<> DblClick;
};

} // namespace yrw
