#pragma once

#include "tests/notes_window/WindowFixture.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QLabel>
#include <QMenu>
#include <QRadioButton>
#include <QTemporaryDir>

namespace yrw::test {

/// A notes window driven by mouse and keys alone. What comes of it is read off as facts, one line
/// each, so that a table can say what a command does and a test sees whatever else it did.
class DrivenWindow : public WindowFixture {
protected:
    void SetUp() override {
        WindowFixture::SetUp();
        // A language with four words, and five to offer for a misspelt one.
        write("xx_YY.aff", "SET UTF-8\nTRY twpord\n");
        write("xx_YY.dic", "5\nword\nwood\ntrod\nprod\nrod\n");
        qputenv("DICPATH", m_folder.path().toUtf8());
        QObject::connect(&m_eyes, &QTimer::timeout, &m_eyes, [this] { look(); });
    }
    void TearDown() override {
        WindowFixture::TearDown();
        qunsetenv("DICPATH");
    }

    /// Opens the window on three notes, the first with one word that is marked and not saved; or on
    /// none.
    void start(bool withNotes = true) {
        close();
        store.database()->RunScript("DELETE FROM tblReminders; DELETE FROM tblNotes");
        for (const char* key : kSettings) {
            NotesSettings(addIn->settings()).remove(settingNamed(QString(QLatin1String(key))));
        }
        storeText(addIn->settings(), "SpellingLanguage", "xx_YY");
        for (int i = 1; withNotes && i <= 3; ++i) {
            store.addNote(QStringLiteral("Note %1").arg(i), customer);
        }
        open(customer);
        if (withNotes) {
            type("wrod");
            editor().selectAll();
        }
        script.asked.clear();
        addIn->calls.clear();
        m_seen.clear();
        QGuiApplication::clipboard()->setText("clip");
    }
    /// Puts the keyboard into a control by its name; the find bar is opened for its field.
    void focusOn(const QString& name) {
        if (name == "txtFind") {
            press(Qt::Key_F, Qt::ControlModifier);
            QTest::keyClicks(window->focusWidget(), "note");
        }
        window->findChild<QWidget*>(name)->setFocus();
    }
    /// Presses keys such as "Ctrl+Shift+D".
    void pressKeys(const QKeySequence& keys, int which = 0) const {
        const QKeyCombination key = keys[uint(which)];
        press(key.key(), key.keyboardModifiers());
    }
    /// Uses a tool where one of its bands shows it: clicks its button or picks it from the menu;
    /// picks the last entry of a combo.
    void use(const IBand& band, const QString& tool) {
        m_wanted = tool;
        if (band.key() == "bndNotePopup") {
            rightClick(*list().viewport(), list().viewport()->rect().bottomLeft() + QPoint(9, -9));
        } else if (band.key() == "bndTextPopup") {
            rightClick(*editor().viewport(), placeOfText());
        } else {
            const QString shown = band.isPopup() ? "tooView" : tool;
            auto* const control = toolbar().findChild<QWidget*>(shown);
            ASSERT_TRUE(control != nullptr && control->isVisible()) << shown.toStdString();
            QTest::mouseClick(control, Qt::LeftButton);
        }
    }
    /// Where the text begins.
    [[nodiscard]] QPoint placeOfText() const {
        return editor().cursorRect(QTextCursor(editor().document())).center() + QPoint(4, 0);
    }
    static void rightClick(QWidget& widget, const QPoint& place) {
        QTest::mouseClick(&widget, Qt::RightButton, {}, place);
    }
    /// Does something and tells what is new then, each fact once. Menus and dialogs that come up
    /// are closed.
    std::string newsOf(const std::function<void()>& act) {
        const QStringList before = facts();
        m_eyes.start(1);
        act();
        do {
            QCoreApplication::processEvents();
        } while (QApplication::activePopupWidget() != nullptr);
        m_eyes.stop();
        m_wanted.clear();
        QStringList after = facts();
        for (const QString& fact : before) {
            after.removeOne(fact);
        }
        QString news = after.join("; ").simplified();
        return (m_picked.isEmpty() ? news : news.replace(m_picked, "%entry")).toStdString();
    }

    QString write(const QString& name, const QByteArray& content) const {
        QFile out(m_folder.filePath(name));
        EXPECT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(content);
        return out.fileName();
    }

private:
    static constexpr std::array kSettings{"ShowUserNotes",   "CheckForReminders", "CheckAutoNotes",
                                          "ShowPopupWindow", "HighlightNotesRow", "FlagNotesRow",
                                          "PopupWindow-H",   "PopupWindow-W",     "DefaultFontName",
                                          "DefaultFontSize", "PasteKeepsLook",    "CheckSpelling"};

