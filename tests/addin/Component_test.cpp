// The loadable component, as a host finds it.
#include "tests/addin/AddInFixture.h"

#include "platform/component/ClassRegistry.h"

#include <QFileInfo>
#include <QLibrary>
#include <QProcess>

using namespace yrw;
using namespace yrw::test;

namespace {

const QString kFile = QStringLiteral(YRW_COMPONENT_FILE);
const QString kProgramId = QStringLiteral("YRWNOTES.AddIn");

class ComponentTest : public AddInFixture {
protected:
    ComponentTest() {
        library.setLoadHints(QLibrary::PreventUnloadHint);
        EXPECT_TRUE(library.load()) << library.errorString().toStdString();
    }
    int call(const char* entry) {
        return reinterpret_cast<CanUnloadNowFunction>(library.resolve(entry))();
    }
    QLibrary library{kFile};
};

TEST_F(ComponentTest, ExportsItsFourEntryPointsAndNothingElse) {
    QProcess nm;
    nm.start(QStringLiteral("nm"), {QStringLiteral("-D"), QStringLiteral("--defined-only"),
                                    QStringLiteral("--format=just-symbols"), kFile});
    ASSERT_TRUE(nm.waitForFinished());
    QStringList names =
        QString::fromLatin1(nm.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    names.sort();
    EXPECT_EQ(
        names,
        (QStringList{QStringLiteral("DllCanUnloadNow"), QStringLiteral("DllGetClassObject"),
                     QStringLiteral("DllRegisterServer"), QStringLiteral("DllUnregisterServer")}));
}

TEST_F(ComponentTest, IsFoundByItsProgramIdAndWorks) {
    ASSERT_EQ(call("DllRegisterServer"), kComponentOk);
    const ClassRegistry registry;
    EXPECT_EQ(QFileInfo(registry.find(kProgramId).libraryFile), QFileInfo(kFile));
    EXPECT_EQ(call("DllCanUnloadNow"), kComponentOk);
    Ref<IAddIn> loaded = query<IAddIn>(registry.createObject(kProgramId));
    ASSERT_TRUE(loaded);
    EXPECT_EQ(call("DllCanUnloadNow"), kComponentNo);

    loaded->setComponent(window().component);
    prompt.answer(PromptAnswer::Yes); // made from the template beside the component
    ASSERT_TRUE(loaded->Activate());
    EXPECT_NE(showNotesTool(), nullptr);
    EXPECT_TRUE(QFile::exists(world.notesPath()));
    loaded->DeActivate();
    EXPECT_EQ(showNotesTool(), nullptr);
    loaded.reset();
    EXPECT_EQ(call("DllCanUnloadNow"), kComponentOk);

    ASSERT_EQ(call("DllUnregisterServer"), kComponentOk);
    EXPECT_THROW((void)registry.createObject(kProgramId), AutomationError);
}

TEST_F(ComponentTest, OffersOneClassAndKeepsLoadedWhileLocked) {
    const auto getClass =
        reinterpret_cast<GetClassObjectFunction>(library.resolve("DllGetClassObject"));
    IClassFactory* factory = nullptr;
    for (const char* foreign : {"", "YRWNOTES.Other", "{00000000-0000-0000-0000-000000000000}"}) {
        EXPECT_EQ(getClass(foreign, &factory), kComponentClassNotAvailable);
        EXPECT_EQ(factory, nullptr);
    }
    ASSERT_EQ(call("DllRegisterServer"), kComponentOk);
    const QByteArray classId = ClassRegistry().find(kProgramId).classId.toUtf8();
    for (const QByteArray& spelt : {classId.toLower(), classId}) {
        ASSERT_EQ(getClass(spelt.constData(), &factory), kComponentOk) << spelt.constData();
    }
    EXPECT_EQ(factory->contractVersion(), kContractVersion);
    factory->lockServer(true);
    EXPECT_EQ(call("DllCanUnloadNow"), kComponentNo);
    factory->lockServer(false);
    EXPECT_EQ(call("DllCanUnloadNow"), kComponentOk);
}

TEST_F(ComponentTest, AHundredLivesLeaveNothingBehind) {
    ASSERT_EQ(call("DllRegisterServer"), kComponentOk);
    makeNotesDatabase();
    const auto widgets = QApplication::allWidgets().size();
    for (int life = 0; life < 100; ++life) {
        const Ref<IAddIn> loaded = query<IAddIn>(ClassRegistry().createObject(kProgramId));
        loaded->setComponent(window().component);
        ASSERT_TRUE(loaded->Activate());
        loaded->DeActivate();
        ASSERT_TRUE(loaded->Activate());
    }
    settle();
    EXPECT_EQ(QApplication::allWidgets().size(), widgets);
    EXPECT_EQ(call("DllCanUnloadNow"), kComponentOk);
}

TEST_F(ComponentTest, WithoutADoorToTheUserCreationFailsCleanly) {
    ASSERT_EQ(call("DllRegisterServer"), kComponentOk);
    Prompt::setInstance(nullptr);
    EXPECT_THROW((void)ClassRegistry().createObject(kProgramId), AutomationError);
    Prompt::setInstance(&prompt);
    EXPECT_EQ(call("DllCanUnloadNow"), kComponentOk);
}

} // namespace
