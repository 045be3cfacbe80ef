#pragma once

#include "platform/toolbar/ToolBand.h"
#include "platform/toolbar/ToolbarLayout.h"

namespace yrw {

/// The bands of a toolbar and where the user has put them, without any control on the screen.
///
/// Thread: the user-interface thread.
class BandList {
public:
    /// `changed` is called after each change of a band or a tool.
    explicit BandList(ToolBand::Changed changed) : m_changed(std::move(changed)) {}

    [[nodiscard]] const std::vector<std::unique_ptr<ToolBand>>& all() const { return m_bands; }
    /// Band of a key, in any case; nothing when there is none.
    [[nodiscard]] ToolBand* find(const QString& key) const;
    /// The first tool of any band that fits; nothing when none does.
    [[nodiscard]] ITool* findTool(const std::function<bool(const ITool&)>& fits) const;
    /// Adds a band without tools, in a row below the others.
    ToolBand& add(const QString& key, bool popup);
    void remove(const ToolBand& band);
    /// Replaces all bands by those of a layout.
    void load(const QList<BandLayout>& layout);

    /// See `Toolbar::arrangement`.
    [[nodiscard]] QString arrangement() const;
    void setArrangement(const QString& text);
    /// Puts every band where the layout says; the keys of those that lay elsewhere.
    QStringList reset();
    /// Puts a band at a place, before what lies there; false when that changes nothing.
    bool move(ToolBand& band, const BandDocking& to);
    /// Numbers rows and places without gaps.
    void number();

private:
    /// Where the docked and floating bands are, or are before the user moves them.
    [[nodiscard]] QList<BandPlace> places() const;
    [[nodiscard]] QList<BandPlace> homes() const;

    ToolBand::Changed m_changed;
    std::vector<std::unique_ptr<ToolBand>> m_bands;
};

} // namespace yrw