    QStringList facts() {
        QStringList all = m_seen + script.asked + addIn->calls;
        if (window->isUnloaded()) {
            return all << "closed";
        }
        QStringList rows;
        for (const QString& key : keys()) {
            rows.append(list().items().text(key, 1).section(' ', 1));
        }
        all << "rows " + rows.join(' ')
            << "note " + list().items().text(list().selectedKey(), 1).section(' ', 1)
            << "caption" + window->windowTitle().section("YRW Notes", 1)
            << "text '" + editor().Text() + '\''
            << "misspelt " + editor().misspellingAt(placeOfText()).selectedText();
        all += formats();
        all += stored();
        for (int i = 0; i < toolbar().bandCount(); ++i) {
            for (int j = 0; j < toolbar().bandAt(i)->toolCount(); ++j) {
                const ITool& each = *toolbar().bandAt(i)->toolAt(j);
                if (each.kind() == ToolKind::Check || each.kind() == ToolKind::Radio) {
                    all << each.key() + (each.isChecked() ? " on" : " off");
                }
            }
        }
        const auto* field = window->findChild<QLineEdit*>("txtFind");
        all << (field->isVisible() ? QString("find '" + field->text() + '\'') : QString("no find"))
            << "clipboard " + QGuiApplication::clipboard()->text()
            << "keys to " + (window->focusWidget() ? window->focusWidget()->objectName() : "none");
        return all;
    }
    QStringList formats() const {
        QStringList all;
        const auto add = [&all](const char* name, bool on) {
            all << (on ? QString(name) : QStringLiteral("not ") + name);
        };
        add("bold", editor().selection().bold().value_or(false));
        add("italic", editor().selection().italic().value_or(false));
        add("underlined", editor().selection().underline().value_or(false));
        add("bullets", editor().selection().bullet().value_or(false));
        all << QStringLiteral("aligned %1").arg(int(*editor().selection().alignment()))
            << QStringLiteral("indent %1").arg(*editor().selection().indent())
            << "font " + editor().selection().fontName().value_or("?")
            << QStringLiteral("colour %1").arg(editor().selection().colour().value_or(-1));
        return all;
    }
    QStringList stored() {
        QStringList all;
        const Ref<dao::Recordset> rows = store.database()->OpenRecordset("tblNotes");
        for (; !rows->AtEof(); rows->MoveNext()) {
            all << "stored " + rows->value(u"Subject").toString().section(' ', 1) + " '" +
                       rows->value(u"PlainNote").toString() +
                       (rows->value(u"Status").toInt() == 1 ? "'" : "' done");
        }
        for (const char* key : kSettings) {
            all << QLatin1String(key) + '=' +
                       storedText(addIn->settings(), QLatin1String(key), "none");
        }
        return all;
    }
    /// Picks what is wanted from an open menu; writes down and closes whatever else is open.
    void look() {
        QWidget* const popup = QApplication::activePopupWidget();
        QWidget* const dialog = QApplication::activeModalWidget();
        if (auto* const menu = qobject_cast<QMenu*>(popup)) {
            lookAt(*menu);
        } else if (popup != nullptr) {
            auto* const entries = popup->findChild<QAbstractItemView*>();
            QTest::keyClick(entries, Qt::Key_End);
            QTest::keyClick(entries, Qt::Key_Return);
        } else if (dialog != nullptr) {
            QStringList chosen{"dialog " + dialog->windowTitle()};
            for (const QRadioButton* button : dialog->findChildren<QRadioButton*>()) {
                chosen += button->isChecked() ? QString(button->text()).remove('&') : QString();
            }
            chosen.removeAll(QString());
            m_seen += chosen.join(' ');
            QTest::keyClick(dialog, Qt::Key_Escape);
        }
    }
    void lookAt(QMenu& menu) {
        const QString wanted = std::exchange(m_wanted, QString());
        if (QAction* const entry = menu.findChild<QAction*>(wanted); entry && !wanted.isEmpty()) {
            m_picked = wanted.startsWith("tooWord") ? entry->text() : QString();
            QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(entry).center());
        } else {
            m_seen += "menu " + menu.objectName();
        }
        menu.close();
    }

    QTemporaryDir m_folder;
    QTimer m_eyes;
    QString m_wanted;   ///< tool to pick from the next menu
    QString m_picked;   ///< caption of the word picked last
    QStringList m_seen; ///< menus and dialogs that came up
};

} // namespace yrw::test
