#include "platform/rtf/EmbeddedObject.h"
#include "platform/rtf/FileName.h"
#include "platform/rtf/Picture.h"
#include "platform/rtf/Reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

/// A name is one that any system takes, whatever stood in the object.
void checkName(const QString& name) {
    const QByteArray bytes = name.toUtf8();
    const bool clean = !bytes.isEmpty() && bytes.size() <= 255 && !bytes.contains('/') &&
                       !bytes.contains('\\') && !bytes.startsWith('.') && !bytes.contains('\0') &&
                       yrw::rtf::baseName(name) == name;
    if (!clean) {
        std::abort();
    }
}

} // namespace

/// No length inside an object makes its reader take more than there is.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView input(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto object = yrw::rtf::readObject(input);
    if (object && object->native.size() > input.size()) {
        std::abort();
    }
    if (object) {
        checkName(yrw::rtf::baseName(yrw::rtf::linkOf(*object)));
        if (const auto file = yrw::rtf::readPackage(object->native)) {
            checkName(file->label);
        }
    }
    if (const auto file = yrw::rtf::readPackage(input)) {
        checkName(file->label);
    }
    checkName(yrw::rtf::baseName(QString::fromUtf8(input)));
    (void)yrw::rtf::visibleText(input, 1252);
    (void)yrw::rtf::bitmapInMetafile(input);
    (void)yrw::rtf::objectOf(input);
    (void)yrw::rtf::pictureOf(input);
    return 0;
}
