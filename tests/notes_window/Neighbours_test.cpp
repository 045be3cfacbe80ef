// The notes window over a database that others replace or keep to themselves.
#include "tests/notes_window/WindowFixture.h"

#include <sys/stat.h>
#include <unistd.h>

namespace yrw::test {
namespace {

class NotesWindowNeighbours : public WindowFixture {};

TEST_F(NotesWindowNeighbours, OneThatMayOnlyBeReadIsShownAndCannotBeChanged) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can act as another user";
    }
    const Ref<Note> note = store.addNote(QStringLiteral("first"), customer);
    store.closeDatabase();
    ASSERT_EQ(::chmod(qPrintable(store.folder()), 0755), 0);
    constexpr uid_t kNobody = 65534;
    ASSERT_EQ(::seteuid(kNobody), 0);
    store.openNotes();
    ASSERT_EQ(::seteuid(0), 0);
    open(customer, idOf(note));
    EXPECT_TRUE(window->windowTitle().endsWith(QStringLiteral("[read-only]")));
    EXPECT_EQ(keys(), QStringList{keyOf(note)});
    type(QStringLiteral("x"));
    EXPECT_EQ(editor().Text(), QString());
    for (const char* writing : {"tooAdd", "tooDelete", "tooEdit", "tooDone", "tooSave"}) {
        EXPECT_FALSE(tool(QLatin1String(writing)).isEnabled()) << writing;
    }
    for (const char* reading : {"tooPrint", "tooFind"}) {
        EXPECT_TRUE(tool(QLatin1String(reading)).isEnabled()) << reading;
    }
    press(Qt::Key_Insert);
    press(Qt::Key_Delete);
    list().setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(list().items().rowCount(), 1);
}

} // namespace
} // namespace yrw::test
