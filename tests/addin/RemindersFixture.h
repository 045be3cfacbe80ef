#pragma once

// The add-in with reminders that fall due, and a user who answers them.

#include "tests/addin/AddInFixture.h"

#include "dialogs/frmReminder.h"

#include <QPushButton>

namespace yrw::test {

class RemindersFixture : public AddInFixture {
protected:
    void SetUp() override { activate(); }

    /// A reminder that falls due in so many minutes.
    qint64 remind(qint64 noteID, int minutes, qint64 userID = 1) {
        Application& application = Module1::instance().application();
        const Ref<Note> note = query<Note>(application.Notes()->Item(QVariant(noteID)));
        return addReminder(application, clock, *note, clock.now().addSecs(60 * minutes), userID);
    }
    [[nodiscard]] static QList<Form*> popups() { return formsNamed(QStringLiteral("frmReminder")); }
    [[nodiscard]] static QStringList tags() {
        QStringList found;
        for (const Form* form : popups()) {
            found += form->tag();
        }
        return found;
    }
    static QString tagOf(qint64 reminderID) { return QStringLiteral("NOTE:%1").arg(reminderID); }
    [[nodiscard]] static frmReminder& popup(qsizetype index = 0) {
        return *static_cast<frmReminder*>(popups().at(index));
    }
    template <class Control>
    [[nodiscard]] static Control& control(const char* name) {
        return *popup().findChild<Control*>(QLatin1String(name));
    }
    /// Clicks a button of the first popup when it has been there for a while.
    void click(const char* button) {
        clock.advance(1);
        QTest::mouseClick(&control<QPushButton>(button), Qt::LeftButton);
    }
    [[nodiscard]] static Ref<IRecord> stored(qint64 reminderID) {
        return Module1::instance().application().Reminders()->Item(QVariant(reminderID));
    }
    [[nodiscard]] static QVariant stored(qint64 reminderID, const char* field) {
        return stored(reminderID)->value(QLatin1String(field));
    }
    [[nodiscard]] bool minuteTick() {
        bool cancel = false;
        Q_EMIT addIn->UpperTimerForm()->CheckReminders(cancel);
        return !cancel;
    }
    /// Lets a minute pass for the timer, with all that it does.
    void timerTicks() {
        QMetaObject::invokeMethod(&addIn->UpperTimerForm()->ReminderTimer(), "timeout");
    }
    /// Runs statements as another machine does.
    void elsewhere(const QString& script) {
        const Ref<dao::Workspace> workspace = dao::createWorkspace({clock, files});
        workspace->OpenDatabase(world.notesPath())->RunScript(script);
        workspace->Close();
        settle(); // the next turn of the event loop sees it
    }
};

} // namespace yrw::test
