#pragma once

// The window of the fake host: two grids with their controllers, two toolbars and a status bar, all
// behind the contract.

#include "platform/controls/RecordGrid.h"
#include "platform/controls/StatusBar.h"
#include "platform/toolbar/Toolbar.h"
#include "tests/support/FakeHost.h"

#include "framework/HostObjects.h"

#include <QVBoxLayout>

namespace yrw::test {

/// A toolbar whose bands may fail to be found.
class FakeToolbar final : public Toolbar {
public:
    FakeToolbar(Trouble& trouble, QWidget* parent) : Toolbar(parent), m_trouble(trouble) {}
    [[nodiscard]] IBand* findBand(const QString& key) const override {
        return m_trouble.gives(HostAnswer::Bands) ? Toolbar::findBand(key) : nullptr;
    }

private:
    Trouble& m_trouble;
};

/// A grid whose splits may fail to be given.
class FakeGrid final : public RecordGrid {
public:
    FakeGrid(Trouble& trouble, QWidget* parent) : RecordGrid(parent), m_trouble(trouble) {}
    [[nodiscard]] IGridSplits* Splits() override {
        return m_trouble.gives(HostAnswer::GridSplits) ? RecordGrid::Splits() : nullptr;
    }

private:
    Trouble& m_trouble;
};

/// Controller of one grid; shows a kind of record of the host.
class FakeController final : public QObject, public IGridController {
public:
    FakeController(Trouble& trouble, QWidget* parent)
        : QObject(parent), grid(new FakeGrid(trouble, parent)), m_trouble(trouble) {}

    /// Loads a layout of that name with these columns, and shows a kind of record in it.
    void show(FakeHostApplication& host, const QString& objectKey, const QString& layout,
              const QList<GridColumn>& columns) {
        object = host.collection(objectKey);
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
        return m_trouble.gives(HostAnswer::Grid) ? grid : nullptr;
    }
    [[nodiscard]] Ref<IRecord> CurrentRecord() override {
        const Ref<dao::Recordset> rows = grid->recordset();
        return m_trouble.gives(HostAnswer::CurrentRecord) && object && rows &&
                       grid->currentRow() >= 0 && !rows->AtEof()
                   ? object->Item(rows->value(u"RecordID"))
                   : nullptr;
    }
    [[nodiscard]] Ref<ICollection> CurrentObject() override {
        return m_trouble.gives(HostAnswer::CurrentObject) ? object : nullptr;
    }
    [[nodiscard]] bool Busy() override { return m_trouble.gives(HostAnswer::GridState) && isBusy; }
    [[nodiscard]] QString LayoutName() override {
        return m_trouble.gives(HostAnswer::GridState) ? layoutName : QString();
    }
    [[nodiscard]] Ref<dao::Recordset> Recordset() override {
        return m_trouble.gives(HostAnswer::GridRows) ? grid->recordset() : nullptr;
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
        [[nodiscard]] IHostInterface* Interface() override {
            return ask(HostAnswer::Interface, &m_window);
        }
        [[nodiscard]] IGridController* UpperController() override {
            return ask(HostAnswer::UpperController, m_window.upper);
        }
        [[nodiscard]] IGridController* LowerController() override {
            return ask(HostAnswer::LowerController, m_window.lower);
        }
        [[nodiscard]] Ref<IHostApplication> Application() override {
            return ask(HostAnswer::Application, m_window.host.get());
        }
        [[nodiscard]] IToolbar* Toolbar() override {
            return ask(HostAnswer::Toolbar, m_window.componentBar);
        }
        [[nodiscard]] IStatusBar* StatusBar() override {
            return ask(HostAnswer::StatusBar, m_window.statusBar);
        }

    private:
        template <class T>
        T* ask(HostAnswer answer, T* object) {
            return m_window.trouble.gives(answer) ? object : nullptr;
        }
        FakeWindow& m_window;
    };

    explicit FakeWindow(Ref<FakeHostApplication> application, unsigned seed = 1)
        : host(std::move(application)), trouble(host->trouble),
          componentBar(new FakeToolbar(trouble, this)),
          interfaceBar(new FakeToolbar(trouble, this)), statusBar(new yrw::StatusBar(this)),
          upper(new FakeController(trouble, this)), lower(new FakeController(trouble, this)),
          component(new Component(*this)) {
        trouble.seed(seed);
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

    Ref<FakeHostApplication> host;
    Trouble& trouble; ///< the host's
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
        status = trouble.gives(HostAnswer::Status) ? text : QString();
    }
    [[nodiscard]] IGridController* CurrentController() override {
        return trouble.gives(HostAnswer::CurrentController) ? upper : nullptr;
    }
    [[nodiscard]] QWidget* Window() override {
        return trouble.gives(HostAnswer::Window) ? this : nullptr;
    }
    [[nodiscard]] bool IsWindowActive() override {
        return trouble.gives(HostAnswer::WindowState) && isActiveWindowOfUser;
    }
    [[nodiscard]] bool CanCheckNotes() override {
        return trouble.gives(HostAnswer::WindowState) && notesMayBeChecked;
    }
    [[nodiscard]] IToolbar* Toolbar() override {
        return trouble.gives(HostAnswer::InterfaceToolbar) ? interfaceBar : nullptr;
    }
    [[nodiscard]] QRect WindowRect() override {
        return trouble.gives(HostAnswer::Window) ? frameGeometry() : QRect();
    }
};

} // namespace yrw::test
