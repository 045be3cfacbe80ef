// Pictures of reminder popups as they lie over the host's window, for people to look at:
//   [YRW_PICTURES=DIR] [YRW_DARK=1] [QT_SCALE_FACTOR=2] test_addin --gtest_filter=*Pictures.*
#include "tests/addin/RemindersFixture.h"
#include "tests/support/Pictures.h"

using namespace yrw;
using namespace yrw::test;

namespace {

class ReminderPictures : public RemindersFixture {
protected:
    void SetUp() override {
        RemindersFixture::SetUp();
        window().resize(700, 500);
        window().show();
    }
    Pictures pictures{QStringLiteral("reminder-pictures")};
};

TEST_F(ReminderPictures, OfOneTwoSevenAndForty) {
    const qint64 note = addNote(QStringLiteral("cu"), 2);
    const Ref<IRecord> stored = Module1::instance().application()->Notes()->Item(QVariant(note));
    stored->Field(QStringLiteral("Subject"))
        ->setValue(QStringLiteral("Ring Quill & Son about order 41"));
    stored->Field(QStringLiteral("PlainNote"))
        ->setValue(QStringLiteral("They asked for another delivery date.\r\nMind the price."));
    int due = 0;
    for (const int count : {1, 2, 7, 40}) {
        for (; due < count; ++due) {
            remind(note, due - 60);
        }
        ASSERT_TRUE(minuteTick());
        settle();
        ASSERT_EQ(popups().size(), count);
        pictures.keep(QString::number(count), window());
    }
}

} // namespace
