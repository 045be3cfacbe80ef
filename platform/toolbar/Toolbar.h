#pragma once

#include "platform/toolbar/api/IToolbar.h"

#include <QWidget>

#include <memory>

namespace yrw {

class BandDock;
class BandList;
class BandTool;
class FileSystem;
class ToolBand;
enum class ToolChange;

/// The toolbar control; see `IToolbar`.
///
/// The layout is a JSON file (`loadLayout`). Docked bands lie in rows; a band that is too narrow
/// for its tools offers the rest in an overflow menu. A band can be moved by its grip: to another
/// place or row, or off the toolbar, where it floats in a small window until it is docked again.
/// Each tool's button has the tool's key as object name and its caption as accessible name.
class Toolbar : public QWidget, public IToolbar {
    Q_OBJECT

public:
    explicit Toolbar(QWidget* parent = nullptr);
    ~Toolbar() override;

    /// Loads bands and tools from a layout file, replacing what is there. The file is validated
    /// first: a broken one raises `kErrorLayout` naming the file and the place, and
    /// nothing changes.
    void loadLayout(const FileSystem& files, const QString& path);
    /// The same from the text of a layout.
    void loadLayoutText(const QByteArray& json, const QString& nameForErrors);

    [[nodiscard]] QObject* asQObject() override;
    [[nodiscard]] int bandCount() const override;
    [[nodiscard]] IBand* bandAt(int index) const override;
    [[nodiscard]] IBand* findBand(const QString& key) const override;
    IBand& addBand(const QString& key, bool popup) override;
    void removeBand(const QString& key) override;
    [[nodiscard]] ITool* findToolById(int id) const override;
    [[nodiscard]] ITool* findTool(const QString& key) const override;
    void recalcLayout() override;
    void refresh() override;
    void popup(const QString& bandKey) override;
    void activate(const QString& toolKey) override;
    /// As `popup`, at a place on the screen: for a menu that the keyboard asks for.
    void popupAt(const QString& bandKey, const QPoint& globalPosition);

    /// Gives the keyboard back to the control that had it before F10 called it here; false, and
    /// nothing happens, where it is not here or came another way.
    bool leave();

    /// Where the user has put the bands, as a text to be stored; empty while they lie as the
    /// layout says.
    [[nodiscard]] QString arrangement() const;
    /// Puts the bands where such a text says, and the others where the layout says. Bands that are
    /// not there are passed over; a text of another form is as good as an empty one.
    /// Raises no event.
    void setArrangement(const QString& text);

    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    /// A band or, when it is given, a tool of it has changed.
    void changed(const ToolBand& band, const BandTool* tool, ToolChange change);

    std::unique_ptr<BandList> m_bands;
    std::unique_ptr<BandDock> m_dock;
    bool m_loading = false;
};

} // namespace yrw
