#include "notes_window/frmInsertAttachment.h"

#include "dialogs/Hourglass.h"
#include "framework/ErrorGuards.h"
#include "framework/Services.h"
#include "framework/Settings.h"
#include "store/Application.h"
#include "store/NotesContext.h"

#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace yrw {

namespace {

/// Explorer style, path and file must exist, several may be chosen, no read-only box.
constexpr int kOpenFlags = 530948;
constexpr int kFieldWidth = 340;

/// Offered where the system settings name no other filter.
const QString kDefaultFilter =
    QStringLiteral(
        "Excel And Word Documents (*.xls, *.doc)|*.xls;*.doc|Word Documents (*.doc)|*.doc|") +
    QStringLiteral("Text File (*.txt; *.rtf)|*.txt;*.rtf|") +
    QStringLiteral("File Link (*.lnk)|*.lnk|Anything else (*.*)|*.*|");

template <class Control>
Control* named(Control* control, const char* name) {
    control->setObjectName(QLatin1String(name));
    return control;
}

} // namespace

frmInsertAttachment::frmInsertAttachment(NotesContext& context, QWidget* owner)
    : Form(QStringLiteral("frmInsertAttachment"), owner), m_context(context) {
    createControls();
    layOut();
    connectEvents();
}

frmInsertAttachment::~frmInsertAttachment() = default;

void frmInsertAttachment::Initialise(const Ref<INotesParent>& Parent, ObjectDisplay display) {
    m_parent = Parent;
    m_optDisplay[display == ObjectDisplay::Icon ? 0 : 1]->setChecked(true);
}

// Event handlers.

void frmInsertAttachment::Form_Load() {
    m_lblForm[1]->hide();
    m_txtFile->setFocus();
}

void frmInsertAttachment::Form_KeyDown(FormKey& key) {
    if (key.is(Qt::Key_Escape)) {
        key.consumed = true;
        cmdForm_Click(FormButton::Cancel);
    }
}

void frmInsertAttachment::txtFile_Change() {
    m_lblForm[1]->setVisible(m_txtFile->text().right(3).toLower() == u"lnk");
}

void frmInsertAttachment::cmdBrowse_Click() {
    NotesSettings settings(m_context.services().settings);
    const QString last = settings.get(setting::kLastFolder);
    const QString chosen = m_context.services().utility.OpenFile(
        QStringLiteral("Please select the file to insert"), QStringLiteral("Insert File"),
        fileFilter(), kOpenFlags, QFileInfo(last).isDir() ? last : QString());
    if (!chosen.isEmpty()) {
        m_txtFile->setText(chosen);
        settings.set(setting::kLastFolder, HostUtility::FolderOfPath(chosen));
    }
}

void frmInsertAttachment::cmdForm_Click(FormButton index) {
    if (index == FormButton::Ok) {
        confirm();
    } else {
        unload();
    }
}

// Named operations.

QString frmInsertAttachment::fileFilter() const {
    QString filter;
    ignoreErrors([&] {
        const Ref<IRecord> row = m_context.application().CurrentSettings(true);
        filter = HostUtility::NullToText(row->value(QStringLiteral("FileOpenFilter")));
    });
    return filter.isEmpty() ? kDefaultFilter : filter;
}

void frmInsertAttachment::confirm() {
    const ObjectDisplay display =
        m_optDisplay[0]->isChecked() ? ObjectDisplay::Icon : ObjectDisplay::Content;
    bool cancel = false;
    {
        const Hourglass hourglass(m_context.services().prompt);
        const QPointer<frmInsertAttachment> alive(this);
        hide();
        // A handler that fails must not leave the dialog hidden and open for ever.
        ignoreErrors([&] { Continue.raise(m_txtFile->text(), display, cancel); });
        if (alive.isNull()) {
            return;
        }
    }
    if (cancel) {
        show();
        activateWindow();
    } else {
        unload();
    }
}

// Controls.

