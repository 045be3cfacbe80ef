#pragma once

#include <QLabel>

namespace yrw {

/// A label of one line of plain text that gives way: where there is no room for the text it shows
/// the beginning, "…", and the whole of it in the tool-tip. It never keeps a window wide.
class ElidedLabel final : public QLabel {
public:
    explicit ElidedLabel(const QString& text, QWidget* parent = nullptr);

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace yrw
