#include "host/desk/FindBar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace yrw {

FindBar::FindBar(QWidget* parent)
    : QWidget(parent), m_text(new QLineEdit(this)), m_result(new QLabel(this)) {
    setObjectName(QStringLiteral("fraFind"));
    m_text->setObjectName(QStringLiteral("txtFind"));
    m_text->setAccessibleName(QStringLiteral("Find"));
    m_text->setMaximumWidth(320);
    m_result->setObjectName(QStringLiteral("lblFind"));
    auto* label = new QLabel(QStringLiteral("F&ind:"), this);
    label->setBuddy(m_text);
    auto* next = new QPushButton(QStringLiteral("Find &Next"), this);
    next->setObjectName(QStringLiteral("cmdFindNext"));
    auto* done = new QPushButton(QStringLiteral("&Close"), this);
    done->setObjectName(QStringLiteral("cmdFindClose"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(label);
    row->addWidget(m_text, 1);
    row->addWidget(next);
    row->addWidget(m_result);
    row->addStretch(1);
    row->addWidget(done);
    connect(m_text, &QLineEdit::returnPressed, this, &FindBar::findWanted);
    connect(m_text, &QLineEdit::textChanged, m_result, &QLabel::clear);
    connect(next, &QPushButton::clicked, this, &FindBar::findWanted);
    connect(done, &QPushButton::clicked, this, &FindBar::close);
    hide();
}

FindBar::~FindBar() = default;

void FindBar::open() {
    show();
    m_text->setFocus(Qt::ShortcutFocusReason);
    m_text->selectAll();
}

QString FindBar::text() const {
    return m_text->text();
}

void FindBar::showResult(bool found) {
    m_result->setText(found ? QString() : QStringLiteral("Not found"));
}

void FindBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void FindBar::close() {
    hide();
    Q_EMIT closed();
}

} // namespace yrw
