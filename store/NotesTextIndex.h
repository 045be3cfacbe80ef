#pragma once

#include "platform/dao/Database.h"
#include "platform/dao/TextIndex.h"

namespace yrw {

/// Names of the index and its parts.
[[nodiscard]] const dao::TextIndexNames& notesTextIndexNames();
/// The index that finds notes by the words of subject and text.
[[nodiscard]] std::unique_ptr<dao::TextIndex> notesTextIndex(const Ref<dao::Database>& database);

} // namespace yrw
