// The add-in's life: what a host may do with it, in any order.
#include "tests/addin/AddInFixture.h"
#include "tests/support/SilentPrompt.h"

#include <algorithm>
#include <random>

using namespace yrw;
using namespace yrw::test;

namespace {

class Lifecycle : public AddInFixture {};

TEST_F(Lifecycle, TheMembersThatAnswerTheSameAtAnyTime) {
    const auto check = [this] {
        EXPECT_EQ(addIn->Name(), QStringLiteral("Yarrowen Notes"));
        EXPECT_EQ(addIn->Version(), Module1::instance().version());
        EXPECT_EQ(addIn->Application(), nullptr);
        EXPECT_FALSE(addIn->Activated());
        EXPECT_FALSE(addIn->Initialised());
        addIn->AttachControls();
        addIn->DetachControls();
    };
    makeNotesDatabase();
    addIn = make<AddIn>();
    check();
    EXPECT_EQ(addIn->Component(), nullptr);
    addIn->setIInterface(&window());
    EXPECT_EQ(addIn->IInterface(), nullptr);
    addIn->setComponent(window().component);
    check();
    EXPECT_EQ(addIn->Component(), window().component);
    EXPECT_EQ(addIn->IInterface(), &window());
    EXPECT_EQ(Module1::instance().hostProgID(), kFakeHostProgID);
    ASSERT_TRUE(addIn->Activate());
    check();
}

TEST_F(Lifecycle, ASecondAddInSharesApplicationAndDatabase) {
    activate();
    Module1& module = Module1::instance();
    const Application* const application = &module.application();
    Ref<AddIn> second = make<AddIn>();
    EXPECT_EQ(&module.application(), application);
    second->setComponent(window().component);
    const Ref<dao::Database> database = module.database();
    ASSERT_TRUE(second->Activate());
    EXPECT_EQ(module.database(), database);
    second.reset();
    EXPECT_TRUE(database->isOpen());
    EXPECT_EQ(module.hostApplication(), Ref<IHostApplication>(world.host));
    EXPECT_NE(module.applicationView(), nullptr);
    addIn->DeActivate();
    EXPECT_FALSE(database->isOpen());
    EXPECT_EQ(module.applicationView(), nullptr);
    ASSERT_TRUE(addIn->Activate());
    EXPECT_EQ(module.applicationView().get(), application);
}

TEST_F(Lifecycle, TwoAddInsOfOneHostActAsOneUntilTheLastGoes) {
    activate();
    window().show();
    addNote(QStringLiteral("cu"), 1);
    Module1::instance().database()->RunScript(
        QStringLiteral("UPDATE tblNotes SET AutomaticallyShow = 1;"));
    Ref<AddIn> second = make<AddIn>();
    second->setComponent(window().component);
    ASSERT_TRUE(second->Activate());
    const auto use = [&](const char* when) {
        SCOPED_TRACE(when);
        EXPECT_EQ(window().componentBar->findBand(QStringLiteral("bndMain"))->toolCount(), 1);
        int opened = 0;
        const auto count = [&](Form& form) {
            EXPECT_EQ(formsNamed(QStringLiteral("frmMain")).size(), 1);
            ++opened;
            form.unload();
        };
        for (const auto& click : std::initializer_list<std::function<void()>>{
                 [&] { window().componentBar->activate(kNotesToolKey); }, [&] { clickGridNotes(); },
                 [&] {
                     window().upper->grid->setCurrentRow(0);
                     window().upper->StayOnRow.raise();
                     EXPECT_EQ(addIn->GetPopupFormCount(), 1);
                     EXPECT_EQ(window().statusBar->text(), QStringLiteral("1 Note(s) Found...!!"));
                     window().statusBar->DblClick.raise();
                 }}) {
            opened = 0;
            whenShown(QStringLiteral("frmMain"), count);
            click();
            settle();
            EXPECT_EQ(opened, 1);
        }
        RowRemark remark(true);
        window().upper->grid->FetchRowRemark.raise(0, window().upper->placeOf(1), remark);
        EXPECT_EQ(remark.lines().size(), 2) << "the text and one subject";
        window().upper->grid->Scroll.raise();
        EXPECT_EQ(window().statusBar->text(), QString());
    };
    use("both");
    second->DeActivate();
    use("the first alone");
    ASSERT_TRUE(second->Activate());
    addIn->DeActivate();
    std::swap(addIn, second); // the fixture looks through the one that is left
    use("the second alone");
    addIn.reset();
    EXPECT_EQ(showNotesTool(), nullptr);
    EXPECT_EQ(gridBand().toolCount(), 0);
    EXPECT_FALSE(Module1::instance().isDatabaseOpen());
}

TEST_F(Lifecycle, NotesOfAnotherFolderWaitUntilTheFirstAreClosed) {
    activate();
    HostWorld other{clock, files};
    const Ref<dao::Database> database = Module1::instance().database();
    Ref<AddIn> second = make<AddIn>();
    second->setComponent(other.window->component);
    prompt.expectMessage();
    EXPECT_FALSE(second->Activate());
    ASSERT_EQ(prompt.asked.size(), 1); // nothing is asked, though there are no notes
    EXPECT_TRUE(prompt.asked[0].contains(QStringLiteral("Test host works with the notes in ") +
                                         world.folder()))
        << prompt.asked[0].toStdString();
    EXPECT_EQ(Module1::instance().database(), database);
    EXPECT_EQ(Module1::instance().databaseFolder(), world.folder());
    EXPECT_EQ(Module1::instance().hostApplication(), Ref<IHostApplication>(world.host));
    EXPECT_EQ(other.window->componentBar->findTool(kNotesToolKey), nullptr);
    EXPECT_NE(showNotesTool(), nullptr);
    addIn->DeActivate();
    prompt.answer(PromptAnswer::Yes);
    EXPECT_TRUE(second->Activate());
}

TEST_F(Lifecycle, ComponentTakesTheHostsObjectsInTheirOrder) {
    addIn = make<AddIn>();
    world.host->trouble.asked.clear();
    addIn->setComponent(window().component);
    const std::vector<HostAnswer> order{HostAnswer::Interface,
                                        HostAnswer::UpperController,
                                        HostAnswer::LowerController,
                                        HostAnswer::Grid,
                                        HostAnswer::Grid,
                                        HostAnswer::GridSplits,
                                        HostAnswer::GridSplits,
                                        HostAnswer::Application,
                                        HostAnswer::ProgID};
    std::vector<HostAnswer> asked = world.host->trouble.asked;
    asked.resize(order.size());
    EXPECT_EQ(asked, order);
}

TEST_F(Lifecycle, AHostThatGoesFirstTakesItsObjectsWithIt) {
    activate();
    world.window.reset();
    EXPECT_EQ(addIn->Component(), nullptr);
    EXPECT_EQ(addIn->IInterface(), nullptr);
    options().set(setting::kFlagNotesRow, true); // paints the grids anew
    addIn->DeActivate();
    EXPECT_FALSE(Module1::instance().isDatabaseOpen());
}

TEST_F(Lifecycle, AnEventRaisedWhileItEndsDoesNotEndItTwice) {
    activate();
    Form popup(AutoNotes::kFormName);
    popup.load();
    int raised = 0;
    QObject::connect(&popup, &Form::unloaded, &popup, [&] {
        ++raised;
        window().upper->grid->Scroll.raise();
    });
    addIn.reset();
    EXPECT_EQ(raised, 1);
    EXPECT_EQ(Module1::instance().addInCount(), 0);
}

/// A prompt to which somebody always says yes.
class CalmPrompt final : public SilentPrompt {
public:
    CalmPrompt() : m_before(&instance()) { setInstance(this); }
    ~CalmPrompt() override { setInstance(m_before); }
    int reports = 0;
    PromptAnswer question(const QString&, const QString&, PromptButtons, PromptIcon,
                          PromptAnswer) override {
        return PromptAnswer::Yes;
    }
    void errorReport(const ErrorReport&) override { ++reports; }
    void setMousePointer(MousePointer wanted) override { pointer = wanted; }
    MousePointer pointer = MousePointer::Default;

private:
    Prompt* m_before;
};

/// Three add-ins over two hosts, driven at random beside a model of what must be so.
class RandomLife : public Lifecycle, public testing::WithParamInterface<unsigned> {
protected:
    static constexpr int kNone = -1;

