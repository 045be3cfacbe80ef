// busydesk: the reference host with everything open that a user can have open, until it is ended
// from outside: reminder popups, automatic notes, the notes window with typed text, and over it
// the properties of that note.
//
//   busydesk --data DIR --popups N --text TEXT
//   busydesk --data DIR --make       makes the host's data and ends
//   busydesk --data DIR --look       ends once the host is open and no box is on the screen
//
// Prints a line for what happened: "box TEXT" for each question that it answers with its first
// button, "typed" once the text stands in the editor, "ready" once all is open; ends with status 2
// when something does not come.
#include "tour/Hands.h"

#include "host/desk/DeskWindow.h"
#include "host/desk/ProgramServices.h"
#include "platform/controls/ListView.h"
#include "platform/controls/RecordGrid.h"
#include "platform/richtext/RichTextBox.h"

#include <QAbstractButton>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTextStream>
#include <QTimer>

#include <functional>
#include <vector>

namespace yrw::tour {

namespace {

constexpr int kPollMs = 20;
constexpr qint64 kPatienceMs = 30000;
constexpr qint64 kRow = 0; ///< the customer whose notes are opened
constexpr int kColumn = 1;
/// Looks that find the window open and no question over it, before it counts as ready.
constexpr int kQuietLooks = 15;
/// What the minute of the reminder check is cut down to.
constexpr int kTickMs = 100;

void say(const QString& line) {
    QTextStream(stdout) << line << '\n' << Qt::flush;
}

struct Step {
    const char* waitsFor;
    std::function<bool()> isThere;
    std::function<void()> act;
};

RecordGrid* grid() {
    return shown<RecordGrid>(QStringLiteral("dbgUpper"));
}

void clickRow(Qt::MouseButton button) {
    clickAt(*grid(), grid()->cellRect(kRow, kColumn).center(), button);
}

int openWindows(const QString& name) {
    int count = 0;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        count += window->isVisible() && window->objectName() == name ? 1 : 0;
    }
    return count;
}

void checkRemindersOften() {
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* widget : widgets) {
        if (auto* timer = widget->findChild<QTimer*>(QStringLiteral("tmrMain"))) {
            timer->setInterval(kTickMs);
        }
    }
}

void answerBox() {
    auto* box = shown<QMessageBox>(QStringLiteral("promptBox"));
    if (box == nullptr || box->buttons().isEmpty()) {
        return;
    }
    say(u"box " + box->text().simplified());
    QAbstractButton* yes = box->button(QMessageBox::Yes);
    QAbstractButton* answer = yes != nullptr ? yes : box->buttons().constFirst();
    clickAt(*answer, answer->rect().center());
}

std::vector<Step> stepsToLook() {
    return {{"customers",
             [] {
                 return grid() != nullptr && grid()->rowCount() > kRow &&
                        QApplication::activeModalWidget() == nullptr;
             },
             [] { QApplication::exit(); }}};
}

std::vector<Step> stepsTo(int popups, const QString& text) {
    return {
        {"customers", [] { return grid() != nullptr && grid()->rowCount() > kRow; },
         [] { checkRemindersOften(); }},
        {"reminders", [popups] { return openWindows(QStringLiteral("frmReminder")) >= popups; },
         [] { clickRow(Qt::LeftButton); }},
        {"automatic notes", [] { return openWindows(QStringLiteral("frmAutoNotes")) == 1; },
         [] { clickRow(Qt::RightButton); }},
        {"menu", [] { return openEntry(QStringLiteral("tooAddinNotes")) != nullptr; },
         [] { chooseEntry(QStringLiteral("tooAddinNotes")); }},
        {"notes",
         [looks = 0]() mutable {
             const auto* list = shown<ListView>(QStringLiteral("lsvMain"));
             const auto* box = shown<RichTextBox>(QStringLiteral("rtxMain"));
             const bool isOpen = list != nullptr && list->items().rowCount() > 0 &&
                                 box->isEnabled() &&
                                 shown<QMessageBox>(QStringLiteral("promptBox")) == nullptr;
             // A question about text that was left comes a moment after the window.
             looks = isOpen ? looks + 1 : 0;
             return looks > kQuietLooks;
         },
         [text] {
             auto* box = shown<RichTextBox>(QStringLiteral("rtxMain"));
             box->setFocus();
             QTest::keyClick(box, Qt::Key_End, Qt::ControlModifier);
             QTest::keyClicks(box, text);
             say(QStringLiteral("typed"));
         }},
        {"text",
         [text] { return shown<RichTextBox>(QStringLiteral("rtxMain"))->Text().contains(text); },
         [] { press(Qt::Key_F2); }},
        {"properties", [] { return shown<QLineEdit>(QStringLiteral("txtSubject")) != nullptr; },
         [] { say(QStringLiteral("ready")); }},
    };
}

/// Takes one step after the other, also inside the modal windows that a step opens.
class Walk : public QObject {
public:
    explicit Walk(std::vector<Step> steps) : m_steps(std::move(steps)) {
        m_waiting.start();
        QTimer::singleShot(kPollMs, this, [this] { poll(); });
    }

private:
    void poll() {
        // Before acting: what is done may not return until a window that it opens is closed.
        QTimer::singleShot(kPollMs, this, [this] { poll(); });
        answerBox();
        if (m_next == m_steps.size()) {
            return;
        }
        const Step& step = m_steps[m_next];
        if (step.isThere()) {
            ++m_next;
            m_waiting.restart();
            step.act();
        } else if (m_waiting.elapsed() > kPatienceMs) {
            say(QStringLiteral("missing %1").arg(QLatin1String(step.waitsFor)));
            std::_Exit(2);
        }
    }

    std::vector<Step> m_steps;
    std::size_t m_next = 0;
    QElapsedTimer m_waiting;
};

} // namespace

} // namespace yrw::tour

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption data(QStringLiteral("data"), QStringLiteral("Folder."),
                                  QStringLiteral("DIR"));
    const QCommandLineOption popups(QStringLiteral("popups"), QStringLiteral("Due reminders."),
                                    QStringLiteral("N"), QStringLiteral("0"));
    const QCommandLineOption text(QStringLiteral("text"), QStringLiteral("What is typed."),
                                  QStringLiteral("TEXT"), QStringLiteral("busy"));
    const QCommandLineOption make(QStringLiteral("make"), QStringLiteral("Make the data only."));
    const QCommandLineOption look(QStringLiteral("look"), QStringLiteral("Open and end."));
    parser.addOptions({data, popups, text, make, look});
    parser.process(application);

    yrw::ProgramServices program;
    yrw::DeskOptions options;
    options.start.folder = parser.value(data);
    options.start.userCode = QStringLiteral("ANNA");
    options.start.customers = 20;
    yrw::DeskWindow desk(program.services, options);
    QApplication::setQuitOnLastWindowClosed(false);
    if (parser.isSet(make)) {
        desk.open();
        return 0;
    }
    const yrw::tour::Walk walk(
        parser.isSet(look) ? yrw::tour::stepsToLook()
                           : yrw::tour::stepsTo(parser.value(popups).toInt(), parser.value(text)));
    QTimer::singleShot(0, &desk, [&desk] { desk.open(); }); // it may not return before it ends
    return QApplication::exec();
}
