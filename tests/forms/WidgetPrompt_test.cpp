#include "platform/forms/WidgetPrompt.h"

#include "platform/clock/Clock.h"
#include "platform/forms/DatePicker.h"
#include "platform/forms/FileFilter.h"
#include "platform/forms/Form.h"
#include "platform/prompt/ErrorLog.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFontDatabase>
#include <QFontDialog>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <functional>

using namespace yrw;

namespace {

class WidgetPromptTest : public testing::Test {
protected:
    WidgetPromptTest() { qputenv("XDG_STATE_HOME", state.path().toUtf8()); }

    /// Does something with the next box as soon as it is open.
    template <class Action>
    void whenOpen(Action action) {
        auto* const timer = new QTimer(&context);
        QObject::connect(timer, &QTimer::timeout, timer, [timer, action] {
            QWidget* const box = QApplication::activeModalWidget();
            if (box != nullptr && box->objectName() == "promptBox") {
                timer->stop();
                action(box);
            }
        });
        timer->start(1);
    }
    void press(const QString& buttonName) {
        whenOpen([buttonName](QWidget* box) { click(box, buttonName); });
    }
    static void click(QWidget* box, const QString& buttonName) {
        for (auto* button : box->findChildren<QAbstractButton*>()) {
            if (button->accessibleName() == buttonName) {
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        }
        ADD_FAILURE() << "no button " << buttonName.toStdString();
        box->close();
    }
    static QString logged() {
        QFile log(errorLogFile());
        return log.open(QIODevice::ReadOnly) ? QString::fromUtf8(log.readAll()) : QString();
    }

    QObject context;
    QTemporaryDir state;
    ManualClock clock{QDateTime(QDate(2026, 6, 1), QTime(12, 0, 5))};
    WidgetPrompt prompt{clock};
};

TEST_F(WidgetPromptTest, answersAreTheButtonsPressedAndClosingChangesNothing) {
    struct {
        PromptButtons buttons;
        PromptAnswer offered;
        QStringList ways; ///< a button, a key, or closing the box
        PromptAnswer answer;
    } const cases[] = {
        {PromptButtons::Ok, PromptAnswer::Ok, {"OK", "Return", "Esc", "close"}, PromptAnswer::Ok},
        {PromptButtons::YesNo, PromptAnswer::No, {"Yes"}, PromptAnswer::Yes},
        {PromptButtons::YesNo, PromptAnswer::Yes, {"No", "Esc", "close"}, PromptAnswer::No},
        {PromptButtons::YesNo, PromptAnswer::No, {"Return"}, PromptAnswer::No},
        {PromptButtons::YesNoCancel, PromptAnswer::No, {"Yes"}, PromptAnswer::Yes},
        {PromptButtons::YesNoCancel, PromptAnswer::Cancel, {"No"}, PromptAnswer::No},
        {PromptButtons::YesNoCancel,
         PromptAnswer::Yes,
         {"Cancel", "Esc", "close"},
         PromptAnswer::Cancel},
        {PromptButtons::OkCancel, PromptAnswer::Ok, {"OK", "Return"}, PromptAnswer::Ok},
        {PromptButtons::OkCancel, PromptAnswer::Ok, {"Esc", "close"}, PromptAnswer::Cancel},
        {PromptButtons::OkCancel, PromptAnswer::Cancel, {"Return"}, PromptAnswer::Cancel},
    };
    for (const auto& [buttons, offered, ways, answer] : cases) {
        for (const QString& way : ways) {
            whenOpen([way = way](QWidget* box) {
                if (way == "close") {
                    box->close();
                } else if (way == "Esc" || way == "Return") {
                    QTest::keyClick(box, way == "Esc" ? Qt::Key_Escape : Qt::Key_Return);
                } else {
                    click(box, way);
                }
            });
            EXPECT_EQ(prompt.question("Sure?", "Title", buttons, PromptIcon::Question, offered),
                      answer)
                << int(buttons) << ' ' << way.toStdString();
        }
    }
}

TEST_F(WidgetPromptTest, choicesCarryTheirOwnWords) {
    const ChoiceRequest request{
        "Which?", "Title", PromptIcon::Question, {"Keep &both", "&Mine", "&Theirs"}, 2, 0};
    const QList<QPair<QString, int>> cases{{"Keep both", 0}, {"Mine", 1}, {"Theirs", 2}};
    for (const auto& [button, index] : cases) {
        press(button);
        EXPECT_EQ(prompt.choose(request), index);
    }
    whenOpen([](QWidget* box) {
        EXPECT_EQ(box->findChild<QDialogButtonBox*>()->orientation(), Qt::Vertical);
        QTest::keyClick(box, Qt::Key_Return);
    });
    EXPECT_EQ(prompt.choose(request), 2);
    whenOpen([](QWidget* box) { QTest::keyClick(box, Qt::Key_Escape); });
    EXPECT_EQ(prompt.choose(request), 0);
    whenOpen([](QWidget* box) { box->close(); });
    EXPECT_EQ(prompt.choose(request), 0);
}

TEST_F(WidgetPromptTest, carriageReturnShowsAsLineBreakAndMarkupAsText) {
    QString shown;
    whenOpen([&shown](QWidget* box) {
        shown = qobject_cast<QMessageBox*>(box)->text();
        EXPECT_EQ(qobject_cast<QMessageBox*>(box)->textFormat(), Qt::PlainText);
        box->close();
    });
    prompt.message("one\rtwo\r\nthree <b>", "T", PromptIcon::Information);
    EXPECT_EQ(shown, "one\ntwo\nthree <b>");
}

TEST_F(WidgetPromptTest, reportShowsTheMessageFirstAndTheSourceBehindAButton) {
    const ErrorReport report{3024, "YRW.Form.Load", "C.mdb is missing.\rSorry", "Could Not Open",
                             "",   "Notes Problem"};
    whenOpen([](QWidget* widget) {
        auto* const box = qobject_cast<QMessageBox*>(widget);
        EXPECT_EQ(box->text(), "Could Not Open");
        EXPECT_EQ(box->windowTitle(), "Notes Problem");
        EXPECT_EQ(box->informativeText(), "C.mdb is missing.\nSorry");
        EXPECT_TRUE(box->detailedText().contains("YRW.Form.Load"));
        EXPECT_FALSE(box->text().contains("YRW.Form.Load"));
        click(box, "OK");
    });
    prompt.errorReport(report);
    EXPECT_EQ(logged(),
              "2026-06-01 12:00:05\tYRW.Form.Load\t3024\tCould Not Open C.mdb is missing. Sorry\n");
}

TEST_F(WidgetPromptTest, secondReportIsLoggedAndNotStacked) {
    whenOpen([this](QWidget* box) {
        prompt.errorReport({1, "Timer", "second", "Second", "", "T"});
        EXPECT_EQ(QApplication::activeModalWidget(), box);
        click(box, "OK");
    });
    prompt.errorReport({1, "First", "first", "First", "", "T"});
    EXPECT_EQ(logged().count('\n'), 2);
    press("OK");
    prompt.errorReport({1, "Third", "third", "Third", "", "T"});
    EXPECT_EQ(logged().count('\n'), 3);
}

TEST_F(WidgetPromptTest, unwritableLogCostsNothing) {
    qputenv("XDG_STATE_HOME", "/proc/nowhere");
    press("OK");
    prompt.errorReport({1, "S", "d", "m", "", "T"});
}

TEST_F(WidgetPromptTest, pointerIsAValueAndUsualWhileABoxIsOpen) {
    prompt.setMousePointer(MousePointer::Hourglass);
    prompt.setMousePointer(MousePointer::Hourglass);
    prompt.setMousePointer(MousePointer::SizeNS);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::SizeVerCursor);
    whenOpen([](QWidget* box) {
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        EXPECT_TRUE(Form::isModalOpen());
        box->close();
    });
    prompt.message("m", "t", PromptIcon::None);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::SizeVerCursor);
    prompt.setMousePointer(MousePointer::Default);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(WidgetPromptTest, boxSurvivesTheEndOfItsOwner) {
    auto owner = std::make_unique<QWidget>();
    owner->show();
    prompt.setParentWindow(owner.get());
    whenOpen([&](QWidget* box) {
        EXPECT_EQ(box->parentWidget(), owner.get());
        owner.reset();
    });
    EXPECT_EQ(prompt.question("?", "T", PromptButtons::YesNo, PromptIcon::None, PromptAnswer::Yes),
              PromptAnswer::No);
}

TEST_F(WidgetPromptTest, aFontThatTheScreenLacksKeepsItsNameWhenLeftAlone) {
    const FontChoice start{"No Such Font Here", 13, true, false, true, false, 0x112233, {}};
    whenOpen([](QWidget* box) { qobject_cast<QFontDialog*>(box)->accept(); });
    const auto kept = prompt.chooseFont(start);
    ASSERT_TRUE(kept.has_value());
    EXPECT_EQ(kept->name, start.name);
    EXPECT_EQ(kept->points, 13);
    EXPECT_TRUE(kept->bold);
    EXPECT_TRUE(kept->underline);
    EXPECT_FALSE(kept->italic || kept->strikethru);
    EXPECT_EQ(kept->colour, start.colour);
    const QString other = QFontDatabase::families().constLast();
    whenOpen([&other](QWidget* box) {
        qobject_cast<QFontDialog*>(box)->setCurrentFont(QFont(other));
        qobject_cast<QFontDialog*>(box)->accept();
    });
    EXPECT_EQ(prompt.chooseFont(start)->name, other);
}

// Of what a text has several nothing is chosen but by the user's hand; a hand on what stands there
// already is one too.
TEST_F(WidgetPromptTest, theFontDialogChoosesOnlyWhatTheUserActedOn) {
    const FontParts all = FontParts(0x7f);
    struct Case {
        const char* what;
        std::function<void(QWidget*)> act;
        FontParts chosen;
    };
    const auto lists = [](QWidget* box) {
        return box->findChildren<QListView*>(QString(), Qt::FindDirectChildrenOnly);
    };
    const auto pick = [&lists](int list, int row) {
        return [&lists, list, row](QWidget* box) {
            QListView* const view = lists(box).at(list);
            const QModelIndex item = view->model()->index(row, 0);
            view->scrollTo(item);
            QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                              view->visualRect(item).center());
        };
    };
    const auto tick = [](const char* text) {
        return [text](QWidget* box) {
            for (auto* each : box->findChildren<QCheckBox*>()) {
                if (QString(each->text()).remove(u'&') == QLatin1String(text)) {
                    EXPECT_EQ(each->checkState(), Qt::PartiallyChecked);
                    QTest::mouseClick(each, Qt::LeftButton, {}, QPoint(8, each->height() / 2));
                    EXPECT_EQ(each->checkState(), Qt::Checked);
                }
            }
        };
    };
    const Case cases[] = {
        {"nothing", [](QWidget*) {}, {}},
        {"another font", pick(0, 1), FontPart::Name},
        {"a style", pick(1, 0), FontPart::Bold | FontPart::Italic},
        {"a size", pick(2, 3), FontPart::Points},
        {"strikeout", tick("Strikeout"), FontPart::Strikethru},
        {"underline", tick("Underline"), FontPart::Underline},
        {"a colour",
         [this](QWidget* box) {
             whenOpen([](QWidget* inner) {
                 auto* const colours = qobject_cast<QColorDialog*>(inner);
                 ASSERT_NE(colours, nullptr);
                 EXPECT_EQ(colours->currentColor(), QColor(Qt::red));
                 colours->setCurrentColor(QColor(0xAA, 0xBB, 0xCC));
                 colours->accept();
             });
             QTest::mouseClick(box->findChild<QPushButton*>("cmdColour"), Qt::LeftButton);
         },
         FontPart::Colour},
    };
    for (const Case& each : cases) {
        for (const int way : {0, 1, 2, 3}) {
            const FontParts mixed = way < 2 ? all : FontParts();
            const bool italic = way % 2 == 1;
            SCOPED_TRACE(each.what);
            FontChoice start{"DejaVu Serif", 10.5, true, italic, false, false, 0x0000FF, mixed};
            whenOpen([&](QWidget* box) {
                EXPECT_NE(box->findChild<QPushButton*>("cmdColour"), nullptr);
                EXPECT_EQ(qobject_cast<QFontDialog*>(box)->currentFont().italic(), italic);
                if (mixed || each.chosen == FontParts()) {
                    each.act(box);
                }
                qobject_cast<QDialog*>(box)->accept();
            });
            const auto font = prompt.chooseFont(start);
            ASSERT_TRUE(font.has_value());
            EXPECT_EQ(font->mixed, mixed ? all & ~each.chosen : FontParts());
            EXPECT_EQ(font->colour, mixed && each.chosen == FontPart::Colour ? 0xCCBBAA : 0x0000FF);
            if (!mixed) { // the parts that were left alone, to the half point
                EXPECT_EQ(font->points, 10.5);
                EXPECT_TRUE(font->bold);
                EXPECT_EQ(font->italic, italic);
            }
        }
    }
}

