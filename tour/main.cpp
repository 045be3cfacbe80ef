// The tour: a user keeps a note on a customer, sees it when she lands there again, closes the
// program, and finds the note once more.
//
//   tour --out DIR             runs both parts, each in a process of its own
//   tour --out DIR --part N    runs one part; its last line tells the number of the next picture
#include "tests/driving/DrivenApplication.h"
#include "tour/Hands.h"
#include "tour/Script.h"

#include "host/desk/DeskWindow.h"
#include "host/desk/ProgramServices.h"
#include "platform/controls/ListView.h"
#include "platform/controls/RecordGrid.h"
#include "platform/richtext/RichTextBox.h"

#include <QCheckBox>
#include <QCommandLineParser>
#include <QCursor>
#include <QDir>
#include <QLineEdit>
#include <QMessageBox>
#include <QPalette>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QStyleFactory>
#include <QTableWidget>
#include <QTest>
#include <QTextBlock>
#include <QTextStream>
#include <QToolTip>

namespace yrw::tour {

namespace {

constexpr qint64 kRow = 2;
constexpr qint64 kOtherRow = 5;
constexpr int kColumn = 1;
constexpr auto kSubject = u"Bring to the visit";
constexpr auto kText = u"Bring the blue folder, and ring first.";
/// The highlight of a row that carries notes.
const QColor kHighlight(192, 192, 255);

/// What is missing, or nothing.
QString unless(bool there, const QString& what) {
    return there ? QString() : what;
}

RecordGrid* upperGrid() {
    return shown<RecordGrid>(QStringLiteral("dbgUpper"));
}
ListView* notesList() {
    return shown<ListView>(QStringLiteral("lsvMain"));
}
RichTextBox* noteText() {
    return shown<RichTextBox>(QStringLiteral("rtxMain"));
}
QWidget* notesWindow() {
    return shown<QWidget>(QStringLiteral("frmMain"));
}

QWidget* popup() {
    return shown<QWidget>(QStringLiteral("frmAutoNotes"));
}

void clickRow(Qt::MouseButton button, qint64 row = kRow) {
    clickAt(*upperGrid(), upperGrid()->cellRect(row, kColumn).center(), button);
}

/// Rests the pointer on the marked row.
void hoverRow() {
    const QPoint place = upperGrid()->cellRect(kRow, kColumn).center();
    QWidget* body = upperGrid()->childAt(place);
    QCursor::setPos(upperGrid()->mapToGlobal(place));
    QTest::mouseMove(body, body->mapFrom(upperGrid(), place));
}

QString rowIsMarked(bool wanted) {
    const RecordGrid* grid = upperGrid();
    const bool marked = grid != nullptr && grid->paintedRowColour(kRow) == kHighlight;
    return unless(marked == wanted, wanted ? QStringLiteral("the customer's row is not highlighted")
                                           : QStringLiteral("the row is highlighted too early"));
}

QString wordIsBold(const QString& word) {
    RichTextBox* box = noteText();
    if (box == nullptr || box->Text() != kText) {
        return QStringLiteral("the note's text is not '%1'").arg(kText);
    }
    const QTextCursor found = box->document()->find(word);
    const QTextCursor plain = box->document()->find(QStringLiteral("folder"));
    return unless(found.charFormat().fontWeight() >= QFont::Bold &&
                      plain.charFormat().fontWeight() < QFont::Bold,
                  QStringLiteral("'%1' alone is not bold").arg(word));
}

void addOpening(Script& script, DeskWindow& desk, bool asks) {
    script.step(
        QStringLiteral("The program starts"), [] { return QString(); }, [&desk] { desk.open(); });
    if (!asks) {
        return;
    }
    script.step(
        QStringLiteral("There is no notes database and the add-in asks"),
        [] {
            auto* box = shown<QMessageBox>(QStringLiteral("promptBox"));
            return unless(box != nullptr && box->text().contains(u"There is not a Notes database"),
                          QStringLiteral("nothing asks for a new notes database"));
        },
        [] {
            auto* box = shown<QMessageBox>(QStringLiteral("promptBox"));
            QAbstractButton* yes = box->button(QMessageBox::Yes);
            clickAt(*yes, yes->rect().center());
        });
}

void addChoosingCustomer(Script& script, bool marked) {
    script.step(
        QStringLiteral("Customers above, orders below, the tool of the add-in"),
        [marked] {
            const auto* lower = shown<RecordGrid>(QStringLiteral("dbgLower"));
            const bool rows = upperGrid() != nullptr && upperGrid()->rowCount() > kRow &&
                              lower != nullptr && lower->rowCount() > 0;
            if (!rows) {
                return QStringLiteral("the grids show no rows");
            }
            const bool tool = shown<QWidget>(QStringLiteral("tooAddinNotes")) != nullptr;
            return tool ? rowIsMarked(marked) : QStringLiteral("there is no 'Show Notes' tool");
        },
        [] { clickRow(Qt::LeftButton); });
    script.step(
        QStringLiteral("A customer is chosen"),
        [] {
            return unless(upperGrid()->currentRow() == kRow,
                          QStringLiteral("the click did not choose the row"));
        },
        [] { clickRow(Qt::RightButton); });
    script.step(
        QStringLiteral("The menu of the grid offers Notes"),
        [] {
            const QAction* entry = openEntry(QStringLiteral("tooAddinNotes"));
            return unless(entry != nullptr && entry->text() == u"&Notes" && entry->isEnabled(),
                          QStringLiteral("the grid's menu has no entry for notes"));
        },
        [] { chooseEntry(QStringLiteral("tooAddinNotes")); });
}

void addWritingNote(Script& script) {
    script.step(
        QStringLiteral("The notes window of the customer, still empty"),
        [] {
            return unless(notesList() != nullptr && notesList()->items().rowCount() == 0,
                          QStringLiteral("the notes window is not there, or not empty"));
        },
        [] { click(QStringLiteral("tooAdd")); });
    script.step(
        QStringLiteral("The properties of a new note"),
        [] {
            auto* subject = shown<QLineEdit>(QStringLiteral("txtSubject"));
            return unless(subject != nullptr && subject->hasFocus(),
                          QStringLiteral("the dialog does not wait for a subject"));
        },
        [] { type(QString::fromUtf16(kSubject)); });
    script.step(
        QStringLiteral("The subject is typed"),
        [] {
            return unless(shown<QLineEdit>(QStringLiteral("txtSubject"))->text() == kSubject,
                          QStringLiteral("the subject did not arrive"));
        },
        [] {
            auto* box = shown<QWidget>(QStringLiteral("chkAutoShow"));
            clickAt(*box, QPoint(8, box->height() / 2));
        });
    script.step(
        QStringLiteral("The note is to show by itself"),
        [] {
            return unless(shown<QCheckBox>(QStringLiteral("chkAutoShow"))->isChecked(),
                          QStringLiteral("the box is not ticked"));
        },
        [] { click(QStringLiteral("cmdForm(0)")); });
    script.step(
        QStringLiteral("The note is in the list and its text waits"),
        [] {
            const bool added = notesList() != nullptr && notesList()->items().rowCount() == 1;
            return unless(added && noteText()->hasFocus(),
                          QStringLiteral("the note is not listed, or its text has no focus"));
        },
        [] {
            type(QStringLiteral("Bring the "));
            press(Qt::Key_B, Qt::ControlModifier);
            type(QStringLiteral("blue"));
            press(Qt::Key_B, Qt::ControlModifier);
            type(QStringLiteral(" folder, and ring first."));
        });
    script.step(
        QStringLiteral("A line with a bold word"),
        [] { return wordIsBold(QStringLiteral("blue")); }, [] { press(Qt::Key_Escape); });
}

/// The popup of the note comes where the user stays and goes where she moves on.
void addLanding(Script& script) {
    script.step(
        QStringLiteral("Back in the host the row is highlighted and its number framed"),
        [] {
            return notesWindow() == nullptr ? rowIsMarked(true)
                                            : QStringLiteral("the notes window is still there");
        },
        [] { clickRow(Qt::LeftButton, kOtherRow); });
    script.step(
        QStringLiteral("A customer without notes"),
        [] {
            const bool there = upperGrid()->currentRow() == kOtherRow;
            return unless(there && popup() == nullptr, QStringLiteral("a popup is in the way"));
        },
        [] { clickRow(Qt::LeftButton); });
    script.step(
        QStringLiteral(
            "Staying on the customer shows the note and leaves the keyboard to the host"),
        [] {
            const auto* list = shown<QTableWidget>(QStringLiteral("flxThis"));
            if (list == nullptr || list->rowCount() != 3 || list->item(1, 0)->text() != kSubject) {
                return QStringLiteral("the popup does not show the note");
            }
            const QWidget* focused = QApplication::focusWidget();
            return unless(focused != nullptr && upperGrid()->isAncestorOf(focused),
                          QStringLiteral("the grid has lost the keyboard"));
        },
        [] { hoverRow(); });
    script.step(
        QStringLiteral("The tool-tip of the marked row names the note"),
        [] {
            return unless(QToolTip::isVisible() && QToolTip::text().contains(kSubject),
                          QStringLiteral("there is no tool-tip with the note's subject"));
        },
        [] {
            QToolTip::hideText();
            press(Qt::Key_Down);
        });
    script.step(
        QStringLiteral("Moving on takes the popup away"),
        [] {
            const bool moved = upperGrid()->currentRow() == kRow + 1;
            return unless(moved && popup() == nullptr, QStringLiteral("the popup is still there"));
        },
        [] {});
}

void addClosing(Script& script, DeskWindow& desk, const QString& title) {
    script.step(
        title,
        [] {
            return notesWindow() == nullptr ? rowIsMarked(true)
                                            : QStringLiteral("the notes window is still there");
        },
        [&desk] { desk.close(); });
}

void addFindingNote(Script& script) {
    script.step(
        QStringLiteral("The note is there again, bold word included"),
        [] {
            const ListView* list = notesList();
            if (list == nullptr || list->items().rowCount() != 1 ||
                list->items().text(list->items().keyAt(0), 1) != kSubject) {
                return QStringLiteral("the note is not in the list");
            }
            return wordIsBold(QStringLiteral("blue"));
        },
        [] { press(Qt::Key_Escape); });
}

int runPart(int part, const QString& out, int firstNumber) {
    ProgramServices program;
    DeskOptions options;
    options.start.folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/tour";
    options.start.userCode = QStringLiteral("ANNA");
    DeskWindow desk(program.services, options);

    Script script(out, firstNumber);
    addOpening(script, desk, part == 1);
    addChoosingCustomer(script, part == 2);
    if (part == 1) {
        addWritingNote(script);
        addLanding(script);
        addClosing(script, desk, QStringLiteral("The host is closed"));
    } else {
        addFindingNote(script);
        addClosing(script, desk, QStringLiteral("The tour ends where it began"));
    }
    QObject::connect(&script, &Script::finished, qApp, [] { QApplication::exit(0); });
    QObject::connect(&script, &Script::failed, qApp, [] { std::_Exit(1); });
    QApplication::setQuitOnLastWindowClosed(false);
    script.start();
    const int status = QApplication::exec();
    QTextStream(stdout) << "next " << script.nextNumber() << '\n';
    return status;
}

/// Runs a part in a process of its own; its lines pass through. The number of the next picture,
/// or 0 when a step failed.
int runProcess(int part, const QString& out, int firstNumber) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(),
                  {QStringLiteral("--out"), out, QStringLiteral("--part"), QString::number(part),
                   QStringLiteral("--from"), QString::number(firstNumber)});
    process.waitForFinished(-1);
    const QStringList lines =
        QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    int next = 0;
    for (const QString& line : lines) {
        if (line.startsWith(u"next ")) {
            next = QStringView(line).mid(5).toInt();
        } else {
            QTextStream(stdout) << line << '\n' << Qt::flush;
        }
    }
    const bool good = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    return good ? next : 0;
}

