#include "platform/dao/ConditionTokens.h"

#include "platform/component/AutomationError.h"

#include <QDateTime>
#include <QRegularExpression>

#include <optional>

namespace yrw::dao {

void raiseBadCondition(const QString& what, qsizetype place) {
    throw AutomationError(kErrorBadCondition, QStringLiteral("YRW.Condition"),
                          QStringLiteral("The condition cannot be read at character %1: %2.")
                              .arg(place + 1)
                              .arg(what));
}

namespace {

bool beginsWord(QChar c) {
    return c.isLetter() || c == u'_';
}

bool continuesWord(QChar c) {
    return c.isLetterOrNumber() || c == u'_';
}

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

std::optional<QDateTime> parseDate(QStringView text) {
    static const QRegularExpression pattern(
        QStringLiteral(R"(^\s*(?:(\d{4})-(\d{1,2})-(\d{1,2})|(\d{1,2})/(\d{1,2})/(\d{4})))"
                       R"((?:[ T](\d{1,2}):(\d{1,2})(?::(\d{1,2}))?)?\s*$)"));
    const auto match = pattern.match(text);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const auto number = [&match](int group) { return match.capturedView(group).toInt(); };
    const bool iso = match.hasCaptured(1) && !match.capturedView(1).isEmpty();
    const QDate date =
        iso ? QDate(number(1), number(2), number(3)) : QDate(number(6), number(4), number(5));
    const QTime time(number(7), number(8), number(9));
    if (!date.isValid() || !time.isValid()) {
        return std::nullopt;
    }
    return QDateTime(date, time);
}

class Tokenizer {
public:
    explicit Tokenizer(QStringView text) : m_text(text) {}

    Token next() {
        while (m_at < m_text.size() && m_text[m_at].isSpace()) {
            ++m_at;
        }
        m_start = m_at;
        if (m_at == m_text.size()) {
            return {Token::Kind::End, QString(), QVariant(), m_start};
        }
        const QChar c = m_text[m_at];
        if (beginsWord(c)) {
            return word();
        }
        if (isDigit(c)) {
            return number();
        }
        switch (c.unicode()) {
        case u'"':
        case u'\'':
            return {Token::Kind::Literal, QString(), enclosed(c, "a text without its end"),
                    m_start};
        case u'[':
            return name();
        case u'#':
            return date();
        default:
            return sign(c);
        }
    }

private:
    QString enclosed(QChar end, const char* complaint) {
        const qsizetype close = m_text.indexOf(end, m_at + 1);
        if (close < 0) {
            raiseBadCondition(QString::fromLatin1(complaint), m_start);
        }
        const QString inside = m_text.sliced(m_at + 1, close - m_at - 1).toString();
        m_at = close + 1;
        // Keeps an empty text apart from Null.
        return inside.isNull() ? QStringLiteral("") : inside;
    }

    Token word() {
        while (m_at < m_text.size() && continuesWord(m_text[m_at])) {
            ++m_at;
        }
        return {Token::Kind::Word, m_text.sliced(m_start, m_at - m_start).toString(), QVariant(),
                m_start};
    }

    Token name() {
        const QString inside = enclosed(u']', "a bracketed name without its end");
        if (inside.trimmed().isEmpty()) {
            raiseBadCondition(QStringLiteral("an empty name"), m_start);
        }
        return {Token::Kind::Name, inside, QVariant(), m_start};
    }

    Token date() {
        const QString inside = enclosed(u'#', "a date without its end");
        const auto parsed = parseDate(inside);
        if (!parsed) {
            raiseBadCondition(QStringLiteral("'%1' is no date").arg(inside), m_start);
        }
        return {Token::Kind::Literal, QString(), *parsed, m_start};
    }

    void digits() {
        while (m_at < m_text.size() && isDigit(m_text[m_at])) {
            ++m_at;
        }
    }

    Token number() {
        digits();
        const bool whole =
            !(m_at + 1 < m_text.size() && m_text[m_at] == u'.' && isDigit(m_text[m_at + 1]));
        if (!whole) {
            ++m_at;
            digits();
        }
        if (m_at < m_text.size() && beginsWord(m_text[m_at])) {
            raiseBadCondition(QStringLiteral("a letter behind a number"), m_at);
        }
        const QStringView written = m_text.sliced(m_start, m_at - m_start);
        bool fits = true;
        const QVariant value =
            whole ? QVariant(written.toLongLong(&fits)) : QVariant(written.toDouble(&fits));
        if (!fits) {
            raiseBadCondition(QStringLiteral("a number out of range"), m_start);
        }
        return {Token::Kind::Literal, QString(), value, m_start};
    }

    Token sign(QChar c) {
        static const QString twice = QStringLiteral("<> <= >=");
        ++m_at;
        QString text(c);
        if ((c == u'<' || c == u'>') && m_at < m_text.size() &&
            twice.contains(text + m_text[m_at]) && !m_text[m_at].isSpace()) {
            text += m_text[m_at++];
        }
        if (!QStringView(u"=<><=>=(),.*;-").contains(text)) {
            raiseBadCondition(QStringLiteral("the sign '%1'").arg(text), m_start);
        }
        return {Token::Kind::Sign, text, QVariant(), m_start};
    }

    QStringView m_text;
    qsizetype m_at = 0;
    qsizetype m_start = 0;
};

} // namespace

std::vector<Token> tokenize(QStringView text) {
    Tokenizer tokenizer(text);
    std::vector<Token> tokens;
    do {
        tokens.push_back(tokenizer.next());
    } while (tokens.back().kind != Token::Kind::End);
    return tokens;
}

} // namespace yrw::dao
