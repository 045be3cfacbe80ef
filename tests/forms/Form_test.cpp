#include "platform/forms/Form.h"

#include "tests/support/Pixels.h"

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QStyle>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace yrw;

namespace {

/// A form that writes down what happens to it.
class DiaryForm final : public Form {
public:
    explicit DiaryForm(const QString& name = QStringLiteral("frmDiary"), QWidget* owner = nullptr)
        : Form(name, owner), field(new QLineEdit(this)), button(new QPushButton("&Go", this)) {
        auto* const layout = new QVBoxLayout(this);
        layout->addWidget(field);
        layout->addWidget(button);
        button->setAutoDefault(false);
    }

    QStringList diary;
    QLineEdit* field;
    QPushButton* button;
    int consumedKey = 0;
    bool refuse = false;
    bool unloadInLoad = false;
    QStringList* otherDiary = nullptr;

protected:
    void Form_Load() override {
        note("load");
        if (unloadInLoad) {
            unload();
        }
    }
    void Form_Activate() override { note("activate"); }
    void Form_Resize() override { note("resize"); }
    void Form_KeyDown(FormKey& key) override {
        note("down " + QString::number(key.key));
        key.consumed = key.key == consumedKey;
        if (key.is(Qt::Key_Escape)) {
            unload();
        }
    }
    void Form_KeyUp(FormKey& key) override { note("up " + QString::number(key.key)); }
    void Form_QueryUnload(bool& cancel) override {
        note("query");
        cancel = refuse;
    }
    void Form_Unload() override { note("unload"); }

private:
    void note(const QString& what) {
        diary.append(what);
        if (otherDiary != nullptr) {
            otherDiary->append(objectName() + ' ' + what);
        }
    }
};

template <class Condition>
bool waitFor(Condition condition) {
    return QTest::qWaitFor(condition, 5000);
}

DiaryForm* shownForm(QWidget* owner = nullptr) {
    auto* const form = new DiaryForm("frmDiary", owner);
    form->showModeless(owner, true);
    EXPECT_TRUE(QTest::qWaitForWindowActive(form));
    return form;
}

TEST(FormTest, lifeCycleRunsOnceInOrder) {
    QPointer<DiaryForm> form = shownForm();
    EXPECT_EQ(form->diary, QStringList({"load", "resize", "activate"}));
    EXPECT_EQ(Form::openForms(), QList<Form*>({form}));
    form->refuse = true;
    EXPECT_FALSE(form->close());
    EXPECT_FALSE(form->unload());
    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(Form::openForms().size(), 1);
    form->refuse = false;
    QStringList end;
    form->otherDiary = &end;
    EXPECT_TRUE(form->close());
    EXPECT_EQ(end, QStringList({"frmDiary query", "frmDiary unload"}));
    EXPECT_TRUE(Form::openForms().isEmpty());
    ASSERT_FALSE(form.isNull());
    EXPECT_TRUE(form->unload());
    form->show();
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(end.size(), 2);
    EXPECT_TRUE(waitFor([&] { return form.isNull(); }));
}

TEST(FormTest, comingBackFromABoxIsNoReturnToTheForm) {
    DiaryForm* const form = shownForm();
    const auto goTo = [](QWidget& window) {
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    };
    QDialog box(form);
    QMainWindow other;
    goTo(box);
    goTo(*form);
    EXPECT_EQ(form->diary.count("activate"), 1);
    goTo(other);
    goTo(*form);
    EXPECT_EQ(form->diary.count("activate"), 2);
    form->unload();
}

TEST(FormTest, formUnloadedWhileLoadingIsNeverShown) {
    DiaryForm form;
    form.unloadInLoad = true;
    form.showModal(nullptr);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(form.diary, QStringList({"load", "query", "unload"}));
}

TEST(FormTest, modalFormReturnsToItsCallerWhenUnloaded) {
    QMainWindow owner;
    owner.show();
    DiaryForm form;
    bool modal = false;
    QTimer::singleShot(0, &form, [&] {
        EXPECT_TRUE(QTest::qWaitForWindowActive(&form));
        modal = Form::isModalOpen();
        QTest::keyClick(form.field, Qt::Key_Escape);
    });
    form.showModal(&owner);
    EXPECT_TRUE(modal);
    EXPECT_FALSE(Form::isModalOpen());
    EXPECT_TRUE(form.isUnloaded());
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(form.parentWidget(), &owner);
}

TEST(FormTest, showingWithoutActivationLeavesTheFocus) {
    QMainWindow owner;
    auto* const edit = new QLineEdit;
    owner.setCentralWidget(edit);
    owner.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&owner));
    edit->setFocus();
    auto* const form = new DiaryForm;
    form->showModeless(&owner, false);
    EXPECT_TRUE(waitFor([&] { return form->isVisible(); }));
    EXPECT_TRUE(form->testAttribute(Qt::WA_ShowWithoutActivating));
    form->unload();
}

