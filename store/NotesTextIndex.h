#pragma once

#include "platform/dao/TextIndex.h"

namespace yrw {

/// The index that finds notes by the words of subject and text.
[[nodiscard]] std::unique_ptr<dao::TextIndex> notesTextIndex(const Ref<dao::Database>& database);

} // namespace yrw
