#pragma once

#include "platform/jet/JetProtocol.h"

#include <string>
#include <string_view>

namespace yrw::jet {

/// Writes messages to a pipe, many in one go. Ends the process when nobody reads any more.
/// Lifetime: the process. Thread: one.
class RowPipe {
public:
    explicit RowPipe(int descriptor) : m_descriptor(descriptor) {}

    /// Begins a message; what is put then belongs to it, until `end`.
    void begin(Message kind);
    template <class T>
    void put(T number) {
        for (std::size_t i = 0; i < sizeof(T); ++i) {
            m_waiting += static_cast<char>((number >> (8 * i)) & T(0xFF));
        }
    }
    void put(std::string_view bytes) { m_waiting += bytes; }
    void putName(std::string_view name);
    void end();
    /// A message of one byte.
    void say(Message kind, unsigned char byte);
    /// A message of none.
    void say(Message kind);
    void flush();

private:
    int m_descriptor;
    std::string m_waiting;
    std::size_t m_begin = 0; ///< of the message that is being put together
};

} // namespace yrw::jet
