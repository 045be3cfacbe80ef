// Boxes on a real screen: tools/with-display.sh --screen runs these.
#include "platform/clock/Clock.h"
#include "platform/forms/WidgetPrompt.h"
#include "tests/driving/ScreenWatch.h"

#include <QApplication>
#include <QDirIterator>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

using namespace yrw;
using namespace yrw::test;

namespace {

/// What names and paths may be as long as.
const QString kLongName = QStringLiteral("Bartholomew & Featherstonehaugh ").repeated(8).left(255);
const QString kLongPath = u"/home/anna/" + QStringLiteral("W").repeated(180) + u"/Notes.mdb";

/// Every sentence of the program's sources that may come up in a box, with long words for what
/// is filled in.
QStringList messagesOfTheProgram() {
    static const QRegularExpression literals(
        QStringLiteral(R"re((?:u?"(?:[^"\\\n]|\\.)*"(?:_qs)?[\s+)]*(?:QStringLiteral\(\s*)?)+)re"));
    static const QRegularExpression part(QStringLiteral(R"re("((?:[^"\\\n]|\\.)*)")re"));
    QSet<QString> found;
    for (const char* room : {"addin", "dialogs", "notes_window", "store", "framework", "host",
                             "platform/dao", "platform/forms", "platform/files"}) {
        QDirIterator sources(QStringLiteral(YRW_SOURCE_DIR "/") + QLatin1String(room), {"*.cpp"},
                             QDir::Files, QDirIterator::Subdirectories);
        while (sources.hasNext()) {
            QFile source(sources.next());
            EXPECT_TRUE(source.open(QIODevice::ReadOnly));
            auto runs = literals.globalMatch(QString::fromUtf8(source.readAll()));
            while (runs.hasNext()) {
                QString text;
                auto parts = part.globalMatch(runs.next().captured());
                while (parts.hasNext()) {
                    text += parts.next().captured(1);
                }
                text.replace(QLatin1String("\\r"), QLatin1String("\r"))
                    .replace(QLatin1String("\\n"), QLatin1String("\n"))
                    .replace(QLatin1String("\\\""), QLatin1String("\""));
                if (text.count(u' ') >= 3 && !text.startsWith(u"SELECT ")) {
                    found += text.replace(QRegularExpression(QStringLiteral("%[1-9]")), kLongPath);
                }
            }
        }
    }
    return found.values();
}

class OnDisplay : public testing::Test {
protected:
    /// What stays wrong with the box that an action opens, while the window manager places it.
    template <class Open>
    static QStringList faultsOf(Open open) {
        QStringList faults{QStringLiteral("no box came")};
        QTimer eyes;
        int seen = 0;
        QObject::connect(&eyes, &QTimer::timeout, &eyes, [&] {
            QWidget* const box = QApplication::activeModalWidget();
            if (box == nullptr || ++seen < 2) {
                return;
            }
            faults = ScreenWatch::faultsOf(*box);
            if (faults.isEmpty() || seen > 50) {
                eyes.stop();
                box->close();
            }
        });
        eyes.start(20);
        open();
        return faults;
    }

    ManualClock clock{QDateTime(QDate(2026, 6, 1), QTime(12, 0, 5))};
    WidgetPrompt prompt{clock};
};

TEST_F(OnDisplay, EveryMessageShowsWhole) {
    QStringList messages = messagesOfTheProgram();
    EXPECT_GT(messages.size(), 60);
    EXPECT_FALSE(messages.filter(QStringLiteral("There is not a Notes database")).isEmpty());
    messages += {kLongName, kLongPath, QString(kLongPath + u"\r").repeated(40),
                 QStringLiteral("A line of a list\r").repeated(90)};
    for (const QString& text : std::as_const(messages)) {
        const QStringList faults = faultsOf([&] {
            prompt.question(text, QStringLiteral("Notes Problem"), PromptButtons::YesNoCancel,
                            PromptIcon::Question, PromptAnswer::No);
        });
        EXPECT_TRUE(faults.isEmpty()) << qPrintable(text) << '\n' << qPrintable(faults.join('\n'));
    }
}

TEST_F(OnDisplay, ReportsAndChoicesShowWhole) {
    for (const QString& reason : {kLongName, kLongPath, QString(kLongName + u'\r').repeated(30)}) {
        const QStringList faults = faultsOf([&] {
            prompt.errorReport({3024, QStringLiteral("YRWNOTES.AddIn.ShowNotes"), reason,
                                QStringLiteral("Could Not Notes Open Database"), kLongName,
                                QStringLiteral("Notes Problem")});
        });
        EXPECT_TRUE(faults.isEmpty()) << qPrintable(faults.join('\n'));
        const ChoiceRequest request{reason,
                                    QStringLiteral("Notes"),
                                    PromptIcon::Question,
                                    {u"Keep the text of " + kLongName, kLongPath, "&Cancel"},
                                    0,
                                    2};
        const QStringList others = faultsOf([&] { prompt.choose(request); });
        EXPECT_TRUE(others.isEmpty()) << qPrintable(others.join('\n'));
    }
}

TEST_F(OnDisplay, CommonDialogsLieOnTheScreen) {
    const std::function<void()> dialogs[] = {
        [&] { prompt.openFiles({}); }, [&] { prompt.saveFile({}); }, [&] { prompt.chooseFont({}); },
        [&] { prompt.chooseColour(0); },
        [&] { prompt.preview(QStringLiteral("Note"), [](QPrinter&) {}); }};
    for (const auto& open : dialogs) {
        QStringList faults = faultsOf(open);
        // The toolkit's own dialogs cut no labels of ours.
        EXPECT_TRUE(faults.filter(QStringLiteral("the window lies")).isEmpty())
            << qPrintable(faults.join('\n'));
    }
}

} // namespace
