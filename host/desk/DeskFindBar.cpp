#include "host/desk/DeskFindBar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace yrw {

DeskFindBar::DeskFindBar(QWidget* parent)
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
    connect(m_text, &QLineEdit::returnPressed, this, &DeskFindBar::findWanted);
    connect(m_text, &QLineEdit::textChanged, m_result, &QLabel::clear);
    connect(next, &QPushButton::clicked, this, &DeskFindBar::findWanted);
    connect(done, &QPushButton::clicked, this, &DeskFindBar::close);
    hide();
}

DeskFindBar::~DeskFindBar() = default;

void DeskFindBar::open() {
    show();
    m_text->setFocus(Qt::ShortcutFocusReason);
    m_text->selectAll();
}

QString DeskFindBar::text() const {
    return m_text->text();
}

void DeskFindBar::showResult(bool found) {
    m_result->setText(found ? QString() : QStringLiteral("Not found"));
}

void DeskFindBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void DeskFindBar::close() {
    hide();
    Q_EMIT closed();
}

} // namespace yrw