    struct Slot {
        Ref<AddIn> addIn;
        int host = kNone; ///< whose component it was given
        bool active = false;
        int placedOn = kNone; ///< host whose toolbar it put its tool in
    };

    RandomLife() {
        for (int host : {0, 1}) {
            createNotesDatabase(files, shippedTemplateFolder(), worldOf(host).folder());
            worldOf(host).window->showRecords();
        }
    }
    HostWorld& worldOf(int host) { return host == 0 ? world : other; }
    FakeWindow& windowOf(int host) { return *worldOf(host).window; }
    unsigned below(unsigned bound) { return random() % bound; }

    // The steps, each with what it does to the model.
    void create(Slot& slot) {
        if (!slot.addIn) {
            slot.addIn = make<AddIn>();
        }
    }
    void release(Slot& slot) {
        takeToolBack(slot);
        slot = Slot();
        letGo();
    }
    void giveComponent(Slot& slot, int host) {
        takeToolBack(slot);
        slot.addIn->setComponent(host == kNone ? nullptr : windowOf(host).component);
        slot.host = host;
        if (slot.active) {
            placeTool(slot);
        }
    }
    /// True when the notes of another host are open in another add-in's hands.
    [[nodiscard]] bool isTurnedAway(const Slot& slot) const {
        return slot.host != kNone && openHost != kNone && openHost != slot.host &&
               std::any_of(std::begin(slots_), std::end(slots_),
                           [&](const Slot& each) { return &each != &slot && each.active; });
    }
    void activateSlot(Slot& slot) {
        const bool turnedAway = isTurnedAway(slot);
        const bool result = slot.addIn->Activate();
        if (turnedAway && !troubled) {
            EXPECT_FALSE(result);
            return;
        }
        if (slot.host != kNone) {
            openHost = slot.host;
        }
        slot.active = openHost != kNone;
        if (!troubled) {
            EXPECT_EQ(result, slot.active);
        }
        if (slot.active) {
            placeTool(slot);
        } else {
            takeToolBack(slot);
        }
    }
    void deActivate(Slot& slot) {
        slot.addIn->DeActivate();
        takeToolBack(slot);
        slot.active = false;
        letGo();
    }
    void terminate() {
        Module1::instance().application().Terminate();
        openHost = kNone;
    }
    /// What the host's window does meanwhile; nothing of it changes the model.
    void useHost(int host) {
        FakeWindow& shown = windowOf(host);
        switch (below(7)) {
        case 0:
            shown.interfaceBar->BandOpen.raise(
                *shown.interfaceBar->Toolbar::findBand(kGridBandKey));
            break;
        case 1:
            shown.showRecords();
            break;
        case 2:
            shown.upper->setRecordset(nullptr);
            shown.upper->setRecordset(shown.host->DB()->Database().OpenRecordset(
                QStringLiteral("tblCustomers"), dao::RecordsetType::Dynaset));
            break;
        case 3:
            shown.lower->StayOnRow.raise();
            shown.lower->StayOnCell.raise();
            shown.lower->OnAddRow.raise();
            break;
        case 4:
            shown.upper->grid->AfterColUpdate.raise(0);
            shown.upper->grid->RowColChange.raise({}, 0);
            break;
        case 5:
            shown.statusBar->setTag(AutoNotes::kMarker);
            shown.upper->grid->Scroll.raise();
            break;
        default:
            shown.upper->grid->setCurrentRow(below(3));
        }
    }
    void step() {
        Slot& slot = slots_[below(3)];
        create(slot);
        switch (below(10)) {
        case 0:
            release(slot);
            break;
        case 1:
        case 2:
            giveComponent(slot, static_cast<int>(below(3)) - 1);
            break;
        case 3:
        case 4:
            activateSlot(slot);
            break;
        case 5:
            deActivate(slot);
            break;
        case 6:
            if (below(4) == 0) {
                terminate();
            }
            break;
        case 7:
            if (slot.active) {
                Q_EMIT slot.addIn->UpperTimerForm()->CheckWindowFocus();
                (void)slot.addIn->CheckForReminders();
            }
            break;
        default:
            useHost(static_cast<int>(below(2)));
        }
    }

