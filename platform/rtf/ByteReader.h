#pragma once

#include <QByteArrayView>
#include <QtEndian>

#include <algorithm>

namespace yrw::rtf {

/// Reads little-endian data. Every read checks what is left; after the first that does not fit,
/// all give nothing and `failed` is true.
///
/// The bytes must outlive the reader.
/// Thread: one at a time.
class ByteReader {
public:
    explicit ByteReader(QByteArrayView bytes) : m_left(bytes) {}

    [[nodiscard]] bool failed() const { return m_failed; }
    [[nodiscard]] qsizetype left() const { return m_left.size(); }

    quint16 u16() {
        const QByteArrayView bytes = take(2);
        return bytes.isEmpty() ? quint16(0) : qFromLittleEndian<quint16>(bytes.data());
    }
    quint32 u32() {
        const QByteArrayView bytes = take(4);
        return bytes.isEmpty() ? 0U : qFromLittleEndian<quint32>(bytes.data());
    }
    /// That many bytes.
    QByteArrayView take(qint64 count) {
        if (m_failed || count < 0 || count > m_left.size()) {
            m_failed = true;
            return {};
        }
        const QByteArrayView taken = m_left.first(static_cast<qsizetype>(count));
        m_left = m_left.sliced(static_cast<qsizetype>(count));
        return taken;
    }
    /// Bytes up to a NUL, which is passed over.
    QByteArrayView text() {
        const qsizetype end = m_left.indexOf('\0');
        const QByteArrayView taken = take(end);
        take(end < 0 ? 0 : 1);
        return taken;
    }
    /// A text whose length, its NUL included, stands before it.
    QByteArrayView countedText() {
        const QByteArrayView taken = take(u32());
        return taken.endsWith('\0') ? taken.chopped(1) : taken;
    }

private:
    QByteArrayView m_left;
    bool m_failed = false;
};

} // namespace yrw::rtf
