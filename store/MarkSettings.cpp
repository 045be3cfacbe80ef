#include "store/MarkSettings.h"

#include "framework/ErrorGuards.h"
#include "store/Schema.h"

namespace yrw {

int readHighlightColour(const HostDataHelper& helper) noexcept {
    int colour = 0;
    ignoreErrors([&] {
        const Ref<dao::Recordset> settings =
            helper.OpenRecordset(QStringLiteral("SELECT tblSettings.* FROM tblSettings"));
        if (!settings->AtEof()) {
            colour = settings->value(u"HighlightRowColour").toInt();
        }
        settings->Close();
    });
    return colour == 0 ? schema::kDefaultHighlight : colour;
}

bool isLinkedColumn(const HostDataHelper& helper, const QString& field, const QString& layoutName) {
    QString sql = QStringLiteral("SELECT tblLinkedColumnDefs.* From tblLinkedColumnDefs");
    sql = HostDataHelper::AddCondition(
        sql, HostDataHelper::EqualCondition(QStringLiteral("GridField"), field));
    sql = HostDataHelper::AddCondition(
        sql, HostDataHelper::EqualCondition(QStringLiteral("GridLayoutName"), layoutName));
    const Ref<dao::Recordset> definitions = helper.OpenRecordset(sql);
    const bool found = !definitions->AtEof();
    definitions->Close();
    return found;
}

} // namespace yrw
