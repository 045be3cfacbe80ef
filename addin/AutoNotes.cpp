#include "addin/AutoNotes.h"

#include "addin/AddInHost.h"
#include "addin/Standing.h"
#include "addin/TimerForm.h"
#include "dialogs/frmAutoNotes.h"
#include "framework/ErrorGuards.h"
#include "framework/Settings.h"
#include "platform/component/NamedCalls.h"
#include "platform/forms/Announcement.h"
#include "platform/forms/Twips.h"
#include "store/NoteReading.h"

#include <QCoreApplication>
#include <QScopeGuard>
#include <QScopedValueRollback>

#include <algorithm>

namespace yrw {

namespace {

QString countText(int count) {
    return QString::number(count) + QStringLiteral(" Note(s) Found...!!");
}

/// The record's kind and its own text, as "Customer: Quill & Son "; what the host does not tell of
/// them is left out.
QString nameOf(const Ref<IHostApplication>& host, IRecord& record) {
    QString kind;
    QString name;
    ignoreErrors([&] {
        const Ref<ICollection> collection = record.Collection();
        kind = callByName(dynamic_cast<INamedCalls*>(collection.get()), QStringLiteral("UseName"))
                   .toString();
        kind = host->ObjectDisplayName(kind);
    });
    ignoreErrors([&] { name = HostUtility::NullToText(record.ShortDisplayValue()->Value()); });
    return kind + QStringLiteral(": ") + name + u' ';
}

/// The name of the note's author as the host knows it; as the note knows it where the host does
/// not have that user any more.
QString authorOf(const Ref<IHostApplication>& host, const dao::Recordset& note) {
    QString name;
    ignoreErrors([&] {
        const Ref<IRecord> user = host->Users()->Item(note.value(u"RecordUserID"));
        name = HostUtility::NullToText(user->value(QStringLiteral("UseName")));
    });
    return name.isEmpty() ? HostUtility::NullToText(note.value(u"UseName")) : name;
}

} // namespace

const QString AutoNotes::kFormName = QStringLiteral("frmAutoNotes");
const QString AutoNotes::kMarker = QStringLiteral("989879879");

int AutoNotes::popupCount() {
    const QList<Form*> forms = Form::openForms();
    return static_cast<int>(std::count_if(forms.begin(), forms.end(), [](const Form* form) {
        return form->objectName() == kFormName;
    }));
}

// The check.

void AutoNotes::check(const GuardedPtr<IGridController>& controller, bool closesPopup) noexcept {
    ignoreErrors([&] {
        if (!controller || !m_host.hostInterface || !m_host.component ||
            !m_standing.isDatabaseOpen() || !m_context.switchOn(NotesSwitch::ShowPopupWindow) ||
            !m_host.hostInterface->CanCheckNotes()) {
            return;
        }
        if (!m_currentRecord) {
            m_currentRecord = controller->CurrentRecord();
        }
        const IRecordGrid* grid = nullptr;
        ignoreErrors([&] { grid = controller->Grid(); }); // without one no new record is begun
        const bool isNew = grid != nullptr && grid->addNewMode() == AddNewMode::AddNewCurrent;
        if (m_currentRecord && !isNew) {
            showNotes(closesPopup);
        }
    });
}

void AutoNotes::showNotes(bool closesPopup) {
    const Ref<IRecord> record = m_currentRecord;
    const Ref<dao::Recordset> notes = openNotes(*record);
    const bool wantsPopup =
        NotesSettings(m_context.services().settings).get(setting::kShowAutoPopup);
    if (closesPopup) {
        closePopup();
    }
    // One that did not get as far as the screen must not stay behind.
    auto discard = qScopeGuard([this] { delete mfrmAutoNotes.data(); });
    if (mfrmAutoNotes) {
        discard.dismiss();
    }
    QString category;
    int count = 0;
    for (; !notes->AtEof(); notes->MoveNext(), ++count) {
        if (count == 0) {
            category = heading(*record, *notes);
        }
        if (wantsPopup) {
            // Where none can be made, the status bar tells all the same.
            ignoreErrors([&] {
                popup().AddNote(category, notes->value(u"RecordID").toLongLong(),
                                HostUtility::NullToText(notes->value(u"Subject")),
                                HostUtility::NullToText(notes->value(u"PlainNote")), count == 0);
            });
        }
    }
    notes->Close();
    if (count == 0) {
        return;
    }
    showStatus(count, category);
    if (mfrmAutoNotes) {
        present(*mfrmAutoNotes);
    } else { // the popup, where there is one, says more
        ignoreErrors([&] {
            if (QWidget* const window = m_host.window()) {
                announce(*window, countText(count));
            }
        });
    }
    discard.dismiss();
}

Ref<dao::Recordset> AutoNotes::openNotes(IRecord& record) const {
    const OwnerKey owner{record.Collection()->ObjectKey(),
                         record.value(QStringLiteral("RecordID"))};
    return openAutomaticNotes(m_context.dataHelper(), m_host.progID(), owner);
}

/// "Customer: Quill & Son [ANNA ASH NOTES]": whose notes they are, and whose hand the first is.
QString AutoNotes::heading(IRecord& record, const dao::Recordset& notes) const {
    Ref<IHostApplication> host;
    ignoreErrors([&] { host = m_host.application(); });
    return nameOf(host, record) + u'[' + authorOf(host, notes).toUpper() +
           QStringLiteral(" NOTES]");
}

void AutoNotes::showStatus(int count, const QString& heading) const {
    if (IStatusBar* bar = m_host.stbMain.get()) {
        bar->setText(countText(count));
        bar->setToolTipText(heading);
        bar->setTag(kMarker);
        bar->refresh();
    }
}

// The popup.

frmAutoNotes& AutoNotes::popup() {
    if (!mfrmAutoNotes) {
        mfrmAutoNotes = new frmAutoNotes(m_context.services(), m_host.hostInterface->Window());
        connectPopup(*mfrmAutoNotes);
    }
    return *mfrmAutoNotes;
}

void AutoNotes::connectPopup(frmAutoNotes& form) {
    QObject::connect(&form, &frmAutoNotes::ShowNote, &form, [this](qint64 noteID) {
        // Not from within the click: the popup that got it ends before the notes window does.
        const auto show = [keep = Ref<INotesParent>(&m_addIn), noteID] {
            ignoreErrors([&] { keep->ShowNotes(nullptr, noteID); });
        };
        QMetaObject::invokeMethod(qApp, show, Qt::QueuedConnection);
    });
    QObject::connect(&form, &frmAutoNotes::CancelFocusCheck, &form,
                     [this] { m_timers.enableAutoNotes(false); });
    QObject::connect(&form, &frmAutoNotes::UnloadForm, &form, [this] {
        const Ref<INotesParent> keep(&m_addIn);
        cleanUp();
    });
    QObject::connect(&form, &frmAutoNotes::settled, &form,
                     [this] { m_timers.enableAutoNotes(true); });
}

void AutoNotes::present(frmAutoNotes& form) {
    const QRect host = m_host.hostInterface->WindowRect();
    form.SetPosition(pixelsToTwips(host.x()), pixelsToTwips(host.y()), pixelsToTwips(host.height()),
                     pixelsToTwips(host.width()));
    form.present();
}

bool AutoNotes::closePopup() noexcept {
    const QPointer<frmAutoNotes> form = std::exchange(mfrmAutoNotes, nullptr);
    ignoreErrors([&] {
        if (form) {
            form->unload();
        }
    });
    return !form.isNull();
}

void AutoNotes::landed(const GuardedPtr<IGridController>& controller) noexcept {
    if (m_standing.isBehind()) {
        return;
    }
    forgetCurrentRecord(); // else every row would show the notes of the first
    check(controller, true);
}

void AutoNotes::watchFocus() {
    if (popupCount() == 0) {
        m_timers.enableAutoNotes(false);
    } else if (!m_host.hostInterface || !m_host.hostInterface->IsWindowActive()) {
        cleanUp();
    }
}

void AutoNotes::cleanUp() noexcept {
    if (!m_standing.isBehind()) { // else what is on screen is the other's
        clear();
    }
    m_timers.enableAutoNotes(false);
}

void AutoNotes::clear() noexcept {
    if (m_cleaningUp) {
        return;
    }
    const QScopedValueRollback<bool> guard(m_cleaningUp, true);
    ignoreErrors([&] {
        const GuardedPtr<IStatusBar> bar = m_host.stbMain;
        if (bar && bar->tag() == kMarker) {
            bar->setText({});
            bar->setToolTipText({});
            bar->setTag({});
            bar->refresh();
        }
    });
    QList<QPointer<Form>> popups;
    for (Form* form : Form::openForms()) {
        if (form->objectName() == kFormName) {
            popups.append(form);
        }
    }
    for (const QPointer<Form>& popup : popups) {
        ignoreErrors([&] {
            if (popup) {
                popup->unload();
            }
        });
    }
    closePopup();
}

} // namespace yrw
