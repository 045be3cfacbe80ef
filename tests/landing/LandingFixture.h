#pragma once

// The desk's window with the add-in in one process, over a fresh notes database.

#include "addin/AddIn.h"
#include "addin/frmTimer.h"
#include "dialogs/frmAutoNotes.h"
#include "store/NotesDatabase.h"
#include "tests/host/DeskFixture.h"
#include "tests/support/NoteOf.h"
#include "tests/support/NotesFixture.h"

#include <QDir>
#include <QTableWidget>

namespace yrw::test {

/// Opens a desk of 40 customers with the add-in at work. Works as ANNA unless `user` says so.
class LandingFixture : public DeskFixture {
protected:
    LandingFixture() {
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_folder.filePath("settings")));
        Clock::setInstance(&m_clock);
        Prompt::setInstance(&m_prompt);
        Module1::instance().setTemplateFolder(shippedTemplateFolder());
        createObject = [this](const QString&) {
            addIn = make<AddIn>();
            return Ref<Counted>(addIn);
        };
        QDir().mkpath(m_folder.filePath("data"));
        createNotesDatabase(m_files, shippedTemplateFolder(), m_folder.filePath("data"));
    }
    ~LandingFixture() override {
        shutDown();
        Module1::instance().setTemplateFolder({});
        Prompt::setInstance(nullptr);
        Clock::setInstance(nullptr);
    }
    void TearDown() override { shutDown(); }
    void shutDown() {
        addIn.reset();
        close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    static qint64 addNote(const QString& objectKey, qint64 recordID, const QString& subject,
                          bool showsItself = true) {
        return addNoteOf(Module1::instance().application(), objectKey, recordID,
                         {.subject = subject,
                          .showsItself = showsItself,
                          .progID = QString::fromUtf16(kDeskProgID)});
    }
    [[nodiscard]] static frmAutoNotes* popup() {
        for (Form* form : Form::openForms()) {
            if (auto* found = qobject_cast<frmAutoNotes*>(form)) {
                return found;
            }
        }
        return nullptr;
    }
    /// Subjects in the popup; nothing when none is on screen.
    [[nodiscard]] static QStringList shownSubjects() {
        QStringList subjects;
        if (popup() != nullptr && popup()->isVisible()) {
            const auto& list = *popup()->findChild<QTableWidget*>(QStringLiteral("flxThis"));
            for (int row = 1; row < list.rowCount(); row += 2) {
                subjects += list.item(row, 0)->text();
            }
        }
        return subjects;
    }
    ::testing::AssertionResult comesUp(const QStringList& subjects) {
        if (QTest::qWaitFor([&] { return shownSubjects() == subjects; }, 5000)) {
            return ::testing::AssertionSuccess();
        }
        return ::testing::AssertionFailure()
               << "on screen: " << qPrintable(shownSubjects().join(", "));
    }
    /// Waits until no popup is on screen, as it should be soon.
    static bool goesAway() {
        return QTest::qWaitFor([] { return popup() == nullptr; }, 3000);
    }
    [[nodiscard]] QString statusText() { return window().mainStatusBar().text(); }

    Ref<AddIn> addIn;
};

} // namespace yrw::test
