#include "platform/dao/Query.h"

#include "platform/component/AutomationError.h"
#include "platform/dao/Connection.h"

#include <QStringList>

#include <algorithm>
#include <utility>

namespace yrw::dao {

namespace {

[[noreturn]] void raiseUnknown(const QString& what) {
    throw AutomationError(kErrorNotInCollection, QStringLiteral("YRW.Database"),
                          QStringLiteral("There is no field '%1'.").arg(what));
}

QString likePattern(const QString& text) {
    QString pattern;
    for (qsizetype i = 0; i < text.size(); ++i) {
        QChar c = text[i];
        if (c == u'*' || c == u'?') {
            pattern += c == u'*' ? u'%' : u'_';
            continue;
        }
        if (c == u'[' && i + 2 < text.size() && text[i + 2] == u']') {
            c = text[i + 1];
            i += 2;
        }
        if (c == u'%' || c == u'_' || c == u'\\') {
            pattern += u'\\';
        }
        pattern += c;
    }
    return pattern;
}

/// True or false where a comparison is with a truth value; nothing where it is not.
std::optional<bool> truthOf(const Expression& side, std::optional<FieldType> other) {
    if (side.kind != Expression::Kind::Value || side.value.isNull()) {
        return std::nullopt;
    }
    const int type = side.value.typeId();
    if (type == QMetaType::Bool || (other == FieldType::Boolean && type == QMetaType::LongLong)) {
        return side.value.toLongLong() != 0;
    }
    return std::nullopt;
}

} // namespace

Query::Query(std::shared_ptr<const Source> source) : m_source(std::move(source)) {
    addItem({{QString(), QStringLiteral("*")}, QString(), false});
    setOrder({});
}

Query::Query(std::shared_ptr<const Source> source, const Selection& selection)
    : m_source(std::move(source)) {
    for (const SelectItem& item : selection.items) {
        addItem(item);
    }
    if (m_isCount && m_items.size() != 1) {
        throw AutomationError(kErrorBadCondition, QStringLiteral("YRW.Condition"),
                              QStringLiteral("Count(*) stands alone in a selection."));
    }
    for (const Expression& expression : selection.where) {
        addCondition(expression);
    }
    setOrder(selection.order);
}

void Query::addItem(const SelectItem& item) {
    if (item.isCount) {
        m_isCount = true;
        m_items.push_back({item.alias,
                           QStringLiteral("count(*)"),
                           {item.alias, FieldType::Long, QString(), QVariant()}});
        return;
    }
    if (item.field.name == u"*") {
        for (const Column& column : m_source->columns) {
            addItem({{item.field.source, column.name}, QString(), false});
        }
        return;
    }
    const Column& column = columnOf(item.field);
    m_items.push_back(
        {item.alias.isEmpty() ? column.name : item.alias, quotedName(column.name), column});
}

const Column& Query::columnOf(const FieldReference& field) const {
    const bool foreign =
        !field.source.isEmpty() && field.source.compare(m_source->name, Qt::CaseInsensitive) != 0;
    const int index = foreign ? -1 : m_source->indexOf(field.name);
    if (index < 0) {
        raiseUnknown(field.source.isEmpty() ? field.name : field.source + u'.' + field.name);
    }
    return m_source->columns[size_t(index)];
}

const Query::Item& Query::item(int column) const {
    if (column < 0 || column >= int(m_items.size())) {
        throw AutomationError(kErrorNotInCollection, QStringLiteral("YRW.Recordset"),
                              QStringLiteral("There is no field number %1.").arg(column));
    }
    return m_items[size_t(column)];
}

int Query::keyItem() const {
    const auto found = std::find_if(m_items.begin(), m_items.end(), [this](const Item& item) {
        return hasKey() && quotedName(item.column.name) == m_source->key;
    });
    return found == m_items.end() ? -1 : int(found - m_items.begin());
}

void Query::addCondition(const Expression& expression) {
    const QString text = condition(expression);
    m_where += (m_where.isEmpty() ? u" WHERE "_qs : u" AND "_qs) + text;
}

void Query::setOrder(const std::vector<OrderTerm>& order) {
    QStringList terms;
    m_leadingText.reset();
    for (const OrderTerm& term : order) {
        const Column& column = columnOf(term.field);
        const bool isText = column.type == FieldType::Text || column.type == FieldType::Memo;
        if (terms.isEmpty() && isText) {
            m_leadingText = LeadingText{quotedName(column.name), term.descending};
        }
        terms += quotedName(column.name) + (term.descending ? u" DESC"_qs : QString());
    }
    // Rows that nobody ordered come in key order; equal ones too, so that an order is stable.
    if (hasKey() && !(terms.isEmpty() && m_source->keepsOwnOrder)) {
        terms += m_source->key;
    }
    m_order = terms.isEmpty() ? QString() : u" ORDER BY " + terms.join(u", "_qs);
}

void Query::setParameters(const Parameters& parameters) {
    for (const auto& [name, value] : parameters) {
        m_bindings.push_back({u':' + name, value});
    }
}

QString Query::placeFor(const QVariant& value) {
    QString name = u":yrw" + QString::number(++m_literals);
    m_bindings.push_back({name, value});
    return name;
}

QString Query::listed(const QVariant& value) {
    // A name is looked for among all names that went before, so that a long list of them would
    // take its time squared.
    if (value.typeId() == QMetaType::LongLong) {
        return QString::number(value.toLongLong());
    }
    if (value.typeId() == QMetaType::QString && !value.toString().contains(QChar(u'\0'))) {
        return u'\'' + value.toString().replace(u'\'', u"\'\'"_qs) + u'\'';
    }
    return placeFor(value);
}

QString Query::operand(const Expression& expression) {
    switch (expression.kind) {
    case Expression::Kind::Reference:
        return quotedName(columnOf(expression.field).name);
    case Expression::Kind::Now:
        return QStringLiteral("Now()");
    default:
        return placeFor(expression.value);
    }
}

QString Query::comparison(const Expression& expression) {
    const Expression& left = expression.operands[0];
    const Expression& right = expression.operands[1];
    const auto typeOf = [this](const Expression& side) {
        return side.kind == Expression::Kind::Reference ? columnOf(side.field).type : std::nullopt;
    };
    const bool equal = expression.comparison == u"=";
    if (equal || expression.comparison == u"<>") {
        const auto leftTruth = truthOf(left, typeOf(right));
        const auto truth = leftTruth ? leftTruth : truthOf(right, typeOf(left));
        if (truth) {
            const QString field = operand(leftTruth ? right : left);
            return u'(' + field + (*truth == equal ? u" <> 0)"_qs : u" = 0)"_qs);
        }
    }
    const QString leftText = operand(left);
    return u'(' + leftText + u' ' + expression.comparison + u' ' + operand(right) + u')';
}

QString Query::like(const Expression& expression) {
    const QString left = operand(expression.operands[0]);
    const QString pattern = placeFor(likePattern(expression.operands[1].value.toString()));
    return u'(' + left + (expression.negated ? u" NOT"_qs : QString()) + u" LIKE " + pattern +
           u" ESCAPE '\\')";
}

QString Query::joined(const Expression& expression, QStringView word) {
    QStringList parts;
    for (const Expression& part : expression.operands) {
        parts += condition(part);
    }
    return u'(' + parts.join(u' ' + word.toString() + u' ') + u')';
}

QString Query::condition(const Expression& expression) {
    const QString negation = expression.negated ? QStringLiteral(" NOT") : QString();
    switch (expression.kind) {
    case Expression::Kind::Reference:
        return u'(' + operand(expression) + u" <> 0)";
    case Expression::Kind::Value:
    case Expression::Kind::Now:
        return placeFor(expression.value);
    case Expression::Kind::Compare:
        return comparison(expression);
    case Expression::Kind::IsNull:
        return u'(' + operand(expression.operands[0]) + u" IS" + negation + u" NULL)";
    case Expression::Kind::Like:
        return like(expression);
    case Expression::Kind::Between: {
        const QString field = operand(expression.operands[0]);
        const QString low = operand(expression.operands[1]);
        return u'(' + field + negation + u" BETWEEN " + low + u" AND " +
               operand(expression.operands[2]) + u')';
    }
    case Expression::Kind::In: {
        const QString field = operand(expression.operands[0]);
        QStringList values;
        for (size_t i = 1; i < expression.operands.size(); ++i) {
            values += listed(expression.operands[i].value);
        }
        return u'(' + field + negation + u" IN (" + values.join(u", "_qs) + u"))";
    }
    case Expression::Kind::And:
        return joined(expression, u"AND");
    case Expression::Kind::Or:
        return joined(expression, u"OR");
    case Expression::Kind::Not:
        return u"(NOT " + condition(expression.operands[0]) + u')';
    }
    return {};
}

QString Query::itemList() const {
    QStringList list;
    for (const Item& item : m_items) {
        list += item.expression;
    }
    return list.join(u", "_qs);
}

QString Query::tail() const {
    return u" FROM " + m_source->sql + m_where;
}

void Query::bindTo(Cursor& statement) const {
    for (const Binding& binding : m_bindings) {
        statement.bind(binding.name, binding.value);
    }
}

std::unique_ptr<Cursor> Query::bound(const Connection& connection, const QString& sql) const {
    auto statement = connection.prepare(sql, origin());
    bindTo(*statement);
    return statement;
}

std::unique_ptr<Cursor> Query::rows(const Connection& connection) const {
    return bound(connection, u"SELECT " + itemList() +
                                 (hasKey() ? u", " + m_source->key : QString()) + tail() + m_order);
}

std::vector<QVariant> Query::itemsOf(const Cursor& statement) const {
    std::vector<QVariant> values;
    values.reserve(m_items.size());
    for (size_t i = 0; i < m_items.size(); ++i) {
        values.push_back(statement.value(int(i), m_items[i].column.type));
    }
    return values;
}

bool Query::isInKeyOrder() const {
    return hasKey() && m_order == u" ORDER BY " + m_source->key;
}

std::unique_ptr<Cursor> Query::rowsBehind(const Connection& connection, qint64 key,
                                          const std::vector<int>& items) const {
    QStringList list;
    for (const int item : items) {
        list += m_items[size_t(item)].expression;
    }
    list += m_source->key;
    // The sign keeps the engine from choosing another way to the rows than before.
    const QString behind =
        (m_where.isEmpty() ? u" WHERE +"_qs : u" AND +"_qs) + m_source->key + u" > :yrwbehind";
    auto statement =
        bound(connection, u"SELECT " + list.join(u", "_qs) + tail() + behind + m_order);
    statement->bind(QStringLiteral(":yrwbehind"), key);
    return statement;
}

Cursor& Query::keys(Connection& connection) const {
    Cursor& statement = connection.kept(
        u"SELECT " + m_source->key +
            (m_leadingText ? u", " + m_leadingText->expression : QString()) + tail() + m_order,
        origin());
    bindTo(statement);
    return statement;
}

std::unique_ptr<Cursor> Query::rowByKey(const Connection& connection) const {
    // The conditions are left out: a row stays in the set although it no longer meets them.
    return bound(connection, u"SELECT " + itemList() + u" FROM " + m_source->sql + u" WHERE " +
                                 m_source->key + u" = :yrwkey");
}

} // namespace yrw::dao
