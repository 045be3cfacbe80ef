#pragma once

#include "platform/component/AutomationError.h"
#include "platform/prompt/Prompt.h"

#include <QVariant>

#include <functional>

namespace yrw {

/// Flags of the open-file dialog that change what it does; the rest only change how it looks.
inline constexpr int kOpenFileAllowSeveral = 0x200;

/// Small services that host and add-ins share: error reports and conversions.
/// Lifetime: one per composition root; given the prompt at creation, which outlives it.
/// Thread: the user-interface thread.
class HostUtility {
public:
    explicit HostUtility(Prompt& prompt);

    /// Somebody who is asked about each error before it is reported, and answers true for those
    /// that the user is told of in another way.
    using Teller = std::function<bool(const AutomationError&)>;
    void setTeller(Teller teller) { m_teller = std::move(teller); }

    /// Reports an error in one modal box: the message first, source and reason behind a button.
    void ReportError(const AutomationError& error, const QString& source, const QString& message,
                     const QString& title, const QString& text = {}) const;
    /// "True", "Yes", "On", "1", "-1" and any other number but 0 in any case are true; "False",
    /// "No", "Off", "0" are false; anything else gives the default.
    [[nodiscard]] static bool TextToBoolean(const QString& text, bool defaultValue);
    /// "True" or "False".
    [[nodiscard]] static QString BooleanToText(bool value);
    [[nodiscard]] static QString FolderOfPath(const QString& path);
    /// Null as empty text.
    [[nodiscard]] static QString NullToText(const QVariant& value);
    /// Null as false; any number but 0 is true.
    [[nodiscard]] static bool NullToBoolean(const QVariant& value);
    /// The number behind a key's prefix ("xn17" and "xn" give 17); 0 when it is none.
    [[nodiscard]] static qint64 RemoveKeyPrefix(const QString& key, const QString& prefix);
    /// Shows the open-file dialog; the first chosen path, empty when cancelled. It begins in the
    /// given folder; without one, where the last one ended.
    [[nodiscard]] QString OpenFile(const QString& promptText, const QString& title,
                                   const QString& filter, int flags,
                                   const QString& folder = {}) const;

private:
    Prompt& m_prompt;
    Teller m_teller;
};

} // namespace yrw