TEST_F(WidgetPromptTest, filesShowByTheirFilterAndTheNextDialogBeginsWhereTheLastEnded) {
    const QTemporaryDir folder;
    for (const char* name : {"README", "a.txt", "a.doc"}) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    const std::pair<const char*, int> cases[] = {{"Anything else (*.*)|*.*|", 3},
                                                 {"Text File (*.txt; *.rtf)|*.txt;*.rtf|", 1}};
    for (const auto& [filter, count] : cases) {
        whenOpen([count = count](QWidget* box) {
            auto* const files = box->findChild<QAbstractItemView*>("listView");
            ASSERT_NE(files, nullptr);
            EXPECT_TRUE(QTest::qWaitFor([&] {
                return files->model()->rowCount(files->rootIndex()) == count;
            })) << files->model()->rowCount(files->rootIndex());
            box->close();
        });
        FileRequest request;
        request.folder = folder.path();
        request.filter = filter;
        prompt.openFiles(request);
    }
    const auto choose = [&](const char* name) {
        const QFileDialog another(nullptr, QString(), QDir::rootPath()); // the host's own
        whenOpen([&folder, name](QWidget* box) {
            auto* const dialog = qobject_cast<QFileDialog*>(box);
            if (dialog->directory() != QDir(folder.path())) {
                ADD_FAILURE() << "it began in " << dialog->directory().path().toStdString();
                box->close();
                return;
            }
            dialog->selectFile(QString::fromLatin1(name));
            static_cast<QDialog*>(dialog)->accept();
        });
    };
    FileRequest request;
    request.folder = folder.path();
    choose("a.txt");
    EXPECT_EQ(prompt.openFiles(request), QStringList(folder.filePath("a.txt")));
    request.folder.clear();
    request.filter = "Text|*.txt|";
    choose("new");
    EXPECT_EQ(prompt.saveFile(request), folder.filePath("new.txt"));
    choose("a.doc");
    EXPECT_EQ(prompt.openFiles({}), QStringList(folder.filePath("a.doc")));
}

