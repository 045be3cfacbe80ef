#include "notes_window/FindBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace yrw {

FindBar::FindBar(QWidget* parent)
    : QWidget(parent), m_txtFind(new QLineEdit), m_lblFound(new QLabel), m_lblIndex(new QLabel) {
    auto* label = new QLabel(QStringLiteral("&Find:"));
    label->setBuddy(m_txtFind);
    m_txtFind->setObjectName(QStringLiteral("txtFind"));
    m_txtFind->setAccessibleName(QStringLiteral("Find in notes"));
    m_txtFind->setPlaceholderText(QStringLiteral("Words in the subject or the text"));
    m_txtFind->setAccessibleDescription(m_txtFind->placeholderText());
    m_txtFind->setClearButtonEnabled(true);
    if (auto* const clear = m_txtFind->findChild<QToolButton*>()) {
        clear->setObjectName(QStringLiteral("cmdClearFind"));
        clear->setAccessibleName(QStringLiteral("Clear find"));
        clear->setAccessibleDescription(QStringLiteral("Empties the field, which shows all notes"));
        clear->setToolTip(QStringLiteral("Clear"));
    }
    m_lblFound->setObjectName(QStringLiteral("lblFound"));

    m_lblIndex->setObjectName(QStringLiteral("lblIndex"));
    m_lblIndex->setToolTip(QStringLiteral("Everything is found meanwhile, only not as fast."));
    m_lblIndex->hide();

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
    layout->addWidget(m_lblIndex);
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

void FindBar::showCount(qsizetype found, qsizetype all, FindState state) {
    QString text = all == 0 ? QString() : QStringLiteral("%1 of %2").arg(found).arg(all);
    if (state == FindState::Searching) {
        text += QStringLiteral(" so far (Esc stops)");
    } else if (state == FindState::Failed) {
        text += QStringLiteral(" (the search failed)");
    }
    m_lblFound->setText(text);
}

void FindBar::showIndexed(int percent) {
    m_lblIndex->setText(QStringLiteral("Preparing the index: %1 %").arg(percent));
    m_lblIndex->setVisible(percent < 100);
}

} // namespace yrw
