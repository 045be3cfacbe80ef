#include "store/NotesContext.h"

namespace yrw {

NotesContext::~NotesContext() = default;

} // namespace yrw
