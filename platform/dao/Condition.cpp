#include "platform/dao/Condition.h"

#include "platform/dao/ConditionTokens.h"

#include <algorithm>
#include <array>
#include <utility>

namespace yrw::dao {

namespace {

constexpr int kDeepest = 64;

class Parser {
public:
    explicit Parser(QStringView text) : m_tokens(tokenize(text)) {}

    Selection selection() {
        Selection result;
        expectWord(u"SELECT");
        do {
            result.items.push_back(item());
        } while (acceptSign(u","));
        expectWord(u"FROM");
        result.source = name();
        if (acceptWord(u"WHERE")) {
            result.where.push_back(condition());
        }
        if (acceptWord(u"ORDER")) {
            expectWord(u"BY");
            result.order = order();
        }
        acceptSign(u";");
        expectEnd();
        return result;
    }

    Expression condition() {
        Expression result = disjunction();
        requireTruth(result);
        return result;
    }

    std::vector<OrderTerm> order() {
        std::vector<OrderTerm> terms;
        do {
            OrderTerm term{field(), false};
            term.descending = acceptWord(u"DESC");
            if (!term.descending) {
                acceptWord(u"ASC");
            }
            terms.push_back(std::move(term));
        } while (acceptSign(u","));
        return terms;
    }

    void expectEnd() const {
        if (now().kind != Token::Kind::End) {
            complain();
        }
    }

private:
    // A Deeper lives while one more parenthesis or NOT is open.
    class Deeper {
    public:
        explicit Deeper(Parser& parser) : m_depth(parser.m_depth) {
            if (++m_depth > kDeepest) {
                raiseBadCondition(QStringLiteral("too many parentheses"), parser.now().place);
            }
        }
        ~Deeper() { --m_depth; }
        Deeper(const Deeper&) = delete;
        Deeper& operator=(const Deeper&) = delete;

    private:
        int& m_depth;
    };

    [[nodiscard]] const Token& now() const { return m_tokens[m_at]; }
    [[nodiscard]] const Token& ahead() const {
        return m_tokens[std::min(m_at + 1, m_tokens.size() - 1)];
    }

    [[noreturn]] void complain() const {
        const Token& token = now();
        raiseBadCondition(token.kind == Token::Kind::End ? QStringLiteral("the text ends too early")
                          : token.kind == Token::Kind::Literal
                              ? QStringLiteral("a value that does not belong there")
                              : QStringLiteral("'%1' does not belong there").arg(token.text),
                          token.place);
    }

    static bool is(const Token& token, Token::Kind kind, QStringView text) {
        return token.kind == kind && text.compare(token.text, Qt::CaseInsensitive) == 0;
    }
    [[nodiscard]] bool atWord(QStringView word) const { return is(now(), Token::Kind::Word, word); }
    bool accept(Token::Kind kind, QStringView text) {
        const bool there = is(now(), kind, text);
        m_at += there ? 1 : 0;
        return there;
    }
    bool acceptWord(QStringView word) { return accept(Token::Kind::Word, word); }
    bool acceptSign(QStringView sign) { return accept(Token::Kind::Sign, sign); }
    void expectWord(QStringView word) {
        if (!acceptWord(word)) {
            complain();
        }
    }
    void expectSign(QStringView sign) {
        if (!acceptSign(sign)) {
            complain();
        }
    }

    static bool isReserved(const QString& word) {
        static const std::array<QStringView, 17> words{
            u"SELECT", u"FROM", u"WHERE",   u"ORDER", u"BY", u"AND",  u"OR",    u"NOT",  u"IS",
            u"NULL",   u"LIKE", u"BETWEEN", u"IN",    u"AS", u"TRUE", u"FALSE", u"UNION"};
        for (const QStringView reserved : words) {
            if (reserved.compare(word, Qt::CaseInsensitive) == 0) {
                return true;
            }
        }
        return false;
    }

    QString name() {
        const Token& token = now();
        const bool usable = token.kind == Token::Kind::Name ||
                            (token.kind == Token::Kind::Word && !isReserved(token.text));
        if (!usable) {
            complain();
        }
        ++m_at;
        return token.text;
    }

    FieldReference field() {
        FieldReference result{QString(), name()};
        if (acceptSign(u".")) {
            result.source = std::exchange(result.name, name());
        }
        return result;
    }

    SelectItem item() {
        SelectItem result;
        if (acceptSign(u"*")) {
            result.field.name = QStringLiteral("*");
            return result;
        }
        if (atWord(u"COUNT") && is(ahead(), Token::Kind::Sign, u"(")) {
            m_at += 2;
            expectSign(u"*");
            expectSign(u")");
            result.isCount = true;
            result.alias = acceptWord(u"AS") ? name() : QStringLiteral("Count");
            return result;
        }
        result.field.name = name();
        if (acceptSign(u".")) {
            result.field.source = result.field.name;
            if (acceptSign(u"*")) {
                result.field.name = QStringLiteral("*");
                return result;
            }
            result.field.name = name();
        }
        if (acceptWord(u"AS")) {
            result.alias = name();
        }
        return result;
    }

    static bool isOperand(const Expression& expression) {
        return expression.kind == Expression::Kind::Reference ||
               expression.kind == Expression::Kind::Value ||
               expression.kind == Expression::Kind::Now;
    }

    /// A bare operand is a condition when it is a field, True or False.
    void requireTruth(const Expression& expression) const {
        const bool bareValue = expression.kind == Expression::Kind::Now ||
                               (expression.kind == Expression::Kind::Value &&
                                expression.value.typeId() != QMetaType::Bool);
        if (bareValue) {
            complain();
        }
    }

