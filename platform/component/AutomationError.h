#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

namespace yrw {

/// The base above which objects number their own errors.
inline constexpr int kObjectErrorBase = static_cast<int>(0x80040000U);

/// Numbers of automation errors. The first group is raised by the store's objects and lies above
/// `kObjectErrorBase`; the second is the runtime's own; the third is the data layer's.
enum ErrorNumber : int {
    kErrorNotSupported = kObjectErrorBase + 2000,
    kErrorRecordNotFound = kObjectErrorBase + 3001,
    kErrorFieldNotFound = kObjectErrorBase + 3003,

    kErrorObjectRequired = 424,
    kErrorMemberNotFound = 438,
    kErrorCannotCreateObject = 429,
    kErrorOverflow = 6,

    kErrorDatabaseEngine = 3146,     ///< the engine refused; its words are in the description
    kErrorNoCurrentRecord = 3021,    ///< no row under the cursor
    kErrorNotInCollection = 3265,    ///< no such table, query, field or index
    kErrorObjectClosed = 3420,       ///< the object was closed
    kErrorReadOnly = 3027,           ///< the recordset or the database is read-only
    kErrorNoEdit = 3020,             ///< Update without AddNew or Edit
    kErrorNotBookmarkable = 3159,    ///< not a valid bookmark, or bookmarks are not supported
    kErrorConflict = 3197,           ///< a field was changed by another user since it was read
    kErrorLocked = 3260,             ///< the database stayed locked by somebody else
    kErrorBadCondition = 3075,       ///< a condition outside the accepted grammar
    kErrorCannotOpenDatabase = 3024, ///< the file is missing or cannot be opened
    kErrorNotADatabase = 3343,       ///< the file is not a database, or is damaged
    kErrorNewerSchema = 3800,        ///< the database was made by a newer version
    kErrorFileReplaced = 3801,       ///< another file, or none, lies where the open database was
    kErrorDiskFull = 3183,           ///< no space in the database's folder, or its write failed
    kErrorTypeMismatch = 3421,       ///< a value that does not convert to its field's type
    kErrorFieldTooSmall = 3163,      ///< a text longer than its field
    kErrorInvalidOperation = 3219,   ///< not possible for this kind of recordset

    // Files other than the database.
    kErrorLayout = 3802,    ///< a toolbar layout is missing or cannot be understood
    kErrorFileCopy = 3803,  ///< a file could not be copied
    kErrorFileRead = 3804,  ///< a file could not be read
    kErrorFileWrite = 3805, ///< a file could not be written
};

/// The one error type: a number, the place that raised it and a text for the user.
///
/// Thrown by value and caught by reference, also across the border between host and component.
class AutomationError : public std::exception {
public:
    AutomationError(int number, QString source, QString description);
    ~AutomationError() override;

    [[nodiscard]] int number() const noexcept { return m_number; }
    [[nodiscard]] const QString& source() const noexcept { return m_source; }
    [[nodiscard]] const QString& description() const noexcept { return m_description; }
    [[nodiscard]] const char* what() const noexcept override;

private:
    int m_number;
    QString m_source;
    QString m_description;
    QByteArray m_what;
};

/// Turns the exception being handled into an `AutomationError`; call only inside a catch block.
[[nodiscard]] AutomationError currentError();

} // namespace yrw
