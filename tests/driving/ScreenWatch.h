#pragma once

#include <QObject>
#include <QPointer>
#include <QStringList>

class QWidget;

namespace yrw::test {

/// Looks at every window and box that a program opens, when it has settled: it lies whole on its
/// screen, and no label, button or field in it is cut.
///
/// Lifetime: watches from its making to its end. Thread: the user-interface thread.
class ScreenWatch final : public QObject {
public:
    ScreenWatch();
    ~ScreenWatch() override;

    /// What is wrong, one line each; asking begins anew.
    [[nodiscard]] QStringList takeFaults();
    /// What is wrong with a window now.
    [[nodiscard]] static QStringList faultsOf(const QWidget& window);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void lookSoon(const QPointer<QWidget>& window, int turns);

    QStringList m_faults;
};

} // namespace yrw::test
