#pragma once

// A desk window over a fresh database, with a prompt that answers by script and an add-in that
// writes down every event of the contract.

#include "host/desk/DeskWindow.h"
#include "platform/clock/Clock.h"
#include "platform/component/GuardedPtr.h"
#include "platform/controls/StatusBar.h"
#include "platform/files/FileSystem.h"
#include "platform/settings/SettingsStore.h"
#include "platform/toolbar/Toolbar.h"
#include "tests/support/SilentPrompt.h"

#include <QAction>
#include <QApplication>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace yrw::test {

/// Writes down what it was asked to show; questions get `answer`.
class ScriptedPrompt final : public SilentPrompt {
public:
    void message(const QString& text, const QString&, PromptIcon) override { shown += text; }
    PromptAnswer question(const QString& text, const QString&, PromptButtons, PromptIcon,
                          PromptAnswer) override {
        asked += text;
        return answer.value_or(PromptAnswer::No);
    }
    void errorReport(const ErrorReport& report) override {
        shown += report.message + u'|' + report.description;
    }

    QStringList shown;
    QStringList asked;
};

/// What happened, as texts, shared with the test because the add-in ends before the window does.
using EventLog = std::shared_ptr<QStringList>;

/// An add-in that connects every event and writes each down: "upper.StayOnRow".
class RecordingAddIn final : public IAddIn {
public:
    explicit RecordingAddIn(EventLog log) : m_log(std::move(log)) {}

    [[nodiscard]] IHostComponent* Component() const override { return m_component.get(); }
    void setComponent(IHostComponent* component) override {
        m_connections.clear();
        m_component = component;
        *m_log += component != nullptr ? "setComponent" : "setComponent(nothing)";
        if (component != nullptr) {
            connectController("upper", *component->UpperController());
            connectController("lower", *component->LowerController());
            connectBars(*component);
        }
    }
    [[nodiscard]] IHostInterface* IInterface() const override { return nullptr; }
    void setIInterface(IHostInterface*) override {}
    [[nodiscard]] Ref<IApplication> Application() override { return nullptr; }
    [[nodiscard]] QString Name() override { return QStringLiteral("Recorder"); }
    [[nodiscard]] QString Version() override { return QStringLiteral("9.8.7"); }
    void AttachControls() override {}
    void DetachControls() override {}
    bool Activate() override {
        *m_log += "Activate";
        if (refuses) {
            throw AutomationError(kErrorInvalidOperation, {}, QStringLiteral("refused"));
        }
        IBand* band = m_component->Toolbar()->findBand("bndMain");
        if (band != nullptr && band->findTool("tooRecorder") == nullptr) {
            band->addTool(50800, "tooRecorder").setCaption("Recorder");
        }
        return true;
    }
    [[nodiscard]] bool Activated() override { return false; }
    void DeActivate() override {
        *m_log += "DeActivate";
        if (IBand* band = m_component->Toolbar()->findBand("bndMain")) {
            band->removeTool("tooRecorder");
        }
    }
    [[nodiscard]] bool Initialised() override { return false; }

    bool refuses = false;

private:
    ~RecordingAddIn() override { *m_log += "released"; }

    void note(const QString& who, const char* what) { *m_log += who + u'.' + QLatin1String(what); }
    template <class... Args>
    void listen(Event<Args...>& event, const QString& who, const char* what) {
        m_connections.push_back(event.connect([this, who, what](Args...) { note(who, what); }));
    }
    void connectController(const QString& who, IGridController& controller) {
        listen(controller.AfterAddEditCanceled, who, "AfterAddEditCanceled");
        listen(controller.AfterLayoutLoad, who, "AfterLayoutLoad");
        listen(controller.AfterRebind, who, "AfterRebind");
        listen(controller.BeforeRebind, who, "BeforeRebind");
        listen(controller.OnAddRow, who, "OnAddRow");
        listen(controller.StayOnCell, who, "StayOnCell");
        listen(controller.StayOnRow, who, "StayOnRow");
        m_connections.push_back(
            controller.AfterRecordsetChange.connect([this, who](const Ref<dao::Recordset>& rows) {
                note(who, rows ? "AfterRecordsetChange" : "AfterRecordsetChange(nothing)");
            }));
        IRecordGrid& grid = *controller.Grid();
        listen(grid.RowColChange, who, "RowColChange");
        listen(grid.Scroll, who, "Scroll");
    }
    void connectBars(IHostComponent& component) {
        m_connections.push_back(component.Toolbar()->Click.connect(
            [this](ITool& tool) { *m_log += u"component.Click " + tool.key(); }));
        IToolbar& bar = *component.Interface()->Toolbar();
        m_connections.push_back(
            bar.Click.connect([this](ITool& tool) { *m_log += u"interface.Click " + tool.key(); }));
        m_connections.push_back(bar.BandOpen.connect([this](IBand& band) {
            *m_log += u"BandOpen " + band.key();
            if (band.findTool("tooRecorderMenu") == nullptr) {
                band.addTool(50801, "tooRecorderMenu").setCaption("&Recorder");
            }
        }));
        listen(component.StatusBar()->DblClick, "status", "DblClick");
    }