TEST_F(WidgetPromptTest, dialogsCancelledGiveNothing) {
    const auto closing = [](QWidget* box) { box->close(); };
    whenOpen(closing);
    EXPECT_TRUE(prompt.openFiles({}).isEmpty());
    whenOpen(closing);
    EXPECT_TRUE(prompt.saveFile({}).isEmpty());
    whenOpen(closing);
    EXPECT_FALSE(prompt.chooseFont({}).has_value());
    whenOpen(closing);
    EXPECT_FALSE(prompt.chooseColour(0).has_value());
    whenOpen(closing);
    EXPECT_FALSE(prompt.print("Note", [](QPrinter&) { ADD_FAILURE() << "printed"; }));
}

TEST(FileFilterTest, pairsBecomeNameFilters) {
    const std::pair<QString, QStringList> cases[] = {
        {"Text|*.txt|All|*.*|", {"Text (*.txt)", "All (*)"}},
        {"Pictures (*.png)|*.png;*.jpg", {"Pictures (*.png *.jpg)"}},
        {"", {"All files (*)"}},
        {"Text|", {"All files (*)"}},
        {"Text|*.txt|Odd", {"Text (*.txt)"}},
    };
    for (const auto& [pairs, filters] : cases) {
        EXPECT_EQ(nameFilters(pairs), filters) << pairs.toStdString();
    }
    EXPECT_EQ(firstSuffix("Text|*.txt|All|*.*"), "txt");
    EXPECT_EQ(firstSuffix("All|*.*"), "");
}

