#include "cli/CommandLine.h"

#include "platform/clock/WallTime.h"

#include <QCommandLineParser>
#include <QRegularExpression>

#include <vector>

namespace yrw {

namespace {

struct OptionRow {
    const char* name;
    const char* valueName; ///< nothing: a switch
    const char* meaning;
};

struct CommandRow {
    const char* name;
    const char* argument; ///< nothing: it takes none
    const char* meaning;
    std::vector<OptionRow> options;
};

constexpr OptionRow kDataOption{"data", "DIR", "Folder of the host's data, with the notes"};
constexpr OptionRow kUserOption{"user", "CODE", "Code of the user who works; else the first"};
constexpr OptionRow kJsonOption{"json", nullptr, "Print JSON"};

std::vector<OptionRow> importOptions() {
    return {{"dry-run", nullptr, "Read all and report, write nothing"},
            {"report", "FILE", "Where the report goes; else standard output"},
            {"merge", nullptr, "Add to the notes that are there"},
            {"map-progid", "OLD=NEW", "A program id that has changed; may be repeated"},
            {"map-key", "OLD=NEW", "An object key that has changed; may be repeated"},
            {"map-user", "OLD=NEW", "Another code or number of a user; may be repeated"},
            {"code-page", "N", "Of the texts of version 3, where the file names a wrong one"}};
}

const std::vector<CommandRow>& commandTable() {
    static const std::vector<CommandRow> table{
        {"list",
         nullptr,
         "List notes",
         {{"owner", "KEY:ID", "Only those of this record"},
          {"system", nullptr, "Only those kept on no record"},
          {"status", "active|done|all", "Only those in this state (all)"},
          {"mine", nullptr, "Only those that the user wrote"},
          {"find", "TEXT", "Only those with this text in subject or body"},
          {"from", "DATE", "Only those dated then or later"},
          {"to", "DATE", "Only those dated then or earlier"},
          {"sort", "id|date|subject|author", "In which order (id)"}}},
        {"show",
         "ID",
         "Show a note",
         {{"text", nullptr, "Its plain text alone"}, {"rtf", nullptr, "Its rich text alone"}}},
        {"add",
         nullptr,
         "Add a note and print its id",
         {{"subject", "S", "Subject line, at most 255 characters"},
          {"text", "T", "Body as plain text"},
          {"rtf", "FILE", "Body as rich text; - is standard input"},
          {"owner", "KEY:ID", "Record that the note belongs to"},
          {"date", "DATE", "Date of the note; else now"},
          {"private", nullptr, "A private note"},
          {"auto-show", nullptr, "Shows by itself when its record is reached"},
          {"remind", "me|group|everyone|users:CODE,CODE", "Who is reminded"},
          {"at", "DATE", "When"}}},
        {"done", "ID", "Finish a note", {}},
        {"reopen", "ID", "Make a finished note active again", {}},
        {"delete", "ID", "Delete a note with its reminders", {}},
        {"reminders",
         nullptr,
         "List reminders",
         {{"due", nullptr, "Only the user's own that are due now"},
          {"note", "ID", "Only those of this note"}}},
        {"check",
         nullptr,
         "Check the database",
         {{"fix", nullptr, "Repair what can be repaired, after a copy"}}},
        {"export",
         nullptr,
         "Export all notes",
         {{"format", "json|csv|html|ics", "What to write"},
          {"output", "FILE", "Where to; else standard output"}}},
        {"backup", "FILE", "Copy the notes database while others work with it", {}},
        {"import", "OLD.mdb", "Import notes of the older format", importOptions()},
        {"rtf",
         "FILE",
         "Convert rich text; - is standard input",
         {{"to", "text|html|rtf", "What to write (text)"}}},
    };
    return table;
}

QStringList commandNames() {
    QStringList names;
    for (const CommandRow& row : commandTable()) {
        names += QLatin1String(row.name);
    }
    return names;
}

void addOption(QCommandLineParser& parser, const OptionRow& row) {
    QCommandLineOption option(QLatin1String(row.name), QString::fromLatin1(row.meaning));
    if (row.valueName != nullptr) {
        option.setValueName(QString::fromLatin1(row.valueName));
    }
    parser.addOption(option);
}

/// A parser of the options that go with every command, and help and version.
void addCommonOptions(QCommandLineParser& parser) {
    for (const OptionRow& row : {kDataOption, kUserOption, kJsonOption}) {
        addOption(parser, row);
    }
    parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this")});
    parser.addOption(
        {{QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Show the version")});
}

/// Position of the command's name among the arguments, 0 when there is none.
qsizetype commandPosition(const QStringList& arguments) {
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        if (!argument.startsWith(u'-')) {
            return i;
        }
        if (argument == u"--data" || argument == u"--user") {
            ++i; // its value
        }
    }
    return 0;
}

QString helpText(const QCommandLineParser& parser, const CommandRow* command) {
    QString text = parser.helpText();
    if (command == nullptr) {
        text += QStringLiteral("\nCommands:\n");
        for (const CommandRow& row : commandTable()) {
            text += QStringLiteral("  %1 %2\n")
                        .arg(QLatin1String(row.name), -10)
                        .arg(QLatin1String(row.meaning));
        }
        text += QStringLiteral("\n\"yrwnotes COMMAND --help\" shows the options of a command.\n");
    }
    return text;
}

QString versionText() {
    return QStringLiteral("yrwnotes %1.%2.%3\n")
        .arg(YRW_VERSION_MAJOR)
        .arg(YRW_VERSION_MINOR)
        .arg(YRW_VERSION_REVISION);
}

/// The command that the arguments name; nothing when they name none. Raises for an unknown one.
const CommandRow* commandIn(const QStringList& arguments) {
    const qsizetype position = commandPosition(arguments);
    if (position == 0) {
        return nullptr;
    }
    const QString& name = arguments.at(position);
    for (const CommandRow& row : commandTable()) {
        if (name == QLatin1String(row.name)) {
            return &row;
        }
    }
    throw UsageError(QStringLiteral("There is no command '%1'. The commands are %2.")
                         .arg(name, commandNames().join(QStringLiteral(", "))));
}

/// Tells the parser what a command takes; nothing: what goes with every command.
void describe(QCommandLineParser& parser, const CommandRow* command) {
    parser.setApplicationDescription(QStringLiteral("Notes and reminders from a shell."));
    addCommonOptions(parser);
    if (command == nullptr) {
        parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("What to do"),
                                     QStringLiteral("COMMAND"));
        return;
    }
    const QString name = QString::fromLatin1(command->name);
    parser.addPositionalArgument(name, QString::fromLatin1(command->meaning), name);
    if (command->argument != nullptr) {
        parser.addPositionalArgument(QString::fromLatin1(command->argument), QString());
    }
    for (const OptionRow& option : command->options) {
        addOption(parser, option);
    }
}

/// The argument of the command beside its options; empty when it takes none.
QString argumentOf(const QCommandLineParser& parser, const CommandRow& command) {
    const QString name = QString::fromLatin1(command.name);
    const QStringList given = parser.positionalArguments().mid(1);
    if (command.argument == nullptr && !given.isEmpty()) {
        throw UsageError(QStringLiteral("'%1' takes no argument '%2'.").arg(name, given.first()));
    }
    if (command.argument != nullptr && given.size() != 1) {
        throw UsageError(QStringLiteral("'%1' takes one argument, %2.")
                             .arg(name, QLatin1String(command.argument)));
    }
    return given.value(0);
}

} // namespace

CommandLine::CommandLine(const QStringList& arguments) {
    const CommandRow* command = commandIn(arguments);
    QCommandLineParser parser;
    describe(parser, command);
    if (!parser.parse(arguments)) {
        throw UsageError(parser.errorText());
    }
    if (parser.isSet(QStringLiteral("help"))) {
        m_answer = helpText(parser, command);
        return;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        m_answer = versionText();
        return;
    }
    if (command == nullptr) {
        throw UsageError(QStringLiteral("No command was given. The commands are %1.")
                             .arg(commandNames().join(QStringLiteral(", "))));
    }
    m_command = QString::fromLatin1(command->name);
    m_argument = argumentOf(parser, *command);
    const QStringList names = parser.optionNames();
    for (const QString& option : names) {
        m_options.insert(option, parser.values(option));
    }
}

qint64 CommandLine::recordID() const {
    bool isNumber = false;
    const qint64 id = m_argument.toLongLong(&isNumber);
    if (!isNumber || id <= 0) {
        throw UsageError(QStringLiteral("'%1' is not the id of a note.").arg(m_argument));
    }
    return id;
}

QStringList CommandLine::values(const QString& option) const {
    return m_options.value(option);
}

QHash<QString, QString> CommandLine::map(const QString& option) const {
    QHash<QString, QString> map;
    const QStringList given = values(option);
    for (const QString& pair : given) {
        const qsizetype sign = pair.indexOf(u'=');
        if (sign <= 0 || sign == pair.size() - 1) {
            throw UsageError(QStringLiteral("--%1 takes OLD=NEW, not '%2'.").arg(option, pair));
        }
        map.insert(pair.left(sign), pair.mid(sign + 1));
    }
    return map;
}

int CommandLine::number(const QString& option) const {
    if (!isSet(option)) {
        return 0;
    }
    bool isNumber = false;
    const int number = value(option).toInt(&isNumber);
    if (!isNumber || number <= 0) {
        throw UsageError(
            QStringLiteral("--%1 takes a number, not '%2'.").arg(option, value(option)));
    }
    return number;
}

std::optional<WrittenDate> CommandLine::writtenDate(const QString& option) const {
    if (!isSet(option)) {
        return std::nullopt;
    }
    static const QRegularExpression pattern(
        QStringLiteral("^(\\d{4}-\\d\\d-\\d\\d)(?:[ T](\\d\\d:\\d\\d)(:\\d\\d)?)?$"));
    const QRegularExpressionMatch match = pattern.match(value(option).trimmed());
    WrittenDate written;
    written.date = QDate::fromString(match.captured(1), Qt::ISODate);
    written.time = QTime(0, 0);
    written.last = QTime(23, 59, 59);
    if (!match.captured(2).isEmpty()) {
        written.time = QTime::fromString(match.captured(2) + match.captured(3), Qt::ISODate);
        written.last = match.captured(3).isEmpty() ? written.time.addSecs(59) : written.time;
    }
    if (!written.date.isValid() || !written.time.isValid()) {
        throw UsageError(QStringLiteral("--%1 takes a date like \"2026-03-10 09:30\", not '%2'.")
                             .arg(option, value(option)));
    }
    return written;
}

std::optional<QDateTime> CommandLine::date(const QString& option) const {
    const std::optional<WrittenDate> written = writtenDate(option);
    return written ? std::optional(existingTime(written->date, written->time)) : std::nullopt;
}

std::optional<OwnerArgument> CommandLine::owner() const {
    const QString option = QStringLiteral("owner");
    if (!isSet(option)) {
        return std::nullopt;
    }
    static const QRegularExpression pattern(QStringLiteral("^([A-Za-z0-9_]+):([0-9]{1,18})$"));
    const QRegularExpressionMatch match = pattern.match(value(option));
    if (!match.hasMatch()) {
        throw UsageError(
            QStringLiteral("--owner takes KEY:ID like cu:12, not '%1'.").arg(value(option)));
    }
    return OwnerArgument{match.captured(1), match.captured(2).toLongLong()};
}

QString CommandLine::word(const QString& option, const QStringList& words,
                          const QString& defaultWord) const {
    const QString given = isSet(option) ? value(option) : defaultWord;
    if (!words.contains(given)) {
        throw UsageError(QStringLiteral("--%1 takes one of %2, not '%3'.")
                             .arg(option, words.join(QStringLiteral(", ")), given));
    }
    return given;
}

} // namespace yrw
