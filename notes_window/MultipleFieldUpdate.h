#pragma once

#include "framework/ErrorGuards.h"
#include "framework/IRecord.h"

namespace yrw {

/// A multiple-field update of a record; dropped at its end unless it was ended.
class MultipleFieldUpdate {
public:
    explicit MultipleFieldUpdate(IRecord& record) : m_record(record) {
        m_record.BeginMultipleFieldUpdate();
    }
    ~MultipleFieldUpdate() {
        if (m_record.InMultipleUpdate()) {
            ignoreErrors([this] { m_record.CancelMultipleFieldUpdate(); });
        }
    }
    MultipleFieldUpdate(const MultipleFieldUpdate&) = delete;
    MultipleFieldUpdate& operator=(const MultipleFieldUpdate&) = delete;

    void set(const QString& name, const QVariant& value) { m_record.Field(name)->setValue(value); }
    void end() { m_record.EndMultipleFieldUpdate(); }

private:
    IRecord& m_record;
};

} // namespace yrw
