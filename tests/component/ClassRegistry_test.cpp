#include "platform/component/ClassRegistry.h"
#include "platform/component/NamedCalls.h"
#include "tests/support/Raised.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace yrw;

namespace {

const QString kParts = QStringLiteral(YRW_TEST_PARTS);

class ClassRegistryTest : public testing::Test {
protected:
    QString path(const QString& name) const { return folder.filePath(name); }
    void add(const QString& programId, const QString& classId, const QString& library) {
        registry.registerClass({programId, classId, library});
    }
    /// The words of the error that creating an object raises; empty when none is raised.
    QString failure(const QString& programId) {
        const AutomationError error =
            test::raisedBy([&] { (void)registry.createObject(programId); });
        EXPECT_TRUE(error.number() == 0 || error.number() == kErrorCannotCreateObject);
        return error.description();
    }

    QTemporaryDir folder;
    ClassRegistry registry{folder.filePath(QStringLiteral("not/yet/classes.ini"))};
};

TEST_F(ClassRegistryTest, CreatesAnObjectOfARegisteredClass) {
    add(u"Test.Greeter"_s, u"{good}"_s, kParts + u"/Component.so");
    const Ref<Counted> object = registry.createObject(u"Test.Greeter"_s);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->referenceCount(), 1);
    auto* calls = dynamic_cast<INamedCalls*>(object.get());
    EXPECT_EQ(callByName(calls, u"Greet"_s, {{u"Name"_s, u"Anna"_s}}), u"Hello, Anna"_s);
    EXPECT_THROW(callByName(calls, u"Part"_s), AutomationError);
}

TEST_F(ClassRegistryTest, SaysWhatIsWrongAndNamesProgramIdOrFile) {
    QFile plain(path(u"plain.so"_s));
    ASSERT_TRUE(plain.open(QIODevice::WriteOnly) && plain.write("no library") > 0);
    plain.close();
    const QString component = kParts + u"/Component.so";
    const struct {
        QString classId;
        QString library;
        QString words;
    } cases[] = {
        {u"{good}"_s, path(u"gone.so"_s), u"is not there"_s},
        {u"{good}"_s, folder.path(), u"is not there"_s},
        {u"{good}"_s, plain.fileName(), u"could not be loaded"_s},
        {u"{good}"_s, kParts + u"/Foreign.so", u"is not a component"_s},
        {u"{unknown}"_s, component, u"does not offer"_s},
        {u"{old}"_s, component, u"another version"_s},
        {u"{empty}"_s, component, u"made no object"_s},
        {u"{throws}"_s, component, u"The disk is full."_s},
    };
    for (const auto& c : cases) {
        add(u"Test.Faulty"_s, c.classId, c.library);
        const QString words = failure(u"Test.Faulty"_s);
        EXPECT_TRUE(words.contains(c.words)) << qPrintable(words);
        EXPECT_TRUE(words.contains(u"Test.Faulty")) << qPrintable(words);
    }
    for (const QString& unknown : {u"Test.Unknown"_s, QString(), u"a/b"_s}) {
        EXPECT_TRUE(failure(unknown).contains(u'\'' + unknown + u'\''));
    }
}

