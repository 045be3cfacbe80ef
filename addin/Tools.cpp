#include "addin/Tools.h"

#include "framework/ErrorGuards.h"

namespace yrw {

namespace {

IBand& bandForTool(IToolbar& toolbar) {
    for (const QString& key :
         {QStringLiteral("bndMain"), QStringLiteral("Main"), QStringLiteral("Addins")}) {
        if (IBand* band = toolbar.findBand(key)) {
            return *band;
        }
    }
    return toolbar.addBand(QStringLiteral("Addins"), false);
}

ITool& findOrAddTool(IBand& band, int id) {
    ITool* tool = band.findTool(kNotesToolKey);
    return tool != nullptr ? *tool : band.addTool(id, kNotesToolKey);
}

} // namespace

QString placeShowNotesTool(IToolbar& toolbar) {
    // A toolbar that fails the first look-up (it may still be loading) is asked once more.
    IBand* band = nullptr;
    ignoreErrors([&] { band = &bandForTool(toolbar); });
    if (band == nullptr) {
        band = &bandForTool(toolbar);
    }
    ITool& tool = findOrAddTool(*band, kShowNotesToolId);
    tool.setCaption(QStringLiteral("Show Notes"));
    tool.setStyle(ToolStyle::CaptionOnly);
    tool.setEnabled(true);
    toolbar.recalcLayout();
    toolbar.refresh();
    return band->key();
}

void placeGridNotesTool(IBand& band) {
    if (band.findTool(kNotesToolKey) != nullptr) {
        return;
    }
    ITool& tool = band.addTool(kGridNotesToolId, kNotesToolKey);
    tool.setCaption(QStringLiteral("&Notes"));
    tool.setStyle(ToolStyle::CaptionOnly);
    tool.setBeginsGroup(true);
}

void removeNotesTool(IToolbar& toolbar, const QString& bandKey) {
    if (IBand* band = toolbar.findBand(bandKey)) {
        band->removeTool(kNotesToolKey);
    }
}

} // namespace yrw