    void placeTool(Slot& slot) { slot.placedOn = slot.host; }
    static void takeToolBack(Slot& slot) { slot.placedOn = kNone; }
    /// The last add-in that placed a tool takes it away.
    [[nodiscard]] bool hasTool(int host) const {
        return std::any_of(std::begin(slots_), std::end(slots_),
                           [&](const Slot& slot) { return slot.placedOn == host; });
    }
    void letGo() {
        if (std::none_of(std::begin(slots_), std::end(slots_),
                         [](const Slot& slot) { return slot.active; })) {
            openHost = kNone;
        }
    }
    [[nodiscard]] bool mustMark(int host) const {
        return openHost != kNone &&
               std::any_of(std::begin(slots_), std::end(slots_),
                           [host](const Slot& slot) { return slot.active && slot.host == host; });
    }
    static int timerWindows() {
        const QWidgetList windows = QApplication::topLevelWidgets();
        return static_cast<int>(
            std::count_if(windows.begin(), windows.end(), [](const QWidget* widget) {
                return widget->objectName() == QStringLiteral("frmTimer");
            }));
    }
    void compare() {
        int active = 0;
        EXPECT_EQ(Module1::instance().isDatabaseOpen(), openHost != kNone);
        for (const Slot& slot : slots_) {
            active += slot.active ? 1 : 0;
            if (slot.addIn) {
                EXPECT_EQ(slot.addIn->UpperTimerForm() != nullptr, slot.active);
            }
        }
        EXPECT_EQ(timerWindows(), active);
        EXPECT_EQ(calm.pointer, MousePointer::Default);
        for (const int host : {0, 1}) {
            EXPECT_EQ(windowOf(host).componentBar->findTool(kNotesToolKey) != nullptr,
                      hasTool(host));
            RowStyle style;
            windowOf(host).upper->grid->FetchRowStyle.raise(0, windowOf(host).upper->placeOf(1),
                                                            style);
            EXPECT_EQ(style.hasBackColor(), mustMark(host));
        }
    }
    /// Gives each database one note on the first customer.
    void addNotes() {
        for (const int host : {0, 1}) {
            create(slots_[0]);
            giveComponent(slots_[0], host);
            activateSlot(slots_[0]);
            addNote(QStringLiteral("cu"), 1);
        }
    }
    void endAll() {
        for (Slot& slot : slots_) {
            release(slot);
        }
        settle();
    }

