#include "platform/jet/JetRows.h"

#include "platform/component/AutomationError.h"

#include <QtEndian>

namespace yrw::jet {

namespace {

constexpr qsizetype kMostName = 1024;
/// A row of every column at its longest is none that a file holds.
constexpr qsizetype kMostMessage = 4 * qsizetype(kMostBytes);

void require(bool holds) {
    if (!holds) {
        throw AutomationError(kErrorInvalidOperation, QStringLiteral("YRWNOTES.JetRows"),
                              QStringLiteral("The reader of the old database failed."));
    }
}

/// The body of a message from front to back; raises where it is too short.
class Body {
public:
    explicit Body(QByteArrayView bytes) : m_bytes(bytes) {}

    template <class T>
    T number() {
        return qFromLittleEndian<T>(bytes(sizeof(T)).data());
    }
    QByteArrayView bytes(qsizetype count) {
        require(count <= m_bytes.size());
        const QByteArrayView taken = m_bytes.first(count);
        m_bytes = m_bytes.sliced(count);
        return taken;
    }
    QString name() {
        const auto length = number<quint16>();
        require(length > 0 && length <= kMostName);
        return QString::fromUtf8(bytes(length));
    }
    void end() const { require(m_bytes.isEmpty()); }

private:
    QByteArrayView m_bytes;
};

bool isType(quint8 type) {
    return (type >= quint8(ColumnType::Boolean) && type <= quint8(ColumnType::Memo)) ||
           type == quint8(ColumnType::Guid) || type == quint8(ColumnType::Decimal);
}

JetCell cellOf(ColumnType type, quint8 state, QByteArrayView bytes, int codePage) {
    require(state <= quint8(CellState::Unreadable));
    JetCell cell{{}, static_cast<CellState>(state)};
    if (cell.state == CellState::Null || cell.state == CellState::Unreadable) {
        require(bytes.isEmpty());
        return cell;
    }
    const std::optional<QVariant> value = decodeValue(type, bytes, codePage);
    if (value) {
        cell.value = *value;
    } else {
        cell.state = CellState::Unreadable;
    }
    return cell;
}

} // namespace

JetSink::~JetSink() = default;

JetRows::JetRows(JetSink& sink, int codePage, qint64 mostBytes)
    : m_sink(sink), m_wantedCodePage(codePage), m_bytesLeft(mostBytes) {}

void JetRows::feed(QByteArrayView bytes) {
    m_bytesLeft -= bytes.size();
    require(m_bytesLeft >= 0);
    m_waiting.append(bytes);
    QByteArrayView left(m_waiting);
    while (left.size() >= qsizetype(kHeadSize)) {
        const auto length = qsizetype(qFromLittleEndian<quint32>(left.data() + 1));
        require(length <= kMostMessage);
        if (left.size() - qsizetype(kHeadSize) < length) {
            break;
        }
        const auto kind = static_cast<Message>(left[0]);
        take(kind, left.sliced(kHeadSize, length));
        left = left.sliced(qsizetype(kHeadSize) + length);
    }
    m_waiting.remove(0, m_waiting.size() - left.size());
}

void JetRows::take(Message kind, QByteArrayView body) {
    require(!m_isEnded && !m_refusal);
    require(m_isStarted || kind == Message::File || kind == Message::Refused);
    switch (kind) {
    case Message::File:
        return takeFile(body);
    case Message::Refused:
        require(!m_isStarted && body.size() == 1 && body[0] >= char(Refusal::NotJet) &&
                body[0] <= char(Refusal::Damaged));
        m_refusal = static_cast<Refusal>(body[0]);
        return;
    case Message::Table:
        return takeTable(body);
    case Message::Row:
        return takeRow(body);
    case Message::BadRow:
        require(m_isInTable && body.isEmpty());
        return m_sink.badRow();
    case Message::TableEnd:
        require(m_isInTable && body.size() == 1);
        m_isInTable = false;
        return m_sink.endTable(body[0] == 0);
    case Message::FileEnd:
        require(!m_isInTable && body.isEmpty());
        m_isEnded = true;
        return;
    }
    require(false);
}

void JetRows::takeFile(QByteArrayView bytes) {
    require(!m_isStarted);
    Body body(bytes);
    const auto version = body.number<quint8>();
    const auto codePage = body.number<quint16>();
    body.end();
    require(version == 3 || version == 4);
    if (version == 3) {
        constexpr int western = 1252;
        const int own = codePage != 0 ? codePage : western;
        m_codePage = m_wantedCodePage != 0 ? m_wantedCodePage : own;
    }
    m_isStarted = true;
}

void JetRows::takeTable(QByteArrayView bytes) {
    require(!m_isInTable);
    Body body(bytes);
    JetTable table;
    table.rows = body.number<quint32>();
    const auto columns = body.number<quint16>();
    require(columns <= kMostColumns);
    for (int i = 0; i < columns; ++i) {
        const auto type = body.number<quint8>();
        require(isType(type));
        table.types.push_back(static_cast<ColumnType>(type));
    }
    table.name = body.name();
    for (int i = 0; i < columns; ++i) {
        table.columns += body.name();
    }
    body.end();
    m_table = std::move(table);
    m_isInTable = true;
    m_sink.beginTable(m_table);
}

void JetRows::takeRow(QByteArrayView bytes) {
    require(m_isInTable);
    Body body(bytes);
    m_row.clear();
    for (const ColumnType type : m_table.types) {
        const auto state = body.number<quint8>();
        const auto length = body.number<quint32>();
        m_row.push_back(cellOf(type, state, body.bytes(length), m_codePage));
    }
    body.end();
    m_sink.row(m_row);
}

} // namespace yrw::jet
