#include "notes_window/FindBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace yrw {

FindBar::FindBar(QWidget* parent)
    : QWidget(parent), m_txtFind(new QLineEdit), m_lblFound(new QLabel) {
    auto* label = new QLabel(QStringLiteral("&Find:"));
    label->setBuddy(m_txtFind);
    m_txtFind->setObjectName(QStringLiteral("txtFind"));
    m_txtFind->setAccessibleName(QStringLiteral("Find in notes"));
    m_txtFind->setPlaceholderText(QStringLiteral("Words in the subject or the text"));
    m_txtFind->setClearButtonEnabled(true);
    m_lblFound->setObjectName(QStringLiteral("lblFound"));

    auto* close = new QToolButton;
    close->setObjectName(QStringLiteral("cmdCloseFind"));
    close->setAccessibleName(QStringLiteral("Close find"));
    close->setToolTip(QStringLiteral("Close (Esc)"));
    close->setText(QStringLiteral("\u00d7"));
    close->setAutoRaise(true);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 3, 6, 3);
    layout->addWidget(label);
    layout->addWidget(m_txtFind, 1);
    layout->addWidget(m_lblFound);
    layout->addWidget(close);

    connect(m_txtFind, &QLineEdit::textChanged, this, &FindBar::textChanged);
    connect(close, &QToolButton::clicked, this, &FindBar::closeRequested);
}

QString FindBar::text() const {
    return m_txtFind->text();
}

void FindBar::clear() {
    m_txtFind->clear();
}

void FindBar::focusField() {
    m_txtFind->setFocus();
    m_txtFind->selectAll();
}

bool FindBar::fieldHasFocus() const {
    return m_txtFind->hasFocus();
}

void FindBar::showCount(qsizetype found, qsizetype all) {
    m_lblFound->setText(all == 0 ? QString() : QStringLiteral("%1 of %2").arg(found).arg(all));
}

} // namespace yrw
