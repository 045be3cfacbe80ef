#pragma once

#include "platform/rtf/Reader.h"

namespace yrw::rtf {

inline Document readBytes(const QByteArray& rtf) {
    return read(QByteArrayView(rtf));
}

inline Document readText(const QString& rtf) {
    return read(QStringView(rtf));
}

} // namespace yrw::rtf