/// Copies of a component in a folder, one of which somebody else could change in some way.
TEST_F(ClassRegistryTest, LoadsNothingThatOthersCanChange) {
    constexpr uid_t kOther = 65534;
    const struct {
        const char* what;
        const char* place; ///< below the folder; what is registered
        mode_t fileMode;
        mode_t folderMode;
        uid_t owner;
        gid_t group;
        const char* words; ///< nothing: it is loaded
    } cases[] = {
        {"the user's own", "a/Part.so", 0755, 0755, 0, 0, nullptr},
        {"own group may write", "b/Part.so", 0775, 0775, 0, 0, nullptr},
        {"sticky folder", "c/Part.so", 0644, 01777, 0, 0, nullptr},
        {"file for all", "d/Part.so", 0666, 0755, 0, 0, "d/Part.so can be changed by every user"},
        {"folder for all", "e/Part.so", 0644, 0777, 0, 0, "/e can be changed by every user"},
        {"another group", "f/Part.so", 0664, 0755, 0, 100, "f/Part.so can be changed by other"},
        {"another's", "g/Part.so", 0644, 0755, kOther, 0, "g/Part.so belongs to another user"},
        {"link into a folder for all", "link/Part.so", 0644, 0777, 0, 0, "/h can be changed by"},
    };
    ASSERT_TRUE(QFile::link(path(u"h"_s), path(u"link"_s)));
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        if (geteuid() != 0 && (c.owner != 0 || c.group != 0)) {
            continue; // only the administrator can give files away
        }
        const QString library = path(QString::fromLatin1(c.place));
        const bool linked = library.contains(u"link");
        const QString parent = linked ? path(u"h"_s) : QFileInfo(library).path();
        ASSERT_TRUE(QDir().mkpath(parent));
        ASSERT_TRUE(QFile::copy(kParts + u"/Component.so", library));
        const QByteArray file = QFile::encodeName(library);
        if (c.owner != 0 || c.group != 0) {
            ASSERT_EQ(chown(file.constData(), c.owner, c.group), 0);
        }
        ASSERT_EQ(chmod(file.constData(), c.fileMode), 0);
        ASSERT_EQ(chmod(QFile::encodeName(parent).constData(), c.folderMode), 0);
        add(u"Test.Own"_s, u"{good}"_s, library);
        const QString words = failure(u"Test.Own"_s);
        if (c.words == nullptr) {
            EXPECT_EQ(words, QString());
        } else {
            EXPECT_TRUE(words.contains(QLatin1StringView(c.words))) << qPrintable(words);
        }
    }
}

TEST_F(ClassRegistryTest, TakesFullPathsOnly) {
    EXPECT_THROW(add(u"Test.One"_s, u"{1}"_s, u"lib/one.so"_s), AutomationError);
    add(u"Test.One"_s, u"{1}"_s, u"/lib/one.so"_s);
    QFile file(registry.file());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    const QByteArray changed = file.readAll().replace("/lib/one.so", "one.so");
    file.resize(0);
    ASSERT_TRUE(file.seek(0) && file.write(changed) > 0);
    file.close();
    EXPECT_TRUE(failure(u"Test.One"_s).contains(u"without its full path"));
    // A relative folder of the user's data would be another one in each folder.
    const QByteArray before = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", "data");
    EXPECT_EQ(ClassRegistry().file(), QDir::homePath() + u"/.local/share/yarrowen/classes.ini");
    qputenv("XDG_DATA_HOME", before);
}

TEST_F(ClassRegistryTest, AnotherProcessSeesWhatIsEnteredAndTakenOut) {
    const ClassRegistry other(registry.file());
    add(u"Test.One"_s, u"{1}"_s, u"/lib/one.so"_s);
    add(u"Test.Two"_s, u"{2}"_s, u"/lib/two.so"_s);
    add(u"Test.One"_s, u"{3}"_s, u"/lib/three, with comma.so"_s);
    EXPECT_EQ(other.find(u"Test.One"_s).classId, u"{3}");
    EXPECT_EQ(other.find(u"Test.One"_s).libraryFile, u"/lib/three, with comma.so");
    other.unregisterClass(u"Test.One"_s);
    other.unregisterClass(u"Test.One"_s);
    EXPECT_THROW((void)registry.find(u"Test.One"_s), AutomationError);
    EXPECT_EQ(registry.find(u"Test.Two"_s).libraryFile, u"/lib/two.so");
}

TEST_F(ClassRegistryTest, ARegistryThatCannotBeUsedIsNamed) {
    ASSERT_TRUE(QDir().mkpath(registry.file())); // a folder stands in the file's place
    EXPECT_TRUE(failure(u"Test.One"_s).contains(registry.file()));
    EXPECT_THROW(add(u"Test.One"_s, u"{1}"_s, u"/lib/one.so"_s), AutomationError);
    EXPECT_THROW(ClassRegistry(registry.file()).unregisterClass(u"Test.One"_s), AutomationError);
}

} // namespace
