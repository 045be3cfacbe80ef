#include "platform/jet/reader/RowPipe.h"

#include <cerrno>

#include <unistd.h>

namespace yrw::jet {

namespace {
constexpr std::size_t kMany = 64U << 10U;
} // namespace

void RowPipe::begin(Message kind) {
    m_begin = m_waiting.size();
    m_waiting += static_cast<char>(kind);
    put(std::uint32_t(0));
}

void RowPipe::putName(std::string_view name) {
    put(static_cast<std::uint16_t>(name.size()));
    put(name);
}

void RowPipe::end() {
    const std::size_t length = m_waiting.size() - m_begin - kHeadSize;
    for (std::size_t i = 0; i < sizeof(std::uint32_t); ++i) {
        m_waiting[m_begin + 1 + i] = static_cast<char>((length >> (8 * i)) & 0xFFU);
    }
    if (m_waiting.size() >= kMany) {
        flush();
    }
}

void RowPipe::say(Message kind, unsigned char byte) {
    begin(kind);
    put(byte);
    end();
}

void RowPipe::say(Message kind) {
    begin(kind);
    end();
}

void RowPipe::flush() {
    std::string_view left(m_waiting);
    while (!left.empty()) {
        const ssize_t written = ::write(m_descriptor, left.data(), left.size());
        if (written < 0 && errno != EINTR) {
            ::_exit(1);
        }
        left.remove_prefix(written > 0 ? std::size_t(written) : 0);
    }
    m_waiting.clear();
}

} // namespace yrw::jet
