#include "platform/rtf/Reader.h"
#include "platform/rtf/Writer.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Whatever is read, what is written from it is whole and reads as the same text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto first = yrw::rtf::read(QByteArrayView(input));
    const QByteArray written = yrw::rtf::write(first);
    const auto second = yrw::rtf::read(QByteArrayView(written));
    if (second.incomplete || second.plainText() != first.plainText()) {
        std::abort();
    }
    return 0;
}
