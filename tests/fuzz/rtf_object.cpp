#include "platform/rtf/EmbeddedObject.h"
#include "platform/rtf/Metafile.h"
#include "platform/rtf/Picture.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// No length inside an object makes its reader take more than there is.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto object = yrw::rtf::readObject(input);
    if (object && object->native.size() > input.size()) {
        std::abort();
    }
    if (object) {
        (void)yrw::rtf::readPackage(object->native);
    }
    (void)yrw::rtf::readPackage(input);
    (void)yrw::rtf::bitmapInMetafile(input);
    (void)yrw::rtf::objectOf(input);
    (void)yrw::rtf::pictureOf(input);
    return 0;
}
