// The notes window with 100,000 notes: opened and painted against the same list made of item
// widgets, sorted by each column, and searched while one types.
//
// bench_window [NOTES]
#include "notes_window/NoteTexts.h"
#include "notes_window/frmMain.h"
#include "platform/controls/ListView.h"
#include "store/NotesTextIndex.h"
#include "tests/support/FakeAddIn.h"

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QTreeWidget>

#include <malloc.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

using namespace yrw;
using namespace yrw::test;

namespace {

double wallMs() {
    return double(std::chrono::duration_cast<std::chrono::microseconds>(
                      std::chrono::steady_clock::now().time_since_epoch())
                      .count()) /
           1000;
}

/// Processor time of the process: what others do on the machine does not count.
double busyMs() {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

double heapMegabytes() {
    const struct mallinfo2 heap = mallinfo2();
    return double(heap.uordblks + heap.hblkhd) / (1024.0 * 1024.0);
}

void addNotes(TestStore& store, const Ref<IRecord>& owner, int count) {
    store.addNote(QStringLiteral("Call about order 000000"), owner);
    store.database()->RunScript(
        QStringLiteral(
            "INSERT INTO tblNotes(Subject, Status, AutomaticallyShow, OwnerComponentProgID, "
            "OwnerProgID, OwnerObjectKey, OwnerRecordID, RecordUserID, RecordUserCode, Date, "
            "ReminderType, PlainNote) "
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "
            "SELECT printf('%s about order %06d', CASE i % 3 WHEN 0 THEN 'Call' WHEN 1 THEN "
            "'Letter' ELSE 'Visit' END, i), 1, i % 2, OwnerComponentProgID, OwnerProgID, "
            "OwnerObjectKey, OwnerRecordID, 1 + i % 2, CASE i % 2 WHEN 0 THEN 'ANNA' ELSE 'BEN' "
            "END, datetime('2020-01-01', (i * 7919 % 3000000) || ' minutes'), i % 5 = 0, "
            "printf('They asked for the M\u00fcller contract %d and the invoice of %d pieces; the "
            "delivery is promised for week %d. Ask the warehouse whether item %x is there, and "
            "call back before noon.', i * 31 % 9973, i % 400, i % 52, i * 2654435761 % 1048576) "
            "FROM n, tblNotes")
            .arg(count - 1));
}

struct Cost {
    double ms = 0;    ///< to painted
    double allMs = 0; ///< until every text is held
    double megabytes = 0;
};

template <class Open>
Cost measure(Open open) {
    Cost least{1e9, 1e9, 1e9};
    for (int i = 0; i < 3; ++i) {
        const double memory = heapMegabytes();
        const double start = busyMs();
        const std::unique_ptr<QWidget> window = open();
        window->grab();
        least.ms = std::min(least.ms, busyMs() - start);
        if (auto* const list = window->findChild<ListView*>()) {
            while (list->items().missing() > 0) {
                QApplication::processEvents();
            }
        }
        least.allMs = std::min(least.allMs, busyMs() - start);
        least.megabytes = std::min(least.megabytes, heapMegabytes() - memory);
        if (auto* const form = dynamic_cast<Form*>(window.get())) {
            form->unload();
        }
    }
    return least;
}

/// The list as the window reads it, without anything shown.
template <class Each>
void readList(TestStore& store, const Ref<IRecord>& owner, Each each) {
    RecordsetRequest request;
    request.CursorType = dao::RecordsetType::ForwardOnly;
    request.RecordsetOptions = dao::kReadOnlyOption;
    request.CustomOptions = kNotesActive;
    const Ref<dao::Recordset> rows = store.notesOf(owner)->Recordset(request);
    const int columns[] = {
        rows->FieldIndex(u"RecordID"),     rows->FieldIndex(u"Date"),
        rows->FieldIndex(u"Subject"),      rows->FieldIndex(u"AutomaticallyShow"),
        rows->FieldIndex(u"ReminderType"), rows->FieldIndex(u"RecordUserCode")};
    for (; !rows->AtEof(); rows->MoveNext()) {
        each(noteItemKey(rows->value(columns[0]).toLongLong()),
             QStringList{noteDateText(rows->value(columns[1]).toDateTime()),
                         rows->value(columns[2]).toString(), QStringLiteral("Active"),
                         rows->value(columns[3]).toBool() ? QStringLiteral("Y")
                                                          : QStringLiteral("N"),
                         rows->value(columns[5]).toString()},
             rows->value(columns[4]).toInt() != 0);
    }
    rows->Close();
}

std::unique_ptr<QWidget> itemWidgets(TestStore& store, const Ref<IRecord>& owner) {
    auto tree = std::make_unique<QTreeWidget>();
    tree->setColumnCount(5);
    tree->setRootIsDecorated(false);
    tree->resize(860, 620);
    QFont bold;
    bold.setBold(true);
    readList(store, owner, [&](const QString& key, const QStringList& texts, bool reminded) {
        auto* const item = new QTreeWidgetItem(tree.get(), texts);
        item->setData(0, Qt::UserRole, key);
        for (int column = 0; reminded && column < texts.size(); ++column) {
            item->setFont(column, bold);
            item->setForeground(column, QColor(0, 128, 0));
        }
    });
    tree->show();
    return tree;
}

void benchOpening(TestStore& store, FakeAddIn& addIn, const Ref<IRecord>& owner) {
    double reading = 1e9;
    for (int i = 0; i < 3; ++i) {
        const double start = busyMs();
        readList(store, owner, [](const QString&, const QStringList&, bool) {});
        reading = std::min(reading, busyMs() - start);
    }
    const Cost items = measure([&] { return itemWidgets(store, owner); });
    const Cost window = measure([&] {
        auto form = std::make_unique<frmMain>(store);
        form->Initialise(Ref<INotesParent>(&addIn), owner, 0);
        form->show();
        return form;
    });
    std::printf("opened and painted: window %.0f ms (every text held: %.0f ms), %.0f MB; item "
                "widgets %.0f ms, %.0f MB; reading alone %.0f ms\n",
                window.ms, window.allMs, window.megabytes, items.ms, items.megabytes, reading);
    std::printf("  ratio %.2f (0.35), until every text is held %.2f, memory with all texts %.2f "
                "(0.33)\n",
                window.ms / items.ms, window.allMs / items.ms, window.megabytes / items.megabytes);
}

/// The longest of sorting a column upwards and downwards, with painting.
template <class Sort>
double sortedMs(QWidget& viewport, Sort sort) {
    double longest = 0;
    for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
        const double start = busyMs();
        sort(order);
        viewport.repaint();
        longest = std::max(longest, busyMs() - start);
    }
    return longest;
}

void benchSorting(frmMain& form, QTreeWidget& items) {
    auto* const list = form.findChild<ListView*>(QStringLiteral("lsvMain"));
    Q_EMIT list->columnClick(1); // another order than that of any column but this
    for (int column = 0; column < list->items().columnCount(); ++column) {
        const double ours = sortedMs(*list->viewport(), [&](Qt::SortOrder) {
            Q_EMIT list->columnClick(column); // what a click on the header raises
        });
        const double theirs = sortedMs(
            *items.viewport(), [&](Qt::SortOrder order) { items.sortItems(column, order); });
        std::printf("sorted by %-6s and painted: %.0f ms, item widgets %.0f ms, ratio %.2f\n",
                    qPrintable(list->model()->headerData(column, Qt::Horizontal).toString()), ours,
                    theirs, ours / theirs);
    }
}

void benchIndex(TestStore& store) {
    const auto size = [&store] { return double(QFileInfo(store.notesPath()).size()) / 1e6; };
    const double before = size();
    const double start = wallMs();
    const auto index = notesTextIndex(store.database());
    double longest = 0;
    for (bool left = true; left;) {
        const double slice = wallMs();
        left = index->catchUp(20);
        longest = std::max(longest, wallMs() - slice);
    }
    std::printf("all notes taken into the index: %.0f ms, longest slice %.0f ms, file %.0f -> "
                "%.0f MB\n",
                wallMs() - start, longest, before, size());
}

/// Types into the find bar key by key: how much work each key is until hits are painted, and how
/// long until all of them are.
void benchFinding(frmMain& form, const QString& typed) {
    auto* const field = form.findChild<QLineEdit*>(QStringLiteral("txtFind"));
    auto* const list = form.findChild<ListView*>(QStringLiteral("lsvMain"));
    auto* const found = form.findChild<QLabel*>(QStringLiteral("lblFound"));
    field->clear();
    QApplication::processEvents();
    for (qsizetype i = 0; i < typed.size(); ++i) {
        const double start = wallMs();
        const double busy = busyMs();
        QTest::keyClick(field, typed[i].toLatin1());
        list->viewport()->repaint();
        const double first = busyMs() - busy;
        while (found->text().contains(QStringLiteral("so far"))) {
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        const double all = wallMs() - start;
        list->viewport()->repaint();
        std::printf("  %-14s first hits %5.1f ms of work, all %5.1f ms: %s\n",
                    qPrintable(u'"' + typed.left(i + 1) + u'"'), first, all,
                    qPrintable(found->text()));
    }
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const int notes = argc > 1 ? std::max(1, atoi(argv[1])) : 100'000;
    PromptScript script;
    // By the system's time: slices of work end by it.
    TestStore store(QString(), &Clock::instance());
    const Ref<IRecord> owner = store.hostRecord(QStringLiteral("cu"), 1);
    addNotes(store, owner, notes);
    const Ref<FakeAddIn> addIn = make<FakeAddIn>(store, script);
    benchOpening(store, *addIn, owner);
    frmMain form(store);
    form.Initialise(addIn, owner, 0);
    form.show();
    benchSorting(form, dynamic_cast<QTreeWidget&>(*itemWidgets(store, owner)));
    std::printf("finding while nothing is in the index:\n");
    QTest::keyClick(&form, Qt::Key_F, Qt::ControlModifier);
    benchFinding(form, QStringLiteral("order 09999"));
    benchIndex(store);
    std::printf("finding by the index:\n");
    for (const char* typed : {"order 09999", "muller 998", "warehouse", "xyz", "a b"}) {
        benchFinding(form, QLatin1String(typed));
    }
    form.unload();
    return 0;
}
