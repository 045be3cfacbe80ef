#pragma once

// A host's window with its records, in a folder of its own, for tests of the add-in.

#include "addin/AddIn.h"
#include "addin/Tools.h"
#include "addin/frmTimer.h"
#include "framework/Settings.h"
#include "platform/forms/Form.h"
#include "tests/support/FakeWindow.h"
#include "tests/support/NotesFixture.h"
#include "tests/support/PromptScript.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

#include <memory>

namespace yrw::test {

/// Where settings and registrations of one test go, before anything reads them.
class PrivateHome {
public:
    PrivateHome() {
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_folder.filePath(QStringLiteral("config"))));
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_folder.filePath(QStringLiteral("data"))));
        qputenv("XDG_STATE_HOME", QFile::encodeName(m_folder.filePath(QStringLiteral("state"))));
    }

private:
    QTemporaryDir m_folder;
};

/// The settings as the windows set them while an add-in is there.
[[nodiscard]] inline NotesSettings options() {
    return NotesSettings(Module1::instance().services().settings);
}

/// A host in a folder of its own; its window shows customers and orders.
class HostWorld {
public:
    HostWorld(Clock& clock, FileSystem& files, unsigned seed = 1)
        : host(make<FakeHostApplication>(dao::EngineServices{clock, files}, folder())),
          window(std::make_unique<FakeWindow>(host, seed)) {}

    [[nodiscard]] QString folder() const { return m_folder.path(); }
    [[nodiscard]] QString notesPath() const { return m_folder.filePath(kNotesDatabaseName); }

private:
    QTemporaryDir m_folder;

public:
    Ref<FakeHostApplication> host;
    std::unique_ptr<FakeWindow> window;
};

class AddInFixture : public testing::Test {
protected:
    AddInFixture() {
        Clock::setInstance(&clock);
        Module1::instance().setTemplateFolder(shippedTemplateFolder());
    }
    ~AddInFixture() override {
        addIn.reset();
        settle();
        Module1::instance().setTemplateFolder({});
        Clock::setInstance(nullptr);
    }

    /// Lets go of what is to be deleted later.
    static void settle() {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
    [[nodiscard]] FakeWindow& window() { return *world.window; }
    void makeNotesDatabase() {
        createNotesDatabase(files, shippedTemplateFolder(), world.folder());
    }
    /// Creates the add-in and hands it the component.
    void create() {
        addIn = make<AddIn>();
        addIn->setComponent(window().component);
    }
    /// The add-in at work on an existing notes database, the host's records on screen.
    void activate() {
        makeNotesDatabase();
        create();
        ASSERT_TRUE(addIn->Activate());
        window().showRecords();
    }
    /// Adds a note; nothing as object key makes one on no record.
    qint64 addNote(const QString& objectKey, qint64 recordID,
                   NoteStatus status = NoteStatus::Active,
                   const QString& progID = kFakeHostProgID) {
        qint64 id = 0;
        const dao::ValueList data{{QStringLiteral("Subject"), QStringLiteral("Ring back")},
                                  {QStringLiteral("Status"), static_cast<int>(status)},
                                  {QStringLiteral("OwnerComponentProgID"), progID},
                                  {QStringLiteral("OwnerObjectKey"),
                                   objectKey.isEmpty() ? QVariant() : QVariant(objectKey)},
                                  {QStringLiteral("OwnerRecordID"), recordID}};
        Module1::instance().application().Notes()->Add(data, nullptr, id, true);
        return id;
    }
    /// Runs an action as soon as a form of that name is on screen.
    void whenShown(const QString& name, const std::function<void(Form&)>& action) {
        auto* timer = new QTimer(qApp);
        QObject::connect(timer, &QTimer::timeout, timer, [timer, name, action] {
            for (Form* form : Form::openForms()) {
                if (form->objectName() == name && form->isVisible()) {
                    timer->deleteLater();
                    timer->stop();
                    action(*form);
                    return;
                }
            }
        });
        timer->start(1);
    }
    [[nodiscard]] static QList<Form*> formsNamed(const QString& name) {
        QList<Form*> forms = Form::openForms();
        forms.removeIf([&](const Form* form) { return form->objectName() != name; });
        return forms;
    }
    [[nodiscard]] ITool* showNotesTool(const QString& band = QStringLiteral("bndMain")) {
        IBand* found = window().componentBar->findBand(band);
        return found != nullptr ? found->findTool(kNotesToolKey) : nullptr;
    }
    [[nodiscard]] IBand& gridBand() { return *window().interfaceBar->findBand(kGridBandKey); }
    /// Opens the grids' menu in the host's eyes, and clicks the notes tool in it.
    void clickGridNotes() {
        window().interfaceBar->BandOpen.raise(gridBand());
        window().interfaceBar->activate(kNotesToolKey);
    }

    PrivateHome home;
    ManualClock clock{QDateTime(QDate(2026, 3, 10), QTime(9, 0))};
    FileSystem files;
    PromptScript prompt;
    HostWorld world{clock, files};
    Ref<AddIn> addIn;
};

} // namespace yrw::test