TEST(DatePickerTest, showsDaysFirstAndStepsWholeMinutes) {
    QLocale::setDefault(QLocale(QLocale::German));
    DatePicker picker("dtpDate", "Date/Time");
    QLocale::setDefault(QLocale::c());
    picker.setValue(QDateTime(QDate(2026, 12, 31), QTime(23, 45, 59)));
    EXPECT_EQ(picker.text(), "31/12/2026 23:45");
    EXPECT_EQ(picker.value(), QDateTime(QDate(2026, 12, 31), QTime(23, 45)));
    picker.addMinutes(30);
    EXPECT_EQ(picker.text(), "01/01/2027 00:15");
    picker.addMinutes(-30);
    picker.show();
    QTest::keyClick(&picker, Qt::Key_Home);
    QTest::keyClick(&picker, Qt::Key_Down);
    EXPECT_EQ(picker.text(), "30/12/2026 23:45");
    picker.clearFocus(); // the wheel turns only what the user is in
    QWheelEvent wheel({5, 5}, {5, 5}, {}, {0, 120}, Qt::NoButton, Qt::NoModifier, {}, false);
    QApplication::sendEvent(&picker, &wheel);
    EXPECT_EQ(picker.text(), "30/12/2026 23:45");
    const QDateTime exact(QDate(2026, 5, 4), QTime(3, 2, 1));
    picker.setStoredValue(exact);
    EXPECT_EQ(picker.value(), exact);
    EXPECT_FALSE(picker.accessibleName().isEmpty());
}

} // namespace
