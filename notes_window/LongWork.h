#pragma once

#include <QString>

#include <memory>

class QProgressDialog;
class QWidget;

namespace yrw {

class Clock;

/// Work that may take long: once it has taken half a second, a small window says how far it is and
/// lets the user stop it.
///
/// While that window is open events are handled, but nothing else takes the user's input.
/// Lifetime: the clock and the parent outlive it. Thread: the user-interface thread.
class LongWork {
public:
    /// `text` says what is done and has "%1" for the count; the clock is looked at once in
    /// `stepsPerLook` steps.
    LongWork(const Clock& clock, QWidget* parent, QString text, int stepsPerLook = 256);
    ~LongWork();
    LongWork(const LongWork&) = delete;
    LongWork& operator=(const LongWork&) = delete;

    /// Call after each step; false when the user wants it to stop.
    [[nodiscard]] bool goOn(qint64 done);

private:
    void show(qint64 done);

    const Clock& m_clock;
    QWidget* m_parent;
    QString m_text;
    qint64 m_nextMs; ///< when something is shown next
    qint64 m_steps = 0;
    int m_stepsPerLook;
    std::unique_ptr<QProgressDialog> m_dialog;
};

} // namespace yrw
