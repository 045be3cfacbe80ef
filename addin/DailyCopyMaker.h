#pragma once

#include "store/DailyCopy.h"

#include <QObject>
#include <QTimer>

namespace yrw {

class NotesContext;

/// Makes the day's copy of the notes database while the user does nothing, in slices too short to
/// be felt. Looks once a minute whether the day has changed, so that a program that runs for days
/// makes one a day. The setting "DailyCopy" switches it off. A failure stands in the log, and the
/// next day is tried again.
///
/// Lifetime: owned by the add-in's timer window. Thread: the user-interface thread.
class DailyCopyMaker final : public QObject {
    Q_OBJECT

public:
    /// The context outlives it.
    DailyCopyMaker(NotesContext& context, QObject* parent);

    /// Looks now; the timer does so every minute.
    void look();

protected:
    /// Notes when the user last pressed a key or a button.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void workOn();
    void end();

    NotesContext& m_context;
    QTimer m_minute;
    QTimer m_slice;
    QDate m_day; ///< that was seen to last
    qint64 m_lastInputMs;
    std::unique_ptr<DailyCopy> m_copy;
};

} // namespace yrw