    /// Operands parted by a word, each of them a truth.
    Expression level(Expression::Kind kind, QStringView word, Expression (Parser::*next)()) {
        Expression first = (this->*next)();
        if (!atWord(word)) {
            return first;
        }
        requireTruth(first);
        Expression result;
        result.kind = kind;
        result.operands.push_back(std::move(first));
        while (acceptWord(word)) {
            result.operands.push_back((this->*next)());
            requireTruth(result.operands.back());
        }
        return result;
    }

    Expression disjunction() { return level(Expression::Kind::Or, u"OR", &Parser::conjunction); }

    Expression conjunction() { return level(Expression::Kind::And, u"AND", &Parser::term); }

    Expression term() {
        if (!acceptWord(u"NOT")) {
            return predicate();
        }
        const Deeper deeper(*this);
        Expression result;
        result.kind = Expression::Kind::Not;
        result.operands.push_back(term());
        requireTruth(result.operands.front());
        return result;
    }

    Expression predicate() {
        Expression left = primary();
        if (!isOperand(left)) {
            return left;
        }
        Expression result;
        result.operands.push_back(left);
        if (now().kind == Token::Kind::Sign && isComparison(now().text)) {
            result.kind = Expression::Kind::Compare;
            result.comparison = now().text;
            ++m_at;
            result.operands.push_back(operand());
        } else if (acceptWord(u"IS")) {
            result.kind = Expression::Kind::IsNull;
            result.negated = acceptWord(u"NOT");
            expectWord(u"NULL");
        } else if (!acceptNegatable(result)) {
            return left;
        }
        requireField(result);
        return result;
    }

    static bool isComparison(const QString& sign) {
        return sign == u"=" || sign == u"<>" || sign == u"<" || sign == u"<=" || sign == u">" ||
               sign == u">=";
    }

    /// What may have a NOT before it; false when none of it is there.
    bool acceptNegatable(Expression& result) {
        result.negated =
            atWord(u"NOT") && ahead().kind == Token::Kind::Word ? acceptWord(u"NOT") : false;
        if (acceptWord(u"LIKE")) {
            result.kind = Expression::Kind::Like;
            if (now().kind != Token::Kind::Literal || now().value.typeId() != QMetaType::QString) {
                complain();
            }
            result.operands.push_back(primary());
        } else if (acceptWord(u"BETWEEN")) {
            result.kind = Expression::Kind::Between;
            result.operands.push_back(operand());
            expectWord(u"AND");
            result.operands.push_back(operand());
        } else if (acceptWord(u"IN")) {
            result.kind = Expression::Kind::In;
            expectSign(u"(");
            do {
                result.operands.push_back(operand());
                if (result.operands.back().kind != Expression::Kind::Value) {
                    complain();
                }
            } while (acceptSign(u","));
            expectSign(u")");
        } else if (result.negated) {
            complain();
        } else {
            return false;
        }
        return true;
    }

    void requireField(const Expression& expression) const {
        for (const Expression& part : expression.operands) {
            if (part.kind == Expression::Kind::Reference) {
                return;
            }
        }
        raiseBadCondition(QStringLiteral("a comparison without a field"), now().place);
    }

    Expression operand() {
        Expression result = primary();
        if (!isOperand(result)) {
            complain();
        }
        return result;
    }

    Expression primary() {
        if (acceptSign(u"(")) {
            const Deeper deeper(*this);
            Expression inside = disjunction();
            expectSign(u")");
            return inside;
        }
        Expression result;
        const Token& token = now();
        if (token.kind == Token::Kind::Literal) {
            result.value = token.value;
            ++m_at;
        } else if (acceptSign(u"-")) {
            result.value = negative();
        } else if (acceptWord(u"TRUE")) {
            result.value = true;
        } else if (acceptWord(u"FALSE")) {
            result.value = false;
        } else if (acceptWord(u"NULL")) {
            result.value = QVariant();
        } else if (atWord(u"NOW") && is(ahead(), Token::Kind::Sign, u"(")) {
            m_at += 2;
            expectSign(u")");
            result.kind = Expression::Kind::Now;
        } else {
            result.kind = Expression::Kind::Reference;
            result.field = field();
        }
        return result;
    }

    QVariant negative() {
        const QVariant value = now().value;
        if (now().kind == Token::Kind::Literal && value.typeId() == QMetaType::LongLong) {
            ++m_at;
            return -value.toLongLong();
        }
        if (now().kind == Token::Kind::Literal && value.typeId() == QMetaType::Double) {
            ++m_at;
            return -value.toDouble();
        }
        complain();
    }

    std::vector<Token> m_tokens;
    size_t m_at = 0;
    int m_depth = 0;
};

} // namespace

bool isSelection(QStringView text) {
    const QStringView trimmed = text.trimmed();
    return trimmed.startsWith(u"SELECT", Qt::CaseInsensitive) && trimmed.size() > 6 &&
           !trimmed[6].isLetterOrNumber() && trimmed[6] != u'_';
}

Selection parseSelection(QStringView text) {
    return Parser(text).selection();
}

Expression parseCondition(QStringView text) {
    Parser parser(text);
    Expression result = parser.condition();
    parser.expectEnd();
    return result;
}

std::vector<OrderTerm> parseOrder(QStringView text) {
    Parser parser(text);
    std::vector<OrderTerm> result = parser.order();
    parser.expectEnd();
    return result;
}

} // namespace yrw::dao