void frmInsertAttachment::createControls() {
    setWindowTitle(QStringLiteral("Insert Attachment"));
    m_lblForm[0] = named(new QLabel(QStringLiteral("&Filename:"), this), "lblForm(0)");
    m_lblForm[1] =
        named(new QLabel(QStringLiteral("You are inserting a file link!"), this), "lblForm(1)");
    m_txtFile = named(new QLineEdit(this), "txtFile");
    m_txtFile->setAccessibleName(QStringLiteral("Filename"));
    m_txtFile->setMinimumWidth(kFieldWidth);
    m_lblForm[0]->setBuddy(m_txtFile);
    m_cmdBrowse = named(new QPushButton(QStringLiteral("&Browse..."), this), "cmdBrowse");
    m_cmdBrowse->setAccessibleName(QStringLiteral("Browse"));
    m_cmdBrowse->setAutoDefault(false);
    m_cmdForm = {named(new QPushButton(QStringLiteral("&OK"), this), "cmdForm(0)"),
                 named(new QPushButton(QStringLiteral("&Cancel"), this), "cmdForm(1)")};
    m_cmdForm[0]->setAccessibleName(QStringLiteral("OK"));
    m_cmdForm[0]->setDefault(true);
    m_cmdForm[1]->setAccessibleName(QStringLiteral("Cancel"));
    m_cmdForm[1]->setAutoDefault(false);
}

QWidget* frmInsertAttachment::createOptions() {
    m_Frame1 = named(new QGroupBox(QStringLiteral("Insert Options"), this), "Frame1");
    m_optDisplay = {named(new QRadioButton(QStringLiteral("Show as &Icon")), "optDisplay(0)"),
                    named(new QRadioButton(QStringLiteral("Show &Content")), "optDisplay(1)")};
    m_optDisplay[0]->setAccessibleName(QStringLiteral("Show as Icon"));
    m_optDisplay[1]->setAccessibleName(QStringLiteral("Show Content"));
    auto* const column = new QVBoxLayout(m_Frame1);
    column->addWidget(m_optDisplay[1]);
    column->addWidget(m_optDisplay[0]);
    return m_Frame1;
}

void frmInsertAttachment::layOut() {
    auto* const grid = new QGridLayout(this);
    grid->addWidget(m_lblForm[0], 0, 0);
    grid->addWidget(m_txtFile, 0, 1);
    grid->addWidget(m_cmdBrowse, 0, 2);
    grid->addWidget(m_lblForm[1], 1, 1, 1, 2);
    grid->addWidget(createOptions(), 2, 0, 1, 3);
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_cmdForm[0]);
    buttons->addWidget(m_cmdForm[1]);
    grid->addLayout(buttons, 4, 0, 1, 3);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(3, 1);
    // The warning comes and goes without moving what is below it.
    QSizePolicy stays = m_lblForm[1]->sizePolicy();
    stays.setRetainSizeWhenHidden(true);
    m_lblForm[1]->setSizePolicy(stays);
    setTabOrder(m_txtFile, m_cmdBrowse);
    setTabOrder(m_cmdBrowse, m_optDisplay[1]);
    setTabOrder(m_optDisplay[1], m_optDisplay[0]);
    setTabOrder(m_optDisplay[0], m_cmdForm[0]);
    setTabOrder(m_cmdForm[0], m_cmdForm[1]);
}

void frmInsertAttachment::connectEvents() {
    connect(m_txtFile, &QLineEdit::textChanged, this, [this] { txtFile_Change(); });
    connect(m_cmdBrowse, &QPushButton::clicked, this,
            [this] { ignoreErrors([this] { cmdBrowse_Click(); }); });
    for (const FormButton index : {FormButton::Ok, FormButton::Cancel}) {
        connect(m_cmdForm[static_cast<std::size_t>(index)], &QPushButton::clicked, this,
                [this, index] { ignoreErrors([&] { cmdForm_Click(index); }); });
    }
}

} // namespace yrw
