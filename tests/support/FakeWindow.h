#pragma once

// The window of the fake host: two grids with their controllers, two toolbars and a status bar, all
// behind the contract, and calls that fail at random on demand.

#include "platform/controls/RecordGrid.h"
#include "platform/controls/StatusBar.h"
#include "platform/toolbar/Toolbar.h"
#include "tests/support/FakeHost.h"

#include "framework/HostObjects.h"

#include <QVBoxLayout>

#include <random>

namespace yrw::test {

/// Makes calls of the host fail: every one in `oneIn` on average; 0: none.
class Trouble {
public:
    unsigned oneIn = 0;
    int raised = 0; ///< how often it did

    explicit Trouble(unsigned seed = 1) : m_random(seed) {}
    void mayRaise() {
        if (oneIn != 0 && m_random() % oneIn == 0) {
            ++raised;
            throw AutomationError(kErrorInvalidOperation, QStringLiteral("Test host"),
                                  QStringLiteral("The host is in trouble"));
        }
    }

private:
    std::mt19937 m_random;
};

/// Controller of one grid; shows a kind of record of the host.
class FakeController final : public QObject, public IGridController {
public:
    FakeController(Trouble& trouble, QWidget* parent)
        : QObject(parent), grid(new RecordGrid(parent)), m_trouble(trouble) {}

    /// Loads a layout of that name with these columns, and shows a kind of record in it.
    void show(FakeHostApplication& host, const QString& objectKey, const QString& layout,
              const QList<GridColumn>& columns) {
        object = host.ObjectDefinition(objectKey)->Collection();
        layoutName = layout;
        grid->setColumns(columns);
        AfterLayoutLoad.raise();
        RecordsetRequest request;
        request.CursorType = dao::RecordsetType::Dynaset;
        setRecordset(object->Recordset(request));
    }
    void setRecordset(const Ref<dao::Recordset>& recordset) {
        grid->setRecordset(recordset);
        AfterRecordsetChange.raise(recordset);
    }
    /// Place of the row with that record id; a null one when it is not shown.
    [[nodiscard]] dao::Bookmark placeOf(qint64 recordID) const {
        const Ref<dao::Recordset> rows = grid->recordset()->Clone();
        for (rows->MoveFirst(); !rows->AtEof(); rows->MoveNext()) {
            if (rows->value(u"RecordID").toLongLong() == recordID) {
                return rows->Bookmark();
            }
        }
        return {};
    }

    RecordGrid* const grid;
    Ref<ICollection> object;
    QString layoutName;
    bool isBusy = false;

    [[nodiscard]] QObject* asQObject() override { return this; }
    [[nodiscard]] IRecordGrid* Grid() override {
        m_trouble.mayRaise();
        return grid;
    }
    [[nodiscard]] Ref<IRecord> CurrentRecord() override {
        m_trouble.mayRaise();
        const Ref<dao::Recordset> rows = grid->recordset();
        return object && rows && grid->currentRow() >= 0 && !rows->AtEof()
                   ? object->Item(rows->value(u"RecordID"))
                   : nullptr;
    }
    [[nodiscard]] Ref<ICollection> CurrentObject() override {
        m_trouble.mayRaise();
        return object;
    }
    [[nodiscard]] bool Busy() override {
        m_trouble.mayRaise();
        return isBusy;
    }
    [[nodiscard]] QString LayoutName() override {
        m_trouble.mayRaise();
        return layoutName;
    }
    [[nodiscard]] Ref<dao::Recordset> Recordset() override {
        m_trouble.mayRaise();
        return grid->recordset();
    }

private:
    Trouble& m_trouble;
};

/// The host's window and its component in one.
class FakeWindow final : public QWidget, public IHostInterface {
public:
    /// The component: a Qt object of its own, since the window is the interface's.
    class Component final : public QObject, public IHostComponent {
    public:
        explicit Component(FakeWindow& window) : QObject(&window), m_window(window) {}
        [[nodiscard]] QObject* asQObject() override { return this; }
        [[nodiscard]] IHostInterface* Interface() override { return ask(&m_window); }
        [[nodiscard]] IGridController* UpperController() override { return ask(m_window.upper); }
        [[nodiscard]] IGridController* LowerController() override { return ask(m_window.lower); }
        [[nodiscard]] Ref<IHostApplication> Application() override {
            m_window.trouble.mayRaise();
            return m_window.host;
        }
        [[nodiscard]] IToolbar* Toolbar() override { return ask(m_window.componentBar); }
        [[nodiscard]] IStatusBar* StatusBar() override { return ask(m_window.statusBar); }

    private:
        template <class T>
        T* ask(T* object) {
            m_window.trouble.mayRaise();
            return object;
        }
        FakeWindow& m_window;
    };

    explicit FakeWindow(Ref<FakeHostApplication> application, unsigned seed = 1)
        : trouble(seed), host(std::move(application)), componentBar(new yrw::Toolbar(this)),
          interfaceBar(new yrw::Toolbar(this)), statusBar(new yrw::StatusBar(this)),
          upper(new FakeController(trouble, this)), lower(new FakeController(trouble, this)),
          component(new Component(*this)) {
        auto* column = new QVBoxLayout(this);
        for (QWidget* part : std::initializer_list<QWidget*>{componentBar, interfaceBar,
                                                             upper->grid, lower->grid, statusBar}) {
            column->addWidget(part);
        }
        componentBar->addBand(QStringLiteral("bndMain"), false);
        interfaceBar->addBand(QStringLiteral("bndGrid"), true);
        resize(700, 500);
    }
    /// Customers above, with their record ids out of sight, and orders below.
    void showRecords() {
        upper->show(*host, QStringLiteral("cu"), QStringLiteral("Customers"),
                    {{QStringLiteral("RecordID"), QStringLiteral("Number")},
                     {QStringLiteral("CustomerName"), QStringLiteral("Name")}});
        lower->show(*host, QStringLiteral("or"), QStringLiteral("Orders"),
                    {{QStringLiteral("RecordID"), QStringLiteral("Number")},
                     {QStringLiteral("OrderNumber"), QStringLiteral("Order")},
                     {QStringLiteral("CustomerID"), QStringLiteral("Customer")}});
    }

    Trouble trouble;
    Ref<FakeHostApplication> host;
    yrw::Toolbar* const componentBar;
    yrw::Toolbar* const interfaceBar;
    yrw::StatusBar* const statusBar;
    FakeController* const upper;
    FakeController* const lower;
    Component* const component;
    QString status; ///< progress text on screen
    bool isActiveWindowOfUser = true;
    bool notesMayBeChecked = true;

    [[nodiscard]] QObject* asQObject() override { return this; }
    void ShowStatus(const QString& text) override {
        trouble.mayRaise();
        status = text;
    }
    [[nodiscard]] IGridController* CurrentController() override {
        trouble.mayRaise();
        return upper;
    }
    [[nodiscard]] QWidget* Window() override {
        trouble.mayRaise();
        return this;
    }
    [[nodiscard]] bool IsWindowActive() override {
        trouble.mayRaise();
        return isActiveWindowOfUser;
    }
    [[nodiscard]] bool CanCheckNotes() override {
        trouble.mayRaise();
        return notesMayBeChecked;
    }
    [[nodiscard]] IToolbar* Toolbar() override {
        trouble.mayRaise();
        return interfaceBar;
    }
    [[nodiscard]] QRect WindowRect() override {
        trouble.mayRaise();
        return frameGeometry();
    }
};

} // namespace yrw::test
