#pragma once

#include <QDateTime>
#include <QHash>
#include <QStringList>

#include <optional>
#include <stdexcept>

namespace yrw {

/// Wrong use of the command; the text is for the user.
class UsageError final : public std::runtime_error {
public:
    explicit UsageError(const QString& text) : std::runtime_error(text.toStdString()) {}
};

/// A date as it was written: by the clock on the wall, perhaps one that the clocks leave out.
struct WrittenDate {
    QDate date;
    QTime time; ///< its beginning
    QTime last; ///< its last second: a day ends at 23:59:59
};

/// The record of the host that a note belongs to, as written: "KEY:ID".
struct OwnerArgument {
    QString objectKey;
    qint64 recordID = 0;
};

/// What the user asked for, checked against what the command takes.
class CommandLine {
public:
    /// Raises `UsageError`.
    explicit CommandLine(const QStringList& arguments);

    /// Name of the command; empty when only help or the version was asked for.
    [[nodiscard]] const QString& command() const noexcept { return m_command; }
    /// Text of the help or the version, when it was asked for.
    [[nodiscard]] const QString& answer() const noexcept { return m_answer; }
    [[nodiscard]] bool isSet(const QString& option) const { return m_options.contains(option); }
    /// Value of an option; empty when it was not given.
    [[nodiscard]] QString value(const QString& option) const {
        return m_options.value(option).value(m_options.value(option).size() - 1);
    }
    /// Values of an option that may be given more than once, in their order.
    [[nodiscard]] QStringList values(const QString& option) const;
    /// The one argument of the command that is no option.
    [[nodiscard]] const QString& argument() const noexcept { return m_argument; }

    // The same as values. All raise `UsageError` naming the option for what is none.

    /// What "OLD=NEW" of such an option maps.
    [[nodiscard]] QHash<QString, QString> map(const QString& option) const;
    /// A positive number; 0 when the option was not given.
    [[nodiscard]] int number(const QString& option) const;
    /// The argument as a record's key.
    [[nodiscard]] qint64 recordID() const;
    /// A date with or without a time; nothing when the option was not given.
    [[nodiscard]] std::optional<WrittenDate> writtenDate(const QString& option) const;
    /// Its beginning as a local time that there is; see `existingTime`.
    [[nodiscard]] std::optional<QDateTime> date(const QString& option) const;
    [[nodiscard]] std::optional<OwnerArgument> owner() const;
    /// The value of an option that must be one of the given words.
    [[nodiscard]] QString word(const QString& option, const QStringList& words,
                               const QString& defaultWord) const;

private:
    QString m_command;
    QString m_answer;
    QString m_argument;
    QHash<QString, QStringList> m_options;
};

} // namespace yrw
