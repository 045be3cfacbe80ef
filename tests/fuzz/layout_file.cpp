#include "platform/component/AutomationError.h"
#include "platform/toolbar/ToolbarLayout.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Any layout is read or refused by its one error, which names the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace yrw;
    const QByteArray json(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QString name = QStringLiteral("Menus.tb");
    try {
        for (const BandLayout& band : parseToolbarLayout(json, name)) {
            if (band.key.isEmpty()) {
                std::abort();
            }
        }
    } catch (const AutomationError& error) {
        if (error.number() != kErrorLayout || !error.description().startsWith(name)) {
            std::abort();
        }
    }
    return 0;
}
