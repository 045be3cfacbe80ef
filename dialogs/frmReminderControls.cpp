// The controls of the popup and their events.
#include "dialogs/frmReminder.h"

#include "framework/ErrorGuards.h"
#include "platform/forms/ClockChangeLabel.h"
#include "platform/forms/DatePicker.h"
#include "platform/forms/ScreenMetrics.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>

namespace yrw {

namespace {

/// How far one place of the cascade lies from the next: a title bar.
constexpr int kPlaceStep = 28;
constexpr int kWidestWord = 380; ///< of a subject, in pixels; a longer one is broken

QString indexed(const char* name, std::size_t index) {
    return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(index);
}

/// A row of buttons of which none is the default one.
template <std::size_t count>
void fillButtons(std::array<QPushButton*, count>& buttons, const char* name,
                 const std::array<QString, count>& captions, QWidget* parent) {
    for (std::size_t index = 0; index < count; ++index) {
        buttons[index] = new QPushButton(captions[index], parent);
        buttons[index]->setObjectName(indexed(name, index));
        buttons[index]->setAccessibleName(QString(captions[index]).remove(u'&'));
        buttons[index]->setAutoDefault(false);
    }
}

} // namespace

void frmReminder::createControls() {
    setWindowTitle(QStringLiteral("YRW Reminder"));
    for (const std::size_t index : {0U, 1U, 2U, 4U, 5U}) {
        lblForm[index] = new QLabel(this);
        lblForm[index]->setObjectName(indexed("lblForm", index));
        lblForm[index]->setTextFormat(Qt::PlainText);
    }
    lblForm[0]->setText(QStringLiteral("Subject:"));
    lblForm[1]->setText(QStringLiteral("Note:"));
    lblForm[2]->setWordWrap(true);
    lblForm[4]->setText(QStringLiteral("Remind Everyone"));

    rxtMain = new QPlainTextEdit(this);
    rxtMain->setObjectName(QStringLiteral("rxtMain"));
    rxtMain->setAccessibleName(QStringLiteral("Note text"));
    rxtMain->setReadOnly(true);
    rxtMain->setTabChangesFocus(true);
    dtpReminder =
        new DatePicker(QStringLiteral("dtpReminder"), QStringLiteral("Tell me later at"), this);
    lblClockChange = new ClockChangeLabel(*dtpReminder, this);
    chkFinish = new QCheckBox(QStringLiteral("&Finish Note"), this);
    chkFinish->setObjectName(QStringLiteral("chkFinish"));
    chkFinish->setAccessibleName(QStringLiteral("Finish Note"));
}

void frmReminder::createButtons() {
    fillButtons<3>(cmdForm, "cmdForm",
                   {QStringLiteral("Tell me &Later..."), QStringLiteral("&Dismiss!"),
                    QStringLiteral("&Show Notes...")},
                   this);
    fillButtons<3>(cmdPreset, "cmdPreset",
                   {QStringLiteral("10 &Minutes"), QStringLiteral("1 &Hour"),
                    QStringLiteral("&Tomorrow Morning")},
                   this);
}

void frmReminder::layOut() {
    auto* grid = new QGridLayout(this);
    grid->addWidget(lblForm[0], 0, 0, Qt::AlignTop);
    grid->addWidget(lblForm[2], 0, 1);
    grid->addWidget(lblForm[1], 1, 0, Qt::AlignTop);
    grid->addWidget(rxtMain, 1, 1);
    auto* state = new QHBoxLayout;
    state->addWidget(lblForm[4]);
    state->addStretch();
    state->addWidget(lblForm[5]);
    grid->addLayout(state, 2, 1);
    auto* later = new QHBoxLayout;
    later->addWidget(dtpReminder);
    for (QPushButton* preset : cmdPreset) {
        later->addWidget(preset);
    }
    later->addStretch();
    later->addWidget(cmdForm[0]);
    grid->addLayout(later, 3, 0, 1, 2);
    grid->addWidget(lblClockChange, 4, 0, 1, 2);
    auto* answers = new QHBoxLayout;
    answers->addWidget(cmdForm[2]);
    answers->addStretch();
    answers->addWidget(chkFinish);
    answers->addWidget(cmdForm[1]);
    grid->addLayout(answers, 5, 0, 1, 2);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(1, 1);
    resize(sizeHint().expandedTo(QSize(560, 280)));
    setTabOrders();
}

/// The text comes first: what has the focus when the popup gets the keyboard answers nothing.
void frmReminder::setTabOrders() {
    QWidget* before = rxtMain;
    for (QWidget* next :
         std::initializer_list<QWidget*>{dtpReminder, cmdPreset[0], cmdPreset[1], cmdPreset[2],
                                         cmdForm[0], cmdForm[2], chkFinish, cmdForm[1]}) {
        setTabOrder(before, next);
        before = next;
    }
    rxtMain->setFocus();
}

/// Shows the subject whole, in as many lines as it takes, at the width that the popup has.
void frmReminder::showSubject(const QString& subject) {
    lblForm[2]->setText(breakable(subject, lblForm[2]->fontMetrics(), kWidestWord));
    layout()->activate();
    const QSize room = roomFor(*this);
    const int wanted = qMax(height(), layout()->totalHeightForWidth(this->width()));
    resize(qMin(this->width(), room.width()), qMin(wanted, room.height()));
}

void frmReminder::connectEvents() {
    connect(dtpReminder, &DatePicker::dateTimeChanged, this,
            [this] { m_laterTouched = m_laterTouched || !m_settingLater; });
    connect(&m_minutes, &QTimer::timeout, this, [this] { followClock(); });
    for (std::size_t index = 0; index < cmdForm.size(); ++index) {
        connect(cmdForm[index], &QPushButton::clicked, this, [this, index] {
            ignoreErrors([&] { cmdForm_Click(static_cast<FormButton>(index)); });
        });
    }
    for (std::size_t index = 0; index < cmdPreset.size(); ++index) {
        connect(cmdPreset[index], &QPushButton::clicked, this, [this, index] {
            ignoreErrors([&] { cmdPreset_Click(static_cast<Preset>(index)); });
        });
    }
}

/// The popup is placed before it has its texts and grows by them.
void frmReminder::keepOnScreen() {
    layout()->activate();
    resize(size().expandedTo(layout()->totalMinimumSize()));
    const QRect area = screen()->availableGeometry();
    const QRect frame = frameGeometry();
    move(qMax(area.left(), qMin(frame.x(), area.right() + 1 - frame.width())),
         qMax(area.top(), qMin(frame.y(), area.bottom() + 1 - frame.height())));
}

void frmReminder::moveToPlace(int place, const QWidget* host) {
    const QRect area = (host != nullptr ? host->screen() : screen())->availableGeometry();
    const QRect around = host != nullptr ? host->frameGeometry() : area;
    // The whole cascade is to lie on the screen, place 0 in the middle of the host if it can.
    const int reach = kPlaceStep * (kPlaces - 1);
    const QPoint middle = around.center() - rect().center() + QPoint(reach, reach) / 2;
    const int x = qMin(qMax(middle.x(), area.left() + reach), area.right() - width());
    const int y = qMin(qMax(middle.y(), area.top() + reach), area.bottom() - height() - kPlaceStep);
    move(qMax(area.left(), x - kPlaceStep * place), qMax(area.top(), y - kPlaceStep * place));
}

} // namespace yrw