TEST(FormTest, keysReachTheFormOnceBeforeItsControls) {
    DiaryForm* const form = shownForm();
    form->field->setFocus();
    struct {
        Qt::Key key;
        QWidget* target;
    } const cases[] = {
        {Qt::Key_X, form->field}, {Qt::Key_F1, form->field},  {Qt::Key_Tab, form->field},
        {Qt::Key_F7, form},       {Qt::Key_F8, form->button},
    };
    for (const auto& [key, target] : cases) {
        form->diary.clear();
        QTest::keyClick(target, key);
        EXPECT_EQ(form->diary,
                  QStringList({"down " + QString::number(key), "up " + QString::number(key)}));
    }
    EXPECT_EQ(form->field->text(), "x");
    form->unload();
}

TEST(FormTest, repeatedKeyIsSeenForEachRepetition) {
    DiaryForm* const form = shownForm();
    for (int i = 0; i < 3; ++i) {
        QTest::keyPress(form->field, Qt::Key_A);
    }
    EXPECT_EQ(form->diary.count("down 65"), 3);
    EXPECT_EQ(form->field->text(), "aaa");
    QKeyEvent between(QEvent::KeyRelease, Qt::Key_A, Qt::NoModifier, "a", true);
    QApplication::sendEvent(form->field, &between); // the key is still down
    EXPECT_FALSE(form->diary.contains("up 65"));
    QTest::keyRelease(form->field, Qt::Key_A);
    EXPECT_EQ(form->diary.count("up 65"), 1);
    form->unload();
}

/// What comes while an assistive program listens: the press is held back, then sent as a copy,
/// which is offered once more. The copy is not spontaneous.
TEST(FormTest, aKeyThatIsSentAgainIsHandledOnce) {
    DiaryForm* const form = shownForm();
    QLineEdit box; // the window that comes up meanwhile and takes the press
    const auto send = [&](QWidget* to, QEvent::Type type, Qt::Key key, bool spontaneous) {
        QKeyEvent event(type, key, Qt::NoModifier, QString(QChar(key)));
        if (spontaneous) {
            QSpontaneKeyEvent::setSpontaneous(&event);
        }
        qApp->notify(to, &event); // "sendEvent" makes them all a program's own
    };
    struct {
        const char* events; ///< offer, press, release; lower case: of a copy; "b": in the box
        const char* handled;
        const char* typed; ///< by the presses when the form consumes nothing
    } const cases[] = {
        {"Oop", "1", "A"},   {"OopOop", "2", "AA"},  {"OOopop", "2", "AA"}, {"OObop", "2", "A"},
        {"ObOop", "2", "A"}, {"obop", "2", "A"},     {"OROP", "2", "A"},    {"ORop", "2", "A"},
        {"op", "1", "A"},    {"OPOPOP", "3", "AAA"}, {"p", "1", "A"},       {"OopRb", "1", "A"},
    };
    for (const auto& [events, handled, typed] : cases) {
        for (const bool consumed : {false, true}) {
            form->diary.clear();
            form->field->clear();
            form->consumedKey = consumed ? int(Qt::Key_A) : 0;
            for (const char* each = events; *each != 0; ++each) {
                const char what = QChar(*each).toLower().toLatin1();
                send(what == 'b' ? &box : form->field,
                     what == 'o'   ? QEvent::ShortcutOverride
                     : what == 'r' ? QEvent::KeyRelease
                                   : QEvent::KeyPress,
                     Qt::Key_A, what != *each);
            }
            EXPECT_EQ(form->diary.count("down 65"), QByteArray(handled).toInt()) << events;
            EXPECT_EQ(form->field->text(), consumed ? "" : typed) << events;
            send(form->field, QEvent::KeyRelease, Qt::Key_A, true);
        }
    }
    form->unload();
}

TEST(FormTest, consumedKeyReachesNoControlShortcutOrAccessKey) {
    DiaryForm* const form = shownForm();
    form->field->setFocus();
    int shortcuts = 0;
    int clicks = 0;
    auto* const shortcut = new QShortcut(QKeySequence("Ctrl+K"), form);
    QObject::connect(shortcut, &QShortcut::activated, form, [&] { ++shortcuts; });
    QObject::connect(form->button, &QPushButton::clicked, form, [&] { ++clicks; });
    QTest::keyClick(form->field, Qt::Key_K, Qt::ControlModifier);
    QTest::keyClick(form->field, Qt::Key_G, Qt::AltModifier);
    EXPECT_EQ(shortcuts, 1);
    EXPECT_TRUE(waitFor([&] { return clicks == 1; }));
    form->consumedKey = Qt::Key_K;
    QTest::keyClick(form->field, Qt::Key_K, Qt::ControlModifier);
    QTest::keyClick(form->field, Qt::Key_K);
    form->consumedKey = Qt::Key_G;
    QTest::keyClick(form->field, Qt::Key_G, Qt::AltModifier);
    EXPECT_EQ(shortcuts, 1);
    EXPECT_FALSE(form->button->isDown());
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(form->field->text(), "");
    form->unload();
}

