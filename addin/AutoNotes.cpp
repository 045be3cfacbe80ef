#include "addin/AutoNotes.h"

#include "addin/AddIn.h"
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
        const GuardedPtr<IHostInterface> host = m_addIn.IInterface();
        if (!controller || !host || m_addIn.Component() == nullptr || !m_addIn.isDatabaseOpen() ||
            !m_addIn.switchOn(NotesSwitch::ShowPopupWindow) || !host->CanCheckNotes()) {
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
    const bool wantsPopup = NotesSettings(m_addIn.services().settings).get(setting::kShowAutoPopup);
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
            IHostInterface* const host = m_addIn.IInterface();
            if (QWidget* const window = host != nullptr ? host->Window() : nullptr) {
                announce(*window, countText(count));
            }
        });
    }
    discard.dismiss();
}

Ref<dao::Recordset> AutoNotes::openNotes(IRecord& record) const {
    const OwnerKey owner{record.Collection()->ObjectKey(),
                         record.value(QStringLiteral("RecordID"))};
    return openAutomaticNotes(m_addIn.dataHelper(), m_addIn.HostProgID(), owner);
}

/// "Customer: Quill & Son [ANNA ASH NOTES]": whose notes they are, and whose hand the first is.
QString AutoNotes::heading(IRecord& record, const dao::Recordset& notes) const {
    Ref<IHostApplication> host;
    ignoreErrors([&] {
        IHostComponent* const component = m_addIn.Component();
        host = component != nullptr ? component->Application() : nullptr;
    });
    return nameOf(host, record) + u'[' + authorOf(host, notes).toUpper() +
           QStringLiteral(" NOTES]");
}

void AutoNotes::showStatus(int count, const QString& heading) const {
    if (IStatusBar* bar = m_addIn.statusBar()) {
        bar->setText(countText(count));
        bar->setToolTipText(heading);
        bar->setTag(kMarker);
        bar->refresh();
    }
}

// The popup.

frmAutoNotes& AutoNotes::popup() {
    if (!mfrmAutoNotes) {
        mfrmAutoNotes = new frmAutoNotes(m_addIn.services(), m_addIn.IInterface()->Window());
        connectPopup(*mfrmAutoNotes);
    }
    return *mfrmAutoNotes;
}

void AutoNotes::connectPopup(frmAutoNotes& form) {
    QObject::connect(&form, &frmAutoNotes::ShowNote, &form, [this](qint64 noteID) {
        // Not from within the click: the popup that got it ends before the notes window does.
        const auto show = [keep = Ref<AddIn>(&m_addIn), noteID] {
            ignoreErrors([&] { keep->ShowNotes(nullptr, noteID); });
        };
        QMetaObject::invokeMethod(qApp, show, Qt::QueuedConnection);
    });
    QObject::connect(&form, &frmAutoNotes::CancelFocusCheck, &form,
                     [this] { m_addIn.setAutoNoteTimerEnabled(false); });
    QObject::connect(&form, &frmAutoNotes::UnloadForm, &form, [this] {
        const Ref<AddIn> keep(&m_addIn);
        m_addIn.cleanUpAutoNotes();
    });
    QObject::connect(&form, &frmAutoNotes::settled, &form,
                     [this] { m_addIn.setAutoNoteTimerEnabled(true); });
}

void AutoNotes::present(frmAutoNotes& form) {
    const QRect host = m_addIn.IInterface()->WindowRect();
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

void AutoNotes::cleanUp(const GuardedPtr<IStatusBar>& statusBar) noexcept {
    if (m_cleaningUp) {
        return;
    }
    const QScopedValueRollback<bool> guard(m_cleaningUp, true);
    ignoreErrors([&] {
        if (statusBar && statusBar->tag() == kMarker) {
            statusBar->setText({});
            statusBar->setToolTipText({});
            statusBar->setTag({});
            statusBar->refresh();
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
