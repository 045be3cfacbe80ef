#pragma once

#include "platform/component/Event.h"

#include <QString>
#include <QStringList>

class QObject;

namespace yrw {

/// How a tool shows itself in its band.
enum class ToolStyle : int { IconOnly = 0, CaptionOnly = 1, IconAndCaption = 2 };

/// What a tool is.
enum class ToolKind : int { Button = 0, Check = 1, Radio = 2, Combo = 3 };

/// One tool of a band.
///
/// Tools do not toggle by themselves: whoever handles the click sets `setChecked`. A disabled
/// tool raises no click and its shortcut does nothing.
/// Lifetime: owned by its band; a reference is valid until the tool is removed.
/// Thread: the user-interface thread.
class ITool {
public:
    virtual ~ITool();
    [[nodiscard]] virtual int id() const = 0;
    [[nodiscard]] virtual QString key() const = 0;
    [[nodiscard]] virtual ToolKind kind() const = 0;
    virtual void setKind(ToolKind kind) = 0;
    /// Caption with '&' before the access key.
    [[nodiscard]] virtual QString caption() const = 0;
    virtual void setCaption(const QString& caption) = 0;
    virtual void setStyle(ToolStyle style) = 0;
    /// Name of an icon of the free desktop naming; empty for none.
    virtual void setIconName(const QString& name) = 0;
    virtual void setToolTip(const QString& text) = 0;
    /// Shortcut shown in menus and tool-tips; the form's key handling acts on it.
    virtual void setShortcutText(const QString& text) = 0;
    [[nodiscard]] virtual bool isChecked() const = 0;
    virtual void setChecked(bool checked) = 0;
    [[nodiscard]] virtual bool isEnabled() const = 0;
    virtual void setEnabled(bool enabled) = 0;
    [[nodiscard]] virtual bool isVisible() const = 0;
    virtual void setVisible(bool visible) = 0;
    /// True when the tool opens a new group: a separator stands before it.
    [[nodiscard]] virtual bool beginsGroup() const = 0;
    virtual void setBeginsGroup(bool begins) = 0;

    // Combo tools. The index counts from 1; 0 means that nothing is chosen. Setting text, list or
    // index in code raises no event.
    [[nodiscard]] virtual QString text() const = 0;
    virtual void setText(const QString& text) = 0;
    [[nodiscard]] virtual QStringList list() const = 0;
    virtual void setList(const QStringList& entries) = 0;
    [[nodiscard]] virtual int listIndex() const = 0;
    virtual void setListIndex(int index) = 0;
};

/// One band: a row of tools, or a pop-up menu of them.
class IBand {
public:
    virtual ~IBand();
    [[nodiscard]] virtual QString key() const = 0;
    [[nodiscard]] virtual QString caption() const = 0;
    virtual void setCaption(const QString& caption) = 0;
    /// A pop-up band is not docked; it opens as a menu.
    [[nodiscard]] virtual bool isPopup() const = 0;
    [[nodiscard]] virtual bool isEnabled() const = 0;
    /// Enables or disables every tool of the band.
    virtual void setEnabled(bool enabled) = 0;
    virtual void setVisible(bool visible) = 0;

    [[nodiscard]] virtual int toolCount() const = 0;
    /// 0-based; nothing outside the range.
    [[nodiscard]] virtual ITool* toolAt(int index) const = 0;
    [[nodiscard]] virtual ITool* findTool(const QString& key) const = 0;
    /// Adds a button at the end. A key that is there already raises `kErrorInvalidOperation`.
    virtual ITool& addTool(int id, const QString& key) = 0;
    /// Removes a tool; no error when there is none.
    virtual void removeTool(const QString& key) = 0;
};

/// A toolbar control: bands of tools, docked rows and pop-up menus.
///
/// Lifetime: a Qt object owned by its window; hold it in a `GuardedPtr`.
/// Thread: the user-interface thread.
class IToolbar {
public:
    virtual ~IToolbar();
    [[nodiscard]] virtual QObject* asQObject() = 0;

    [[nodiscard]] virtual int bandCount() const = 0;
    [[nodiscard]] virtual IBand* bandAt(int index) const = 0;
    [[nodiscard]] virtual IBand* findBand(const QString& key) const = 0;
    virtual IBand& addBand(const QString& key, bool popup) = 0;
    virtual void removeBand(const QString& key) = 0;
    /// The first tool with that id or key in any band; nothing when there is none.
    [[nodiscard]] virtual ITool* findToolById(int id) const = 0;
    [[nodiscard]] virtual ITool* findTool(const QString& key) const = 0;

    /// Places bands and tools anew after they were added or removed.
    virtual void recalcLayout() = 0;
    /// Paints anew.
    virtual void refresh() = 0;
    /// Opens a pop-up band below the tool whose click is being handled, else at the mouse pointer;
    /// raises `BandOpen` first and returns when it closed. No error for an unknown band.
    virtual void popup(const QString& bandKey) = 0;
    /// Does what a click on the tool does; nothing when it is missing or disabled.
    virtual void activate(const QString& toolKey) = 0;

    Event<ITool&> Click;
    Event<IBand&> BandOpen;       ///< before a pop-up band is shown
    Event<ITool&> ComboSelChange; ///< the user picked an entry of a combo tool
    Event<ITool&> ComboDrop;      ///< before the list of a combo tool is shown
    Event<IBand&> BandMove;       ///< the user moved, floated or docked a band
};

} // namespace yrw
