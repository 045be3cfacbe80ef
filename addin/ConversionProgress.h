#pragma once

#include <QPointer>
#include <QString>

class QProgressDialog;
class QWidget;

namespace yrw {

class Clock;

/// Shows how far the conversion of a notes database is, once it has taken half a second, and lets
/// the user stop it. Events are handled meanwhile, but nothing else takes the user's input.
/// Lifetime: one conversion; the clock outlives it, the window need not. Thread: the
/// user-interface thread.
class ConversionProgress {
public:
    ConversionProgress(const Clock& clock, QWidget* window);
    ConversionProgress(const ConversionProgress&) = delete;
    ConversionProgress& operator=(const ConversionProgress&) = delete;
    ~ConversionProgress();

    /// Call again and again; false when it is to be stopped.
    [[nodiscard]] bool converts(int percent);
    /// The same while another program converts.
    [[nodiscard]] bool waits();

private:
    [[nodiscard]] bool show(const QString& text, int percent);

    const Clock& m_clock;
    QPointer<QWidget> m_window;
    QPointer<QProgressDialog> m_dialog; ///< goes with the window, also while it is shown
    qint64 m_nextMs;                    ///< when something is shown next
    bool m_isStopped = false;
};

} // namespace yrw
