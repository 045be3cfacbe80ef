#pragma once

#include "platform/controls/api/IRecordGrid.h"

#include <QStatusBar>

class QLabel;

namespace yrw {

/// A status bar whose text stays until it is changed.
class StatusBar : public QStatusBar, public IStatusBar {
    Q_OBJECT

public:
    explicit StatusBar(QWidget* parent = nullptr);
    ~StatusBar() override;

    [[nodiscard]] QObject* asQObject() override { return this; }
    [[nodiscard]] QString text() const override;
    void setText(const QString& text) override;
    [[nodiscard]] QString toolTipText() const override;
    void setToolTipText(const QString& text) override;
    [[nodiscard]] QString tag() const override { return m_tag; }
    void setTag(const QString& tag) override { m_tag = tag; }
    void refresh() override;

protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    QLabel* m_label;
    QString m_tag;
    QString m_toolTipText;
};

} // namespace yrw
