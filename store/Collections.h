#pragma once

#include "framework/CollectionBase.h"
#include "store/Schema.h"
#include "store/StoreContext.h"

namespace yrw {

class Reminders;

/// One note. Lifetime: counted. Thread: the user-interface thread.
class Note final : public RecordBase {
public:
    Note();
    /// This note's reminders, as a fresh collection.
    [[nodiscard]] Ref<yrw::Reminders> Reminders();
    [[nodiscard]] Ref<IRecord> Reminder(const QVariant& recordID);
    /// True when the note is finished.
    [[nodiscard]] bool Done();
    /// Finishes the note or makes it active again; stored at once.
    void setDone(bool done);
    [[nodiscard]] qint64 NumberOfReminders();
    /// Deletes this note's reminders; how many there were.
    qint64 DeleteReminders();
};

/// The notes of a host record (its parent), or those kept on no record.
class Notes final : public CollectionBase {
public:
    explicit Notes(StoreContext& context);

    /// The note with that key. Raises as `Item`.
    [[nodiscard]] Ref<Note> note(const QVariant& recordID);

protected:
    [[nodiscard]] Ref<IRecord> newRecord() const override;
    [[nodiscard]] QStringList conditions(const RecordsetRequest& request) const override;

private:
    StoreContext& m_context;
};

/// One reminder of a note to one user.
class Reminder final : public RecordBase {
public:
    Reminder();
};

/// The reminders of a note (its parent), or all.
class Reminders final : public CollectionBase {
public:
    Reminders();

protected:
    [[nodiscard]] Ref<IRecord> newRecord() const override;
    [[nodiscard]] QStringList conditions(const RecordsetRequest& request) const override;
};

/// The row of system settings.
class SystemSetting final : public RecordBase {
public:
    SystemSetting();
};

/// The system settings: always the whole table, so that any key gives its first row.
class SystemSettings final : public CollectionBase {
public:
    SystemSettings();

protected:
    [[nodiscard]] Ref<IRecord> newRecord() const override;
    [[nodiscard]] bool selectsByKey() const override { return false; }
};

} // namespace yrw
