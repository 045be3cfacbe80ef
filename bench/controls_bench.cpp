// Lists and grids against their plain counterparts, in one run: 100,000 rows in the list view and
// as item widgets (time and memory), a page of the grid with style handlers and without.
#include "platform/clock/Clock.h"
#include "platform/controls/ListView.h"
#include "platform/controls/RecordGrid.h"
#include "platform/dao/Database.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTreeWidget>

#include <malloc.h>

#include <ctime>
#include <map>

using namespace yrw;

namespace {

constexpr int kRows = 100'000;
constexpr int kColumns = 5;

std::map<std::string, double> results; ///< milliseconds or MB by name, for the ratios at the end

double heapMegabytes() {
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd) / (1024.0 * 1024.0);
}

QStringList textsOf(int row) {
    return {QStringLiteral("%1/06/2026 12:00").arg(row % 28 + 1, 2, 10, QLatin1Char('0')),
            QStringLiteral("Call about order %1").arg(row), QStringLiteral("Active"),
            QStringLiteral("N"), QStringLiteral("Anna Bell")};
}

void paintOnce(QWidget& widget) {
    widget.resize(900, 600);
    widget.show();
    widget.grab();
}

template <class Fill>
void measure(benchmark::State& state, const char* name, Fill fill) {
    double megabytes = 0;
    double seconds = 0;
    for (auto _ : state) {
        const double before = heapMegabytes();
        const std::clock_t start = std::clock(); // processor time: other work does not count
        const auto widget = fill();
        paintOnce(*widget);
        seconds += static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        megabytes = heapMegabytes() - before;
    }
    results[std::string(name) + " ms"] = seconds * 1000 / static_cast<double>(state.iterations());
    results[std::string(name) + " MB"] = megabytes;
    state.counters["MB"] = megabytes;
}

std::unique_ptr<ListView> filledList() {
    auto list = std::make_unique<ListView>();
    for (int column = 0; column < kColumns; ++column) {
        list->addColumn(QStringLiteral("Column"), QString::number(column), 2000);
    }
    QList<ListItem> items;
    items.reserve(kRows);
    for (int row = 0; row < kRows; ++row) {
        items.append({QStringLiteral("xn%1").arg(row), textsOf(row), row % 3 == 0, std::nullopt});
    }
    list->addItems(items);
    return list;
}

void listView(benchmark::State& state) {
    measure(state, "list", filledList);
}

void itemWidgets(benchmark::State& state) {
    measure(state, "items", [] {
        auto tree = std::make_unique<QTreeWidget>();
        tree->setColumnCount(kColumns);
        tree->setRootIsDecorated(false);
        QFont bold;
        bold.setBold(true);
        for (int row = 0; row < kRows; ++row) {
            auto* const item = new QTreeWidgetItem(tree.get(), textsOf(row));
            item->setData(0, Qt::UserRole, QStringLiteral("xn%1").arg(row));
            for (int column = 0; row % 3 == 0 && column < kColumns; ++column) {
                item->setFont(column, bold);
            }
        }
        return tree;
    });
}

void sortByColumn(benchmark::State& state) {
    const auto list = filledList();
    const auto column = static_cast<int>(state.range(0));
    list->sortBy(column, Qt::AscendingOrder);
    for (auto _ : state) {
        list->sortBy(column, list->sortOrder() == Qt::AscendingOrder ? Qt::DescendingOrder
                                                                     : Qt::AscendingOrder);
    }
}

/// A grid over many customers.
struct Desk {
    explicit Desk(int customers) {
        database = workspace->CreateDatabase(folder.filePath("Desk.mdb"));
        database->RunScript(
            QStringLiteral("CREATE TABLE tblCustomers (RecordID INTEGER PRIMARY KEY AUTOINCREMENT, "
                           "Name VARCHAR(255), Orders INTEGER); "
                           "INSERT INTO tblCustomers(Name, Orders) WITH RECURSIVE n(i) AS (SELECT "
                           "1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) SELECT 'Customer ' || i, "
                           "i % 7 FROM n;")
                .arg(customers));
        grid.setColumns({{"RecordID", "No"}, {"Name", "Name", 4000}, {"Orders", "Orders"}});
        grid.setRecordset(database->OpenRecordset("tblCustomers", dao::RecordsetType::Dynaset));
        grid.resize(900, 900);
        grid.show();
        QApplication::processEvents();
        body = grid.findChild<QWidget*>("gridBody(0)");
    }

    QTemporaryDir folder;
    FileSystem files;
    Ref<dao::Workspace> workspace = dao::createWorkspace({Clock::instance(), files});
    Ref<dao::Database> database;
    RecordGrid grid;
    QWidget* body = nullptr;
};

void gridPage(benchmark::State& state) {
    const bool styled = state.range(0) != 0;
    const bool million = state.range(1) != 0;
    Desk desk(million ? 1'000'000 : 10'000);
    desk.grid.setFetchRowStyle(0, styled);
    const Connection styling =
        desk.grid.FetchRowStyle.connect([](int, dao::Bookmark row, RowStyle& style) {
            if (row.place() % 3 == 0) {
                style.setBackColor(16761024);
            }
        });
    qint64 row = 0;
    for (auto _ : state) {
        row = (row + 37) % desk.grid.rowCount();
        desk.grid.setCurrentRow(row);
        desk.body->repaint();
    }
}

void printRatios() {
    std::printf("100,000 rows, list view / item widgets: time %.2f, memory %.2f\n",
                results["list ms"] / results["items ms"], results["list MB"] / results["items MB"]);
}

} // namespace

BENCHMARK(listView)->Unit(benchmark::kMillisecond);
BENCHMARK(itemWidgets)->Unit(benchmark::kMillisecond);
BENCHMARK(sortByColumn)->DenseRange(0, 1)->Unit(benchmark::kMillisecond);
BENCHMARK(gridPage)
    ->ArgNames({"styled", "million"})
    ->ArgsProduct({{0, 1}, {0, 1}})
    ->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    printRatios();
    return 0;
}
