#include "platform/forms/Form.h"

#include "platform/forms/DrawnIcons.h"
#include "platform/forms/KeyPreview.h"
#include "platform/forms/KeyboardBack.h"
#include "platform/forms/Readable.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QKeyEvent>
#include <QPointer>

namespace yrw {

namespace {

QList<Form*>& loadedForms() {
    static QList<Form*> forms;
    return forms;
}

/// True when a window comes to the front that was not the last one there. A box over a form, or
/// another program, leaves the form as it was and the keyboard where it was.
bool comesAnew(QWidget* window) {
    static QPointer<QWidget> last;
    const bool anew = last != window;
    last = window;
    return anew;
}

/// Hands each event of a window to the form that it is, and closings to the forms that the window
/// owns. One for the process: a filter per form would make each event cost as much as there are
/// forms.
class FormEvents final : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (!watched->isWidgetType()) {
            return false;
        }
        if (event->type() == QEvent::WindowActivate && isMainWindow(watched)) {
            comesAnew(static_cast<QWidget*>(watched));
        }
        if (event->type() == QEvent::Close && !ownedFormsClose(watched, event)) {
            return true;
        }
        return handOn(Form::formOf(*static_cast<QWidget*>(watched)), watched, event);
    }

private:
    /// A window that is neither a form, which sees to itself, nor a box.
    static bool isMainWindow(QObject* watched) {
        return static_cast<QWidget*>(watched)->isWindow() &&
               qobject_cast<QDialog*>(watched) == nullptr;
    }
    static bool handOn(QObject* form, QObject* watched, QEvent* event) {
        return form != nullptr && form->eventFilter(watched, event);
    }
    static bool ownedFormsClose(QObject* owner, QEvent* event) {
        const QList<Form*> forms = loadedForms();
        for (auto form = forms.rbegin(); form != forms.rend(); ++form) {
            // What was closed before may have taken this one with it.
            if (loadedForms().contains(*form) && (*form)->parent() == owner &&
                handOn(*form, owner, event)) {
                return false;
            }
        }
        return true;
    }
};

void watchEvents() {
    static QPointer<FormEvents> events;
    if (!events) {
        events = new FormEvents(qApp);
        qApp->installEventFilter(events);
    }
}

} // namespace

Form::Form(const QString& name, QWidget* owner) : QDialog(owner) {
    setObjectName(name);
    setWindowIcon(drawnIcon(QStringLiteral("yarrowen-notes")));
    keepReadable(*this);
    watchEvents();
    KeyPreview::watch();
    if (owner != nullptr) {
        adopt(owner);
    }
}

Form::~Form() {
    loadedForms().removeAll(this);
}

void Form::load() {
    if (m_loaded || m_unloaded) {
        return;
    }
    m_loaded = true;
    loadedForms().append(this);
    Form_Load();
}

void Form::setVisible(bool visible) {
    if (visible) {
        load();
    }
    if (!visible || !m_unloaded) {
        QDialog::setVisible(visible);
    }
}

void Form::adopt(QWidget* owner) {
    QWidget* const window = owner == nullptr ? nullptr : owner->window();
    if (parentWidget() != window) {
        setParent(window, windowFlags());
    }
    if (window == nullptr) {
        return;
    }
    connect(window, &QObject::destroyed, this, [this](QObject* gone) {
        if (parent() == gone) {
            setParent(nullptr, windowFlags());
            finishUnload();
        }
    });
}

void Form::showModal(QWidget* owner) {
    load();
    if (m_unloaded) {
        return;
    }
    adopt(owner);
    setWindowModality(Qt::ApplicationModal);
    QEventLoop loop;
    connect(this, &Form::unloaded, &loop, &QEventLoop::quit);
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    show();
    raise();
    activateWindow();
    // Showing raises events whose handlers may have unloaded the form already.
    const QPointer<QWidget> back(owner == nullptr ? nullptr : owner->window());
    if (!m_unloaded) {
        loop.exec();
    }
    giveKeyboardBack(back);
}

void Form::showModeless(QWidget* owner, bool activate) {
    load();
    if (m_unloaded) {
        return;
    }
    adopt(owner);
    m_modeless = true;
    setAttribute(Qt::WA_ShowWithoutActivating, !activate);
    show();
    if (activate) {
        raise();
        activateWindow();
    }
}

bool Form::unloadOwnedForms() {
    const QList<Form*> forms = loadedForms();
    for (auto it = forms.rbegin(); it != forms.rend(); ++it) {
        Form* const form = *it;
        if (loadedForms().contains(form) && form->parentWidget() == this && !form->unload()) {
            return false;
        }
    }
    return true;
}

bool Form::unload() {
    if (m_unloaded || m_unloading) {
        return true;
    }
    m_unloading = true;
    bool cancel = !unloadOwnedForms();
    if (!cancel && m_loaded) {
        Form_QueryUnload(cancel);
    }
    m_unloading = false;
    if (!cancel) {
        finishUnload();
    }
    return !cancel;
}

void Form::finishUnload() {
    if (m_unloaded) {
        return;
    }
    m_unloading = true;
    if (m_loaded) {
        Form_Unload();
    }
    m_unloaded = true;
    loadedForms().removeAll(this);
    hide();
    if (m_modeless) {
        deleteLater();
    }
    Q_EMIT unloaded();
}

WindowStateCode Form::windowStateCode() const {
    if (isMinimized()) {
        return WindowStateCode::Minimised;
    }
    return isMaximized() ? WindowStateCode::Maximised : WindowStateCode::Normal;
}

void Form::setWindowStateCode(WindowStateCode state) {
    const Qt::WindowStates others =
        windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen);
    switch (state) {
    case WindowStateCode::Normal:
        setWindowState(others);
        break;
    case WindowStateCode::Minimised:
        setWindowState(others | Qt::WindowMinimized);
        break;
    case WindowStateCode::Maximised:
        setWindowState(others | Qt::WindowMaximized);
        break;
    }
}

QList<Form*> Form::openForms() {
    return loadedForms();
}

Form* Form::formOf(const QWidget& control) {
    QWidget* const window = control.window();
    auto* const form = qobject_cast<Form*>(window);
    if (form != nullptr || window->windowType() != Qt::Tool || window->parentWidget() == nullptr) {
        return form;
    }
    return qobject_cast<Form*>(window->parentWidget()->window());
}

void Form::keepWhatWasTyped() {
    const QList<Form*> forms = loadedForms();
    for (Form* const form : forms) {
        form->Form_EndSession();
    }
}

bool Form::isModalOpen() {
    return QApplication::activeModalWidget() != nullptr;
}

void Form::Form_Load() {}
void Form::Form_Activate() {}
void Form::Form_Resize() {}
void Form::Form_KeyDown(FormKey&) {}
void Form::Form_KeyUp(FormKey&) {}
void Form::Form_QueryUnload(bool&) {}
void Form::Form_Unload() {}
void Form::Form_EndSession() {}

bool Form::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Close && watched == parent() && m_loaded && !unload()) {
        event->ignore();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

bool Form::event(QEvent* event) {
    const bool result = QDialog::event(event);
    if (event->type() == QEvent::WindowActivate && m_loaded && !m_unloaded && comesAnew(this)) {
        Form_Activate();
    }
    return result;
}

void Form::closeEvent(QCloseEvent* event) {
    event->setAccepted(m_unloading || unload());
}

void Form::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    if (m_loaded && !m_unloaded) {
        Form_Resize();
    }
}

void Form::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        event->ignore();
        return;
    }
    QDialog::keyPressEvent(event);
}

void Form::reject() {}

} // namespace yrw
