#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPixmap>

#include <functional>
#include <vector>

class QWidget;

namespace yrw::tour {

/// Drives the real windows of the process step by step, also through modal ones: each step waits
/// until the screen shows what it should, keeps a picture of it, and then acts as a user would.
///
/// Lifetime: outlives the event loop that it drives. Thread: the user-interface thread.
class Script : public QObject {
    Q_OBJECT

public:
    /// What the screen should show: empty when it does, else what is missing.
    using Expectation = std::function<QString()>;

    /// Pictures go to `folder`, numbered from `firstNumber`.
    Script(QString folder, int firstNumber);

    /// Adds a step. `act` may open a modal window: the next step runs inside it.
    void step(const QString& title, Expectation expect, std::function<void()> act);
    /// Starts; `finished` is raised after the last step, `failed` at the first that fails.
    void start();

    /// Number of the next picture.
    [[nodiscard]] int nextNumber() const { return m_number; }
    [[nodiscard]] bool hasFailed() const { return m_failed; }

Q_SIGNALS:
    void finished();
    void failed();

private:
    struct Step {
        QString title;
        Expectation expect;
        std::function<void()> act;
    };

    void poll();
    void perform(const Step& current);
    void keepPicture(const QString& title);
    void giveUp(const QString& reason);

    QString m_folder;
    int m_number;
    std::vector<Step> m_steps;
    std::size_t m_next = 0;
    QElapsedTimer m_waiting;
    bool m_failed = false;
};

} // namespace yrw::tour
