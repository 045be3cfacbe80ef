#include "tests/support/NotesFixture.h"
#include "tests/support/Raised.h"

namespace yrw::test {
namespace {

using ApplicationTest = NotesFixture;

TEST_F(ApplicationTest, RefusesInItsOwnWords) {
    Application& a = store.application();
    const char* const member = "Interface not supported for by this Object";
    const char* const check = "Interface is not supported";
    const struct {
        std::function<void()> call;
        const char *description, *source;
    } cases[] = {
        {[&] { a.OpenDatabase({}); }, member, "YRWNOTES.IApplication_OpenDatabase"},
        {[&] { (void)a.ObjectKeys(); }, member, "YRWNOTES.IApplication_ObjectKeys"},
        {[&] { a.Login({}, {}); }, member, "YRWNOTES.IApplication_Login"},
        {[&] { (void)a.CurrentUser(); }, member, "YRWNOTES.IApplication_CurrentUser"},
        {[&] { a.setCurrentUser(nullptr); }, member, "YRWNOTES.IApplication_CurrentUser"},
        {[&] { a.SetupODBC(); }, member, "YRWNOTES.IApplication_SetupODBC"},
        {[&] { (void)a.ODBCDSNPath(); }, member, "YRWNOTES.IApplication_ODBCDSNPath"},
        {[&] { a.CanUserAccessICollection(nullptr); }, check,
         "YRWNotes.IApplication_CanUserAccessICollection"},
        {[&] { a.CanUserEditIRecord(nullptr); }, check,
         "YRWNotes.CanUserAccessICollectionRecordset"},
        {[&] { a.CanUserAccessICollectionDelete(nullptr); }, check,
         "YRWNotes.CanUserAccessICollectionDelete"},
        {[&] { a.CanUserAccessICollectionRecordset(nullptr); }, check,
         "YRWNotes.CanUserAccessICollectionRecordset"},
        {[&] { a.CanUserAccessICollectionItems(nullptr); }, check,
         "YRWNotes.CanUserAccessICollectionItems"},
        {[&] { a.CanUserAccessICollectionAdd(nullptr); }, check,
         "YRWNotes.CanUserAccessICollectionAdd"},
        {[&] { (void)a.XDatabase(); }, member, "YRWNOTES.IApplication_XDatabase"},
    };
    for (const auto& c : cases) {
        const AutomationError error = raisedBy(c.call);
        EXPECT_EQ(error.number(), static_cast<int>(0x800407D0U)) << c.source;
        EXPECT_EQ(error.description(), QLatin1String(c.description));
        EXPECT_EQ(error.source(), QLatin1String(c.source));
    }
}

TEST_F(ApplicationTest, AnswersFromItsWorld) {
    Application& a = store.application();
    EXPECT_EQ(a.Name(), QStringLiteral("Yarrowen Notes Server"));
    EXPECT_EQ(a.ProgID(), QStringLiteral("YRWNOTES"));
    EXPECT_EQ(a.Version(), QStringLiteral("2.0.195"));
    EXPECT_FALSE(a.DSNName().isNull());
    EXPECT_TRUE(a.DSNName().isEmpty());
    EXPECT_EQ(a.DAODatabase(), store.database());
    EXPECT_EQ(a.DAOWorkspace(), store.workspace());
    EXPECT_EQ(a.DB(), &store.dataHelper());
    EXPECT_EQ(a.ICollection(QStringLiteral("Notes")), nullptr);
    EXPECT_EQ(a.ObjectKeyPolicies(), nullptr);
    EXPECT_EQ(a.ObjectKeyPolicyPermissions(), nullptr);
    EXPECT_EQ(a.Session()->User()->value(QStringLiteral("Code")), QStringLiteral("ANNA"));
    EXPECT_EQ(a.Users()->NewEnum().size(), 5U);
    EXPECT_EQ(a.Reports()->Application(), Ref<IApplication>(&a));
    store.host().trouble.set(HostAnswer::Reports, Giving::Missing);
    EXPECT_FALSE(a.Reports());
    EXPECT_NE(a.Notes(), a.Notes());
}

TEST_F(ApplicationTest, CachesTheActiveSettings) {
    Application& a = store.application();
    const Ref<IRecord> first = a.ActiveSystemSettings(false);
    EXPECT_EQ(a.CurrentSettings(false), first);
    EXPECT_NE(a.CurrentSettings(true), first);
}

TEST_F(ApplicationTest, TerminatesTwiceAndLetsGoOfTheSettings) {
    Ref<Application> a = make<Application>(store);
    (void)a->ActiveSystemSettings(false);
    a->Terminate();
    EXPECT_FALSE(store.isDatabaseOpen());
    EXPECT_EQ(a->DAODatabase(), nullptr);
    EXPECT_NO_THROW(a->Terminate());
    EXPECT_EQ(a->referenceCount(), 1) << "the settings record still holds the application";
    const int before = store.closings;
    a.reset();
    EXPECT_EQ(store.closings, before + 1);
}

} // namespace
} // namespace yrw::test
