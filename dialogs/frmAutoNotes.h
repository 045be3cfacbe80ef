#pragma once

#include "framework/Services.h"
#include "framework/Settings.h"
#include "platform/forms/Form.h"

#include <QTimer>

#include <optional>

class QTableWidget;

namespace yrw {

/// The popup that lists the notes of the record that the user has just landed on, beside the
/// host's window. It takes the keyboard only when the user clicks into it.
///
/// Fill it with `AddNote`, place it with `SetPosition`, then `present` it. Closing it while it is
/// visible stores its size as a fraction of the host window's, and the next one has that size.
/// Lifetime: made for the host's window; deletes itself once unloaded after it was presented.
/// Thread: the user-interface thread.
class frmAutoNotes final : public Form {
    Q_OBJECT

public:
    /// Where the popup can live: a window of its own, or, where programs may not place their
    /// windows, a part of the host's window.
    enum class Placement { OwnWindow, InsideHost };
    /// What the window system of this process allows.
    [[nodiscard]] static Placement possiblePlacement();

    /// `host` is the window that the popup stands beside; it owns the popup.
    frmAutoNotes(Services& services, QWidget* host, Placement placement = possiblePlacement());
    ~frmAutoNotes() override;

    /// Adds a note below the heading of its category; a category other than that of the note
    /// before begins with a heading. `ClearNotes` empties the list first. A text beyond 10,000
    /// characters is cut there.
    void AddNote(const QString& Category, qint64 NoteID, const QString& Subject,
                 const QString& NoteText, bool ClearNotes);
    /// Sizes the popup and places it at the right edge of the host's window, one caption's height
    /// below the top of that window's screen; all in twips. `ParentWindowY` makes no difference.
    /// A stored fraction that is no number above 0 is deleted.
    void SetPosition(int ParentWindowX, int ParentWindowY, int ParentWindowH, int ParentWindowW);
    /// Fits the height of a row to the text of its cell.
    void ReSizeCellHeight(int MyRow, int MyCol);
    /// Lays out the list anew.
    void ResizeForm();
    /// Shows the popup beside the host, which keeps the keyboard.
    void present();

Q_SIGNALS:
    /// The user double-clicked a note (or pressed Enter on it).
    void ShowNote(qint64 NoteID);
    /// The user is working in the popup, or its size changes: it should not be closed for want of
    /// the host's focus.
    void CancelFocusCheck();
    /// The popup is about to close.
    void UnloadForm();
    /// The popup stands as it was placed, and the user has not touched it yet.
    void settled();

protected:
    void Form_Activate() override;
    void Form_Resize() override;
    void Form_KeyDown(FormKey& key) override;
    void Form_KeyUp(FormKey& key) override;
    void Form_QueryUnload(bool& cancel) override;
    void Form_Unload() override;
    void keyReleaseEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void flxThis_DblClick();

    void createControls();
    void connectEvents();
    void appendRow(const QString& text, qint64 noteID, const QFont& font,
                   std::optional<QRgb> colour);
    void activity();
    void layOutAgain();
    void refitRows();
    [[nodiscard]] int wrappedLines(const QString& text, const QFont& font) const;
    [[nodiscard]] double storedSize(const setting::MaybeReal& which, int parentSize, int current);
    [[nodiscard]] QSize frameSizeNow() const;
    void moveTo(const QRect& place);
    void saveSize();

    NotesSettings m_settings;
    Placement m_placement;
    QTimer m_settling; ///< runs while the window system still moves the popup about
    bool m_presented = false;
    bool m_touched = false; ///< the user has worked in it
    bool m_quiet = false;   ///< the list is changed in code
    QString m_category;     ///< heading of the rows added last
    QStringList m_words;    ///< headings and subjects, for screen readers
    int m_parentHeight = 0; ///< twips, as `SetPosition` was told
    int m_parentWidth = 0;
    QMargins m_frame; ///< frame of the window that sizes include

    QTableWidget* flxThis = nullptr;
};

} // namespace yrw
