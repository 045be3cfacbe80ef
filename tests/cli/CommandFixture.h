#pragma once

#include "cli/Command.h"
#include "host/core/DeskDatabase.h"
#include "tests/support/NotesFixture.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace yrw::test {

/// How a command ended and what it wrote.
struct Outcome {
    ExitStatus status = kExitFailed;
    QString out;
    QString err;

    [[nodiscard]] QJsonArray json() const { return QJsonDocument::fromJson(out.toUtf8()).array(); }
    /// The values of one field of a printed array.
    [[nodiscard]] QStringList column(const QString& field) const {
        QStringList values;
        for (const QJsonValue& row : json()) {
            values += row.toObject().value(field).toVariant().toString();
        }
        return values;
    }
};

/// A data folder with a host's database of three customers and an empty notes database, and the
/// command over it.
class CommandFixture : public testing::Test {
protected:
    CommandFixture() {
        const Ref<dao::Workspace> workspace = dao::createWorkspace({clock, files});
        createDeskDatabase(*workspace, folder.path(), 3, clock.now().date());
        workspace->Close();
        createNotesDatabase(files, shippedTemplateFolder(), folder.path());
    }

    /// Runs the command as it is, with no options of its own.
    Outcome runBare(const QStringList& arguments, const QByteArray& input = {},
                    bool onTerminal = false) {
        QBuffer in;
        QBuffer out;
        QBuffer err;
        in.setData(input);
        in.open(QIODevice::ReadOnly);
        out.open(QIODevice::WriteOnly);
        err.open(QIODevice::WriteOnly);
        const ExitStatus status =
            runCommand(QStringList(QStringLiteral("yrwnotes")) + arguments,
                       {in, out, err, onTerminal, onTerminal},
                       {{running != nullptr ? *running : clock, files}, settings});
        return {status, QString::fromUtf8(out.data()), QString::fromUtf8(err.data())};
    }
    /// Runs the command over the data folder.
    Outcome run(const QStringList& arguments, const QByteArray& input = {}) {
        return runBare(QStringList{QStringLiteral("--data"), folder.path()} + arguments, input);
    }
    /// Runs words that are separated by blanks.
    Outcome run(const char* words) { return run(QString::fromUtf8(words).split(u' ')); }

    [[nodiscard]] QString notesPath() const { return folder.filePath(kNotesDatabaseName); }
    /// Runs a script on the notes database.
    void change(const char* script) {
        const Ref<dao::Workspace> workspace = dao::createWorkspace({clock, files});
        workspace->OpenDatabase(notesPath())->RunScript(QString::fromUtf8(script));
        workspace->Close();
    }

    static void write(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    /// The bytes of a file; none where it is not there.
    static QByteArray read(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir folder;
    Clock* running = nullptr; ///< instead of the one that stands
    ManualClock clock{QDateTime(QDate(2026, 3, 10), QTime(9, 0))};
    FileSystem files;
    SettingsStore settings{folder.filePath(QStringLiteral("settings"))};
};

} // namespace yrw::test