    CalmPrompt calm;
    HostWorld other{clock, files, 2};
    Slot slots_[3];
    int openHost = kNone; ///< whose notes database is open
    bool troubled = false;
    std::mt19937 random{GetParam()};
};

TEST_P(RandomLife, EveryOrderOfCallsKeepsToTheModel) {
    addNotes();
    for (int count = 0; count < 1500 && !HasFailure(); ++count) {
        SCOPED_TRACE(count);
        step();
        compare();
    }
    endAll();
    EXPECT_EQ(Module1::instance().addInCount(), 0);
    compare();
}

TEST_P(RandomLife, AHostWhoseCallsFailAtRandomIsNeverToldAndNeverHarmed) {
    addNotes();
    troubled = true;
    for (const int host : {0, 1}) {
        windowOf(host).trouble.oneIn = 5;
    }
    for (int count = 0; count < 1500; ++count) {
        EXPECT_NO_THROW(step());
        for (Slot& slot : slots_) {
            // What a failing host made of a call is read back, so that the steps stay possible.
            slot.active = slot.addIn && slot.addIn->UpperTimerForm() != nullptr;
        }
    }
    EXPECT_GT(windowOf(0).trouble.raised, 100);
    for (const int host : {0, 1}) {
        windowOf(host).trouble.oneIn = 0;
    }
    endAll();
    troubled = false;
    compare();
    addNotes();
    compare();
    endAll();
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomLife, testing::Values(1U, 20U, 300U));

} // namespace