TEST(FormTest, otherWindowsKeysAreNotSeen) {
    DiaryForm* const form = shownForm();
    QLineEdit other;
    other.show();
    form->diary.clear();
    QTest::keyClick(&other, Qt::Key_X);
    QTest::keyPress(&other, Qt::Key_Escape); // it closes a box, and is let go of over the form
    QTest::keyRelease(form->field, Qt::Key_Escape);
    EXPECT_FALSE(form->diary.contains("up 16777216"));
    EXPECT_FALSE(form->diary.contains("down 88"));
    form->unload();
}

TEST(FormTest, closingTheOwnerUnloadsItsFormsOrIsRefused) {
    QMainWindow window;
    window.show();
    for (QWidget* const owner :
         {static_cast<QWidget*>(shownForm()), static_cast<QWidget*>(&window)}) {
        auto* const owned = new DiaryForm("frmOwned");
        owned->showModeless(owner, false);
        QStringList order;
        auto* const form = dynamic_cast<DiaryForm*>(owner);
        for (DiaryForm* const each : {form, owned}) {
            if (each != nullptr) {
                each->otherDiary = &order;
            }
        }
        const auto ends = [&] { return form != nullptr ? form->unload() : owner->close(); };
        owned->refuse = true;
        EXPECT_FALSE(ends());
        EXPECT_TRUE(owner->isVisible());
        EXPECT_EQ(order, QStringList({"frmOwned query"}));
        owned->refuse = false;
        order.clear();
        EXPECT_TRUE(ends());
        const QStringList ended{"frmOwned unload", "frmDiary unload"};
        EXPECT_EQ(order.filter("unload"), form != nullptr ? ended : ended.mid(0, 1));
    }
}

TEST(FormTest, destroyedOwnerUnloadsTheForm) {
    auto owner = std::make_unique<QMainWindow>();
    QStringList end;
    QPointer<DiaryForm> form = shownForm(owner.get());
    form->otherDiary = &end;
    owner.reset();
    EXPECT_EQ(end, QStringList({"frmDiary unload"}));
    EXPECT_TRUE(waitFor([&] { return form.isNull(); }));
}

// Also when the colours change while the form is open.
TEST(FormTest, untickedBoxesAndPlaceholdersAreSeenOnLightAndDark) {
    const QPalette before = QApplication::palette();
    const QString style = QApplication::style()->name();
    QApplication::setStyle(QStringLiteral("Fusion"));
    DiaryForm form;
    form.field->setPlaceholderText("Type here");
    form.button->setFocus();
    auto* const box = new QCheckBox(&form);
    auto* const option = new QRadioButton(&form);
    auto* const tree = new QTreeWidget(&form);
    tree->setHeaderHidden(true);
    auto* const item = new QTreeWidgetItem(tree, QStringList(QString()));
    item->setCheckState(0, Qt::Unchecked);
    for (QWidget* each :
         {static_cast<QWidget*>(box), static_cast<QWidget*>(option), static_cast<QWidget*>(tree)}) {
        form.layout()->addWidget(each);
    }
    form.button->setFocus();
    form.showModeless(nullptr, true);
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&form));
    const auto seen = [](QWidget& control, const QRect& part, const QColor& on, double least) {
        return test::isSeen(control.grab(part).toImage(), on, least);
    };
    const std::pair<QColor, QColor> themes[] = {
        {QColor(0xef, 0xef, 0xef), Qt::white},
        {QColor(0x35, 0x35, 0x35), QColor(0x2a, 0x2a, 0x2a)},
        {Qt::black, Qt::black}};
    for (const auto& [window, base] : themes) {
        QPalette palette(window);
        palette.setColor(QPalette::Base, base);
        QApplication::setPalette(palette);
        QApplication::processEvents();
        SCOPED_TRACE(window.name().toStdString());
        EXPECT_TRUE(seen(*box, box->rect(), window, 3));
        EXPECT_TRUE(seen(*option, option->rect(), window, 3));
        EXPECT_TRUE(seen(*tree->viewport(), tree->visualItemRect(item), base, 3));
        EXPECT_TRUE(seen(*form.field, form.field->rect().adjusted(4, 4, -4, -4), base, 4.5));
        EXPECT_EQ(form.palette().color(QPalette::Window), window);
    }
    QApplication::setPalette(before);
    QApplication::setStyle(style);
}

} // namespace