    EventLog m_log;
    GuardedPtr<IHostComponent> m_component;
    std::vector<Connection> m_connections;
};

/// Opens a desk of 40 customers in a folder of its own.
class DeskFixture : public testing::Test {
protected:
    void open() {
        DeskOptions options;
        options.start.folder = m_folder.filePath("data");
        options.start.userCode = user;
        options.start.customers = customers;
        options.createObject = createObject ? createObject : [this](const QString& programId) {
            *log += u"create " + programId;
            return Ref<Counted>(new RecordingAddIn(log));
        };
        m_window = std::make_unique<DeskWindow>(
            Services{m_clock, m_settings, m_files, m_prompt, m_utility}, options);
        m_window->open();
        EXPECT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
    }
    void close() {
        if (m_window) {
            m_window->close();
            m_window.reset();
        }
    }
    void TearDown() override { close(); }

    DeskWindow& window() { return *m_window; }
    RecordGrid& upperGrid() { return window().upper().grid(); }
    RecordGrid& lowerGrid() { return window().lower().grid(); }
    template <class Widget>
    Widget& find(const char* name) {
        auto* found = m_window->findChild<Widget*>(QString::fromLatin1(name));
        if (found == nullptr) {
            throw std::runtime_error(std::string("no such widget: ") + name);
        }
        return *found;
    }
    QAction& command(const char* key) {
        const auto all = m_window->menuBar()->findChildren<QAction*>(QString::fromLatin1(key));
        return *all.at(0);
    }
    /// Presses a key in whatever has the keyboard.
    static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    /// Types a text; the first letter may open an editor, which gets the rest.
    static void type(const QString& text) {
        for (const QChar letter : text) {
            QTest::keyClicks(QApplication::focusWidget(), letter);
        }
    }
    /// The widget of a grid that a cell lies on, and a click on that cell.
    static void clickCell(RecordGrid& grid, qint64 row, int column,
                          Qt::MouseButton button = Qt::LeftButton) {
        const QPoint place = grid.cellRect(row, column).center();
        QWidget* target = grid.childAt(place);
        QTest::mouseClick(target, button, Qt::NoModifier, target->mapFrom(&grid, place));
    }
    /// Waits until the event was written down.
    ::testing::AssertionResult happens(const QString& event) {
        if (QTest::qWaitFor([&] { return log->contains(event); }, 3000)) {
            return ::testing::AssertionSuccess();
        }
        return ::testing::AssertionFailure()
               << qPrintable(event) << " did not happen; seen: " << qPrintable(log->join(", "));
    }
    QString upperText(const char* field) {
        const auto record = window().upper().CurrentRecord();
        return record ? record->value(QString::fromLatin1(field)).toString() : QString();
    }

    QString user;
    qint64 customers = 40;
    CreateObject createObject;
    EventLog log = std::make_shared<QStringList>();
    QTemporaryDir m_folder;
    ScriptedPrompt m_prompt;
    ManualClock m_clock{QDateTime(QDate(2026, 3, 2), QTime(9, 0))};
    FileSystem m_files;
    SettingsStore m_settings{m_folder.filePath("config")};
    HostUtility m_utility{m_prompt};
    std::unique_ptr<DeskWindow> m_window;
};

} // namespace yrw::test