int runTour(const QString& out) {
    if (!QDir().mkpath(out)) {
        QTextStream(stderr) << "tour: the folder " << out << " cannot be made\n";
        return 1;
    }
    const int next = runProcess(1, out, 1);
    if (next == 0) {
        return 1;
    }
    QTextStream(stdout) << "-- the program was closed and is started again\n" << Qt::flush;
    return runProcess(2, out, next) > 0 ? 0 : 1;
}

} // namespace

} // namespace yrw::tour

int main(int argc, char** argv) {
    yrw::test::DrivenApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption out(QStringLiteral("out"), QStringLiteral("Folder for the pictures."),
                                 QStringLiteral("DIR"), QStringLiteral("."));
    const QCommandLineOption part(QStringLiteral("part"), QStringLiteral("Run one part, 1 or 2."),
                                  QStringLiteral("N"), QStringLiteral("0"));
    const QCommandLineOption from(QStringLiteral("from"), QStringLiteral("First picture's number."),
                                  QStringLiteral("N"), QStringLiteral("1"));
    parser.addOptions({out, part, from});
    parser.addHelpOption();
    parser.process(application);
    const int which = parser.value(part).toInt();
    if (which == 0) {
        return yrw::tour::runTour(parser.value(out));
    }
    if (!application.waitForReader()) {
        return 1;
    }
    if (qEnvironmentVariableIsSet("YRW_DARK")) {
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
        QPalette dark(QColor(0x35, 0x35, 0x35), QColor(0x2a, 0x2a, 0x2a));
        dark.setColor(QPalette::Highlight, QColor(0x30, 0x60, 0xb0));
        QApplication::setPalette(dark);
    }
    return yrw::tour::runPart(which, parser.value(out), parser.value(from).toInt());
}
