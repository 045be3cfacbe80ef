#pragma once

#include "notes_window/frmMain.h"
#include "platform/controls/ListView.h"
#include "platform/controls/StatusBar.h"
#include "platform/richtext/RichTextBox.h"
#include "platform/toolbar/Toolbar.h"
#include "tests/support/FakeAddIn.h"

#include <QApplication>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTextDocument>
#include <QTimer>
#include <QToolButton>

#include <memory>

namespace yrw::test {

/// A notes window over a real database, driven by keys and clicks.
class WindowFixture : public testing::Test {
protected:
    void SetUp() override { customer = store.hostRecord(QStringLiteral("cu"), 1); }
    void TearDown() override { close(); }

    void open(const Ref<IRecord>& owner, qint64 noteID = 0) {
        close();
        window = std::make_unique<frmMain>(store);
        window->Initialise(addIn, owner, noteID);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        window->activateWindow();
    }
    void close() {
        if (window) {
            window->unload();
            window.reset();
        }
    }
    /// What a crash does: the window is gone and its unloading never ran.
    void crash() { window.reset(); }
    /// Closes everything and opens it again from the file.
    void restart(qint64 noteID = 0) {
        close();
        store.closeDatabase();
        store.openNotes();
        open(customer, noteID);
    }

    [[nodiscard]] ListView& list() const {
        return *window->findChild<ListView*>(QStringLiteral("lsvMain"));
    }
    [[nodiscard]] RichTextBox& editor() const {
        return *window->findChild<RichTextBox*>(QStringLiteral("rtxMain"));
    }
    [[nodiscard]] Toolbar& toolbar() const {
        return *window->findChild<Toolbar*>(QStringLiteral("atbMain"));
    }
    [[nodiscard]] ITool& tool(const QString& key) const { return *toolbar().findTool(key); }
    [[nodiscard]] QStringList keys() const {
        QStringList all;
        for (int row = 0; row < list().items().rowCount(); ++row) {
            all.append(list().items().keyAt(row));
        }
        return all;
    }
    [[nodiscard]] QStringList texts(const QString& key) const {
        QStringList all;
        for (int column = 0; column < list().items().columnCount(); ++column) {
            all.append(list().items().text(key, column));
        }
        return all;
    }
    /// Presses a key wherever the keyboard is.
    void press(Qt::Key key, Qt::KeyboardModifiers shift = Qt::NoModifier) const {
        QWidget* const focus = window->focusWidget();
        QTest::keyClick(focus != nullptr ? focus : window.get(), key, shift);
    }
    void type(const QString& text) const {
        editor().setFocus();
        QTest::keyClicks(&editor(), text);
    }
    /// Clicks a tool in its docked band, or picks it from its pop-up band.
    void click(const QString& key) const {
        auto* button = toolbar().findChild<QToolButton*>(key);
        if (button != nullptr && button->isVisible()) {
            QTest::mouseClick(button, Qt::LeftButton);
        } else {
            toolbar().activate(key);
        }
    }
    void clickRow(const QString& key) const {
        const QModelIndex index = list().model()->index(list().items().rowOf(key), 0);
        QTest::mouseClick(list().viewport(), Qt::LeftButton, Qt::NoModifier,
                          list().visualRect(index).center());
    }
    /// Runs an action on the properties dialog as soon as it is on the screen. The key that opens
    /// it may be held back for a while.
    void whenDialogOpens(const std::function<void(QWidget&)>& action) {
        auto* const eyes = new QTimer(window.get());
        QObject::connect(eyes, &QTimer::timeout, eyes, [this, action, eyes] {
            if (QWidget* const dialog = QApplication::activeModalWidget();
                dialog != nullptr && dialog != window.get()) {
                eyes->stop();
                eyes->deleteLater();
                ++dialogs;
                action(*dialog);
            }
        });
        eyes->start(0);
    }
    static void clickIn(QWidget& dialog, const char* name) {
        auto* const button = dialog.findChild<QAbstractButton*>(QLatin1String(name));
        ASSERT_NE(button, nullptr) << name;
        button->click();
    }

    /// The stored row of a note, read afresh.
    [[nodiscard]] QVariant stored(qint64 id, const char* field) {
        return store.notesOf(customer)->Item(QVariant(id))->value(QLatin1String(field));
    }
    static qint64 idOf(const Ref<Note>& note) {
        return note->value(QStringLiteral("RecordID")).toLongLong();
    }
    static QString keyOf(const Ref<Note>& note) { return QStringLiteral("xn%1").arg(idOf(note)); }

    PromptScript script;
    TestStore store;
    Ref<FakeAddIn> addIn = make<FakeAddIn>(store, script);
    Ref<IRecord> customer;
    std::unique_ptr<frmMain> window;
    int dialogs = 0; ///< properties dialogs that came up
};

} // namespace yrw::test
