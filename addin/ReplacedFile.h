#pragma once

#include "platform/dao/Database.h"

namespace yrw {

class Prompt;

/// Notices that another file, or none, has come to lie where the open notes database was, and
/// offers what is there now.
///
/// Lifetime: a member of its `AddIn`. Thread: the user-interface thread.
class ReplacedFile {
public:
    /// True when the database was replaced and the user wants what is there now. Who has said no
    /// is asked again only with `again`.
    [[nodiscard]] bool isToBeLeft(const Ref<dao::Database>& database, Prompt& prompt, bool again);
    /// A database was opened.
    void forget() noexcept { m_declined = false; }

private:
    bool m_declined = false;
};

} // namespace yrw
