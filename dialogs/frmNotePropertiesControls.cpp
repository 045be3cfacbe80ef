// The controls of the dialog and their events.
#include "dialogs/frmNoteProperties.h"

#include "framework/ErrorGuards.h"
#include "platform/forms/ClockChangeLabel.h"
#include "platform/forms/DatePicker.h"
#include "store/Schema.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace yrw {

namespace {

QString indexed(const char* name, int index) {
    return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(index);
}

QLabel* makeLabel(const QString& caption, int index) {
    auto* label = new QLabel(caption);
    label->setObjectName(indexed("lblForm", index));
    return label;
}

/// The Tab key comes to the chosen one of several options, also before any had the focus.
template <class Options>
void letTabReachTheChosen(const Options& options) {
    for (QRadioButton* option : options) {
        option->setFocusPolicy(Qt::ClickFocus);
        QObject::connect(option, &QRadioButton::toggled, option, [option](bool chosen) {
            option->setFocusPolicy(chosen ? Qt::StrongFocus : Qt::ClickFocus);
        });
    }
}

QToolButton* makeStepButton(const QString& name, const QString& accessibleName,
                            Qt::ArrowType arrow) {
    auto* button = new QToolButton;
    button->setObjectName(name);
    button->setAccessibleName(accessibleName);
    button->setToolTip(accessibleName);
    button->setArrowType(arrow);
    button->setAutoRepeat(true);
    return button;
}

} // namespace

void frmNoteProperties::createControls() {
    setWindowTitle(QStringLiteral("Note Properties"));
    m_prpMain = new QTabWidget;
    m_prpMain->setObjectName(QStringLiteral("prpMain"));
    m_prpMain->setAccessibleName(QStringLiteral("Pages"));
    m_prpMain->addTab(createNotePage(), QStringLiteral("&Note"));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_prpMain);
    layout->addWidget(createButtons());
}

QWidget* frmNoteProperties::createNotePage() {
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("picClient(0)"));
    auto* form = new QFormLayout;
    m_txtSubject = new QLineEdit;
    m_txtSubject->setObjectName(QStringLiteral("txtSubject"));
    m_txtSubject->setAccessibleName(QStringLiteral("Subject"));
    m_txtSubject->setMaxLength(schema::kMaxText);
    QLabel* subject = makeLabel(QStringLiteral("&Subject :"), 0);
    subject->setBuddy(m_txtSubject);
    form->addRow(subject, m_txtSubject);

    m_dtpDate = new DatePicker(QStringLiteral("dtpDate"), QStringLiteral("Date/Time"));
    QLabel* date = makeLabel(QStringLiteral("&Date/Time:"), 1);
    date->setBuddy(m_dtpDate);
    form->addRow(date, m_dtpDate);

    QLabel* type = makeLabel(QStringLiteral("Note &Type:"), 2);
    form->addRow(type, createTypeRow(*type));
    m_chkAutoShow = new QCheckBox(QStringLiteral("Automatically Show this Note?"));
    m_chkAutoShow->setObjectName(QStringLiteral("chkAutoShow"));
    form->addRow(QString(), m_chkAutoShow);

    auto* layout = new QVBoxLayout(page);
    layout->addLayout(form);
    layout->addWidget(createReminderFrame(), 1);
    return page;
}

QWidget* frmNoteProperties::createTypeRow(QLabel& label) {
    static const std::array captions{QStringLiteral("&Private"), QStringLiteral("&Public")};
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    for (size_t i = 0; i < m_optType.size(); ++i) {
        m_optType[i] = new QRadioButton(captions[i]);
        m_optType[i]->setObjectName(indexed("optType", int(i)));
        layout->addWidget(m_optType[i]);
    }
    m_optType[size_t(TypeOption::Private)]->setToolTip(
        QStringLiteral("Marks the note as private. Other users can still read it."));
    label.setBuddy(m_optType[size_t(TypeOption::Public)]);
    layout->addStretch(1);
    return row;
}

QWidget* frmNoteProperties::createReminderFrame() {
    static const std::array captions{
        QStringLiteral("Remind &Everyone"), QStringLiteral("Remind &Just Me"),
        QStringLiteral("Remind Selected &Users"), QStringLiteral("Remind &Everyone in")};
    m_fraReminder = new QGroupBox(QStringLiteral("&Reminder"));
    m_fraReminder->setObjectName(QStringLiteral("fraReminder"));
    auto* layout = new QVBoxLayout(m_fraReminder);
    layout->addWidget(createReminderPicker());
    m_lblClockChange = new ClockChangeLabel(*m_dtpReminder, m_fraReminder);
    layout->addWidget(m_lblClockChange);
    for (size_t i = 0; i < m_optReminder.size(); ++i) {
        m_optReminder[i] = new QRadioButton(captions[i]);
        m_optReminder[i]->setObjectName(indexed("optReminder", int(i)));
        auto* line = new QHBoxLayout;
        line->setSpacing(12);
        line->addWidget(m_optReminder[i]);
        layout->addLayout(line);
        if (static_cast<ReminderOption>(i) == ReminderOption::JustMe) {
            m_lblOwnState = new QLabel; // for the one who stands in no list
            m_lblOwnState->setObjectName(QStringLiteral("lblOwnState"));
            m_lblOwnState->setTextFormat(Qt::PlainText);
            line->addWidget(m_lblOwnState);
        }
        line->addStretch(1);
    }
    createUsersTree(*layout);
    return m_fraReminder;
}

