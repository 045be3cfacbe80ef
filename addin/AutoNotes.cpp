#include "addin/AutoNotes.h"

#include "framework/ErrorGuards.h"
#include "platform/forms/Form.h"

#include <QPointer>
#include <QScopedValueRollback>

#include <algorithm>

namespace yrw {

const QString AutoNotes::kFormName = QStringLiteral("frmAutoNotes");
const QString AutoNotes::kMarker = QStringLiteral("989879879");

int AutoNotes::popupCount() {
    const QList<Form*> forms = Form::openForms();
    return static_cast<int>(std::count_if(forms.begin(), forms.end(), [](const Form* form) {
        return form->objectName() == kFormName;
    }));
}

void AutoNotes::closePopups() noexcept {
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
    closePopups();
}

} // namespace yrw
