#include "platform/toolbar/ToolbarLayout.h"

#include "platform/component/AutomationError.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <cmath>
#include <optional>

namespace yrw {

namespace {

constexpr int kVersion = 1;

/// One object of the layout with its place in the file, such as "bands[0].tools[2]".
class Node {
public:
    Node(QJsonObject object, QString place, const QString& file)
        : m_object(std::move(object)), m_place(std::move(place)), m_file(file) {}

    [[noreturn]] void fail(const QString& name, const QString& fault) const {
        const QString place = m_place.isEmpty() ? name : QString(m_place + u'.' + name);
        throw AutomationError(kErrorLayout, QStringLiteral("YRW.Toolbar"),
                              QStringLiteral("%1: %2 %3.").arg(m_file, place, fault));
    }

    void allowOnly(const QStringList& names) const {
        for (auto it = m_object.begin(); it != m_object.end(); ++it) {
            if (!names.contains(it.key())) {
                fail(it.key(), QStringLiteral("is not known"));
            }
        }
    }

    [[nodiscard]] QString text(const QString& name, const QString& otherwise = {}) const {
        return value(name, &QJsonValue::isString, "must be a text").toString(otherwise);
    }

    [[nodiscard]] QString requiredText(const QString& name) const {
        const QString value = text(name);
        if (value.isEmpty()) {
            fail(name, QStringLiteral("is missing"));
        }
        return value;
    }

    [[nodiscard]] int number(const QString& name, std::optional<int> otherwise) const {
        const QJsonValue value = m_object.value(name);
        if (value.isUndefined() && otherwise) {
            return *otherwise;
        }
        const double read = value.toDouble(-1);
        if (!value.isDouble() || read < 0 || read > 1e6 || read != std::floor(read)) {
            fail(name, QStringLiteral("must be a whole number from 0 to 1000000"));
        }
        return static_cast<int>(read);
    }

    [[nodiscard]] bool flag(const QString& name, bool otherwise) const {
        return value(name, &QJsonValue::isBool, "must be true or false").toBool(otherwise);
    }

    /// Position of the text among the choices; the first one when the name is absent.
    [[nodiscard]] int choice(const QString& name, const QStringList& choices) const {
        const QString value = text(name, choices.first());
        const auto found = choices.indexOf(value);
        if (found < 0) {
            fail(name, QStringLiteral("is '%1', which is none of: %2")
                           .arg(value, choices.join(QStringLiteral(", "))));
        }
        return static_cast<int>(found);
    }

    [[nodiscard]] QStringList texts(const QString& name) const {
        QStringList all;
        for (const QJsonValue value : array(name)) {
            if (!value.isString()) {
                fail(name, QStringLiteral("must hold texts only"));
            }
            all.append(value.toString());
        }
        return all;
    }

    [[nodiscard]] QList<Node> nodes(const QString& name) const {
        QList<Node> all;
        for (const QJsonValue value : array(name)) {
            const QString place = QStringLiteral("%1[%2]").arg(name).arg(all.size());
            if (!value.isObject()) {
                fail(place, QStringLiteral("must be an object"));
            }
            const QString full = m_place.isEmpty() ? place : QString(m_place + u'.' + place);
            all.append(Node(value.toObject(), full, m_file));
        }
        return all;
    }

private:
    /// A value of that type; undefined where the name is absent.
    [[nodiscard]] QJsonValue value(const QString& name, bool (QJsonValue::*isType)() const,
                                   const char* must) const {
        const QJsonValue found = m_object.value(name);
        if (!found.isUndefined() && !(found.*isType)()) {
            fail(name, QLatin1String(must));
        }
        return found;
    }
    [[nodiscard]] QJsonArray array(const QString& name) const {
        return value(name, &QJsonValue::isArray, "must be a list").toArray();
    }

    QJsonObject m_object;
    QString m_place;
    QString m_file;
};

ToolStyle styleAt(int choice) {
    constexpr ToolStyle styles[] = {ToolStyle::IconAndCaption, ToolStyle::IconOnly,
                                    ToolStyle::CaptionOnly};
    return styles[choice];
}

ToolData readTool(const Node& node) {
    node.allowOnly({"id", "key", "caption", "kind", "icon", "style", "shortcut", "tooltip", "group",
                    "list", "text", "width", "checked", "enabled", "visible"});
    ToolData tool;
    tool.id = node.number("id", std::nullopt);
    tool.key = node.requiredText("key");
    tool.caption = node.requiredText("caption");
    tool.kind = ToolKind(node.choice("kind", {"button", "check", "radio", "combo"}));
    tool.style = styleAt(node.choice("style", {"both", "icon", "caption"}));
    tool.iconName = node.text("icon");
    tool.shortcut = node.text("shortcut");
    tool.toolTip = node.text("tooltip");
    tool.beginsGroup = node.flag("group", false);
    tool.list = node.texts("list");
    tool.text = node.text("text");
    tool.widthTwips = node.number("width", 1800);
    tool.checked = node.flag("checked", false);
    tool.enabled = node.flag("enabled", true);
    tool.visible = node.flag("visible", true);
    if (tool.kind != ToolKind::Combo && !tool.list.isEmpty()) {
        node.fail("list", QStringLiteral("belongs to a combo tool"));
    }
    return tool;
}

BandLayout readBand(const Node& node) {
    node.allowOnly({"key", "caption", "row", "popup", "visible", "tools"});
    BandLayout band;
    band.key = node.requiredText("key");
    band.caption = node.text("caption");
    band.row = node.number("row", 0);
    band.popup = node.flag("popup", false);
    band.visible = node.flag("visible", true);
    QSet<QString> keys;
    QSet<int> ids;
    for (const Node& tool : node.nodes("tools")) {
        band.tools.append(readTool(tool));
        const ToolData& read = band.tools.constLast();
        if (keys.contains(read.key.toLower())) {
            tool.fail("key", QStringLiteral("is '%1' a second time in the band").arg(read.key));
        }
        if (ids.contains(read.id)) {
            tool.fail("id", QStringLiteral("is %1 a second time in the band").arg(read.id));
        }
        keys.insert(read.key.toLower());
        ids.insert(read.id);
    }
    return band;
}

QJsonObject readDocument(const QByteArray& json, const QString& file) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        const auto line = json.left(error.offset).count('\n') + 1;
        throw AutomationError(
            kErrorLayout, QStringLiteral("YRW.Toolbar"),
            QStringLiteral("%1: line %2: %3.").arg(file).arg(line).arg(error.errorString()));
    }
    return document.object();
}

} // namespace

QList<BandLayout> parseToolbarLayout(const QByteArray& json, const QString& nameForErrors) {
    const Node root(readDocument(json, nameForErrors), QString(), nameForErrors);
    root.allowOnly({"version", "bands"});
    if (root.number("version", std::nullopt) != kVersion) {
        root.fail("version", QStringLiteral("must be %1").arg(kVersion));
    }
    QList<BandLayout> bands;
    QSet<QString> keys;
    for (const Node& node : root.nodes("bands")) {
        bands.append(readBand(node));
        const QString key = bands.constLast().key;
        if (keys.contains(key.toLower())) {
            node.fail("key", QStringLiteral("is '%1' a second time").arg(key));
        }
        keys.insert(key.toLower());
    }
    if (bands.isEmpty()) {
        root.fail("bands", QStringLiteral("is missing or empty"));
    }
    return bands;
}

} // namespace yrw