void frmNoteProperties::createUsersTree(QVBoxLayout& layout) {
    m_tvwRemindUsers = new QTreeWidget;
    m_tvwRemindUsers->setObjectName(QStringLiteral("tvwRemindUsers"));
    m_tvwRemindUsers->setAccessibleName(QStringLiteral("Users to remind"));
    m_tvwRemindUsers->setHeaderLabels({QStringLiteral("User"), QStringLiteral("State")});
    m_tvwRemindUsers->setColumnCount(1);
    m_tvwRemindUsers->setHeaderHidden(true);
    m_tvwRemindUsers->setMinimumHeight(130);
    QLabel* label = makeLabel(QStringLiteral("Tick Users to Remind:"), 3);
    label->setBuddy(m_tvwRemindUsers);
    layout.addWidget(label);
    layout.addWidget(m_tvwRemindUsers, 1);
}

QWidget* frmNoteProperties::createReminderPicker() {
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    m_chkReminder = new QCheckBox(QStringLiteral("&Set Reminder:"));
    m_chkReminder->setObjectName(QStringLiteral("chkReminder"));
    m_dtpReminder = new DatePicker(QStringLiteral("dtpReminder"), QStringLiteral("Reminder time"));

    auto* steps = new QWidget;
    steps->setObjectName(QStringLiteral("updReminder"));
    auto* stepLayout = new QHBoxLayout(steps);
    stepLayout->setContentsMargins(0, 0, 0, 0);
    stepLayout->setSpacing(2);
    m_updReminderUp = makeStepButton(QStringLiteral("updReminderUp"),
                                     QStringLiteral("30 minutes later"), Qt::UpArrow);
    m_updReminderDown = makeStepButton(QStringLiteral("updReminderDown"),
                                       QStringLiteral("30 minutes earlier"), Qt::DownArrow);
    stepLayout->addWidget(m_updReminderUp);
    stepLayout->addWidget(m_updReminderDown);

    layout->addWidget(m_chkReminder);
    layout->addWidget(m_dtpReminder);
    layout->addWidget(steps);
    layout->addStretch(1);
    return row;
}

QWidget* frmNoteProperties::createButtons() {
    static const std::array captions{QStringLiteral("&OK"), QStringLiteral("&Cancel")};
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addStretch(1);
    for (size_t i = 0; i < m_cmdForm.size(); ++i) {
        m_cmdForm[i] = new QPushButton(captions[i]);
        m_cmdForm[i]->setObjectName(indexed("cmdForm", int(i)));
        m_cmdForm[i]->setAutoDefault(false);
        layout->addWidget(m_cmdForm[i]);
    }
    m_cmdForm[size_t(FormButton::Ok)]->setDefault(true);
    return row;
}

void frmNoteProperties::connectEvents() {
    letTabReachTheChosen(m_optType);
    letTabReachTheChosen(m_optReminder);
    connect(m_prpMain, &QTabWidget::currentChanged, this, [this] { prpMain_Click(); });
    connect(m_chkReminder, &QCheckBox::toggled, this, [this] { chkReminder_Click(); });
    for (size_t i = 0; i < m_optReminder.size(); ++i) {
        connect(m_optReminder[i], &QRadioButton::toggled, this, [this, i](bool chosen) {
            if (chosen) {
                optReminder_Click(static_cast<ReminderOption>(i));
            }
        });
    }
    connect(m_updReminderUp, &QToolButton::clicked, this, [this] { updReminder_UpClick(); });
    connect(m_updReminderDown, &QToolButton::clicked, this, [this] { updReminder_DownClick(); });
    connect(m_tvwRemindUsers, &QTreeWidget::itemChanged, this,
            [this](QTreeWidgetItem* node) { tvwRemindUsers_NodeCheck(node); });
    connect(m_tvwRemindUsers, &QTreeWidget::itemCollapsed, this,
            [this](QTreeWidgetItem* node) { tvwRemindUsers_Collapse(node); });
    for (size_t i = 0; i < m_cmdForm.size(); ++i) {
        connect(m_cmdForm[i], &QPushButton::clicked, this,
                [this, i] { cmdForm_Click(static_cast<FormButton>(i)); });
    }
}

} // namespace yrw
