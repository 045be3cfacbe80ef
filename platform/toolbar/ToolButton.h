#pragma once

#include "platform/toolbar/BandEvents.h"

#include <QToolButton>

namespace yrw {

/// The button of a tool. It never toggles by itself.
class ToolButton final : public QToolButton {
    Q_OBJECT

public:
    ToolButton(BandEvents& events, QWidget* parent);
    void show(const BandTool& tool);

protected:
    void nextCheckState() override {}
    void keyPressEvent(QKeyEvent* event) override;

private:
    BandEvents& m_events;
};

} // namespace yrw
