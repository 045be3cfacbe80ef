#pragma once

#include "platform/collation/TextOrder.h"

#include <QAbstractTableModel>
#include <QColor>
#include <QIcon>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace yrw {

/// One row of a list view.
struct ListItem {
    QString key;       ///< unique in the list, e.g. "xn17"
    QStringList texts; ///< one per column, in the order the columns were added
    bool bold = false;
    std::optional<QColor> foreColour;
    bool marked = false; ///< shows the list's mark
};

/// Gives rows by their keys; one that is left out stays without texts. Nothing means that they
/// could not be read. It is called while the list paints: it opens no window and raises nothing.
using ListSource = std::function<std::optional<QList<ListItem>>(const QStringList& keys)>;

/// Rows and columns of a `ListView`, kept in the order shown.
///
/// Rows are numbered from 0 in that order and known by keys, columns by numbers and keys. An absent
/// key is no error: it has no text or style, and there is nothing to change or remove.
///
/// A row is one text that holds the key and the texts, since most of the memory of a long list
/// would otherwise be what surrounds many short texts. A row may be known by its key alone; whoever
/// asks for its texts or style makes the model fetch it, together with the rows below it.
/// Thread: the user-interface thread.
class ListModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    void addColumn(const QString& header, const QString& key);
    /// 0-based; the texts of the column go with it.
    void removeColumn(int column);
    /// Position of a column by key, -1 when absent.
    [[nodiscard]] int columnOf(const QString& key) const;

    void clear();
    void append(const QList<ListItem>& items);
    /// Appends rows whose texts come from the source when they are asked for.
    void appendKeys(const QStringList& keys);
    /// What is asked for the texts; once it has failed not again for the rows that are missing.
    void setSource(ListSource source) { m_source = std::move(source); }
    /// Fetches up to so many of the rows that are known by key alone; false when the source failed.
    bool fetchSome(int rows);
    /// Rows known by key alone.
    [[nodiscard]] int missing() const { return m_missing; }
    void removeMissing();
    /// Inserts a row at its place among sorted rows, behind those with the same text; its row.
    int insertSorted(const ListItem& item, int column, Qt::SortOrder order);
    /// Removes a row by key, shown or not; no error when it is absent.
    void remove(const QString& key);
    void setText(const QString& key, int column, const QString& text);
    void setStyle(const QString& key, bool bold, const std::optional<QColor>& foreColour,
                  bool marked = false);
    /// What marked rows show before the text of a column, and what screen readers and the tool-tip
    /// say of them.
    struct Mark {
        int column = -1;
        QIcon icon;
        QString words;
    };
    void setMark(const Mark& mark) { m_mark = mark; }

    /// Shows only the rows whose keys are kept, in their order; nothing is selected then. The
    /// others stay out of sight until `showAll`: rows and counts speak of those shown. Rows added
    /// are shown.
    void showOnly(const std::function<bool(QStringView)>& keeps);
    void showAll();
    /// Calls for the key of every row, shown or not, in the order of the rows.
    void forEachKey(const std::function<void(QStringView)>& call) const;
    /// Rows with those out of sight.
    [[nodiscard]] int allRows() const { return static_cast<int>(m_rows.size()); }

    /// Empty for a row that is not there.
    [[nodiscard]] QString keyAt(int row) const;
    [[nodiscard]] QString text(const QString& key, int column) const;
    [[nodiscard]] bool isBold(const QString& key) const;
    [[nodiscard]] std::optional<QColor> foreColour(const QString& key) const;
    /// Row of a key, -1 when it is absent or not shown.
    [[nodiscard]] int rowOf(const QString& key) const;
    /// Valid until the row is changed.
    [[nodiscard]] QStringView textAt(int row, int column) const {
        return part(whole(row), column + 1);
    }

    /// Sorts by a column, keeping the order of rows with equal texts. False when `goesOn` stopped
    /// it or rows came or went meanwhile: the rows then stand as before.
    bool sortRows(int column, Qt::SortOrder order, const WorkStep& goesOn);
    /// Colours are painted so that they can be read on this background.
    void setBackground(const QColor& colour) { m_background = colour; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

private:
    /// A column as its header shows it and its list knows it.
    struct Column {
        QString header;
        QString key;
    };

    /// A row as it is kept.
    struct Row {
        QString parts; ///< key and texts, each but the last followed by a separator
        QRgb colour = 0;
        bool hasColour = false;
        bool bold = false;
        bool isWhole = true; ///< false: known by its key alone
        bool marked = false;
    };
    using Places = std::vector<std::pair<size_t, int>>; ///< hash of a key and its row, sorted

    [[nodiscard]] size_t place(int row) const {
        return m_shown ? size_t((*m_shown)[size_t(row)]) : size_t(row);
    }
    [[nodiscard]] const Row& at(int row) const { return m_rows[place(row)]; }
    /// A row with its texts, which are fetched when they are missing.
    [[nodiscard]] const Row& whole(int row) const;
    bool fetch(const std::vector<size_t>& places) const;
    void appendRows(qsizetype count, const std::function<Row(qsizetype)>& make);
    /// Row at which a place is shown, or would be.
    [[nodiscard]] int rowOfPlace(int place) const;
    /// Place of a key among all rows, -1 when absent.
    [[nodiscard]] int placeOf(const QString& key) const;
    [[nodiscard]] static Row packed(const ListItem& item);
    [[nodiscard]] static QStringView part(const Row& row, int index);
    /// What a marked row answers in the column of the mark; nothing for other roles.
    [[nodiscard]] QVariant markData(const QModelIndex& index, int role) const;
    void rowsChanged();
    void moveSelections(const std::vector<int>& placeAfter);
    void indexKeys() const;

    QList<Column> m_columns;
    mutable std::vector<Row> m_rows; ///< all, in order; where each stands is its place
    ListSource m_source;
    mutable int m_missing = 0;        ///< rows that are not whole
    mutable bool m_hasFailed = false; ///< the source failed: it is not asked again for these rows
    size_t m_nextToFetch = 0;         ///< place where `fetchSome` goes on
    quint64 m_changes = 0;            ///< times that rows came, went or moved
    std::optional<std::vector<int>> m_shown; ///< places of those shown; nothing shows all
    QColor m_background = Qt::white;
    Mark m_mark;
    mutable Places m_places; ///< made anew when rows moved
    mutable bool m_placesValid = true;
};

} // namespace yrw
