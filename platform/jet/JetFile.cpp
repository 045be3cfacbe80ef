#include "platform/jet/JetFile.h"

#include "platform/component/AutomationError.h"
#include "platform/jet/ReaderProcess.h"

#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>

#include <dlfcn.h>

namespace yrw::jet {

namespace {

const QString kSource = QStringLiteral("YRWNOTES.JetFile");
constexpr qint64 kMiB = 1 << 20;
constexpr int kSliceMs = 50;

// A file of some megabytes is read in a blink; one that keeps a reader busy for longer is damaged.
constexpr qint64 kSecondsForAny = 10;
constexpr qint64 kMiBPerSecond = 2;
constexpr qint64 kMemoryForAnyMiB = 384;

/// The program that reads, beside the file that this code was loaded from.
QString readerBeside() {
    static const char anchor = 0;
    Dl_info info{};
    if (::dladdr(&anchor, &info) == 0 || info.dli_fname == nullptr) {
        return {};
    }
    return QFileInfo(QFile::decodeName(info.dli_fname)).absolutePath() +
           QStringLiteral("/yrwnotes-jetreader");
}

/// Reads one file with as many processes as it takes.
class FileReading final : private JetSink {
public:
    FileReading(const QString& path, const JetReading& reading, JetSink& sink)
        : m_path(path), m_reading(reading), m_sink(sink), m_file(path), m_wanted(reading.tables) {
        if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
            throw AutomationError(
                kErrorCannotOpenDatabase, kSource,
                QStringLiteral("%1 could not be opened: %2").arg(path, m_file.errorString()));
        }
        m_sizeMiB = m_file.size() / kMiB + 1;
        m_msLeft = 1000 * (kSecondsForAny + m_sizeMiB);
    }

    JetEnd run() {
        while (runOnce()) {
        }
        if (m_isStopped) {
            return JetEnd::Stopped;
        }
        if (!m_hasTables) {
            raiseUnreadable({});
        }
        return JetEnd::Read;
    }

private:
    /// Runs a reader; true when it was lost, and another one is to go on behind the table that it
    /// was lost in. Each one has a table less before it.
    bool runOnce() {
        JetRows rows(*this, m_reading.codePage, 8 * m_file.size() + kMiB);
        const qsizetype wanted = m_wanted.size();
        follow(rows);
        if (m_isStopped || rows.isEnded()) {
            return false;
        }
        if (!rows.isStarted()) {
            raiseUnreadable(rows.refusal());
        }
        if (m_wanted.size() == wanted && !m_wanted.isEmpty()) {
            m_wanted.removeFirst(); // that is what it was about to begin
        }
        endTable(false);
        return !m_wanted.isEmpty() && m_msLeft > 0;
    }

    void follow(JetRows& rows) {
        ReaderProcess process(m_reading.reader.isEmpty() ? readerBeside() : m_reading.reader,
                              arguments(), m_file.handle());
        qint64 silentMs = 0;
        while (!process.isAtEnd() && !rows.isEnded() && !rows.refusal()) {
            const qint64 before = m_reading.clock.monotonicMs();
            const QByteArray bytes = process.read(kSliceMs);
            const qint64 waited = m_reading.clock.monotonicMs() - before;
            m_msLeft -= waited;
            silentMs = bytes.isEmpty() ? silentMs + waited : 0;
            if (silentMs > m_reading.mostSilentMs || m_msLeft <= 0) {
                return;
            }
            if (!feed(rows, bytes)) {
                return;
            }
            m_isStopped = !m_reading.step();
            if (m_isStopped) {
                return;
            }
        }
    }

    /// False when the reader talks nonsense.
    bool feed(JetRows& rows, const QByteArray& bytes) {
        try {
            rows.feed(bytes);
            return true;
        } catch (const AutomationError& error) {
            if (error.source() != u"YRWNOTES.JetRows") {
                throw;
            }
            return false;
        }
    }

    [[nodiscard]] QStringList arguments() const {
        return QStringList{QString::number(kSecondsForAny + m_sizeMiB / kMiBPerSecond),
                           QString::number(kMemoryForAnyMiB + 3 * m_sizeMiB)} +
               m_wanted;
    }

    [[noreturn]] void raiseUnreadable(std::optional<Refusal> refusal) const {
        QString text = QStringLiteral("%1 is damaged; nothing can be read of it.");
        if (refusal == Refusal::NotJet) {
            text = QStringLiteral("%1 is no notes database of the older format.");
        } else if (refusal == Refusal::OtherVersion) {
            text = QStringLiteral("%1 is of a version that cannot be read; versions 3 and 4 can.");
        }
        throw AutomationError(kErrorNotADatabase, kSource, text.arg(m_path));
    }

    void beginTable(const JetTable& table) override {
        m_hasTables = true;
        const QString name = table.name.toLower();
        m_isPassedOver = m_seen.contains(name);
        if (!m_isPassedOver) {
            m_seen.insert(name);
            m_isOpen = true;
            m_sink.beginTable(table);
        }
        m_wanted.removeIf([&](const QString& other) { return other.toLower() == name; });
    }
    void row(const JetRow& row) override {
        if (!m_isPassedOver) {
            m_sink.row(row);
        }
    }
    void badRow() override {
        if (!m_isPassedOver) {
            m_sink.badRow();
        }
    }
    void endTable(bool isWhole) override {
        if (m_isOpen) {
            m_isOpen = false;
            m_sink.endTable(isWhole);
        }
    }

    QString m_path;
    const JetReading& m_reading;
    JetSink& m_sink;
    QFile m_file;
    qint64 m_sizeMiB = 0;
    qint64 m_msLeft = 0;  ///< for waiting on readers
    QStringList m_wanted; ///< tables whose rows are still to come
    QSet<QString> m_seen; ///< tables that have come, in lower case
    bool m_hasTables = false;
    bool m_isPassedOver = false;
    bool m_isOpen = false; ///< a table that the sink was told of
    bool m_isStopped = false;
};

} // namespace

bool isJetFile(const QString& path) {
    QFile file(path);
    constexpr QByteArrayView sign("\0\1\0\0Standard Jet DB\0", 20);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) &&
           file.read(sign.size()) == sign;
}

JetEnd readJetFile(const QString& path, const JetReading& reading, JetSink& sink) {
    return FileReading(path, reading, sink).run();
}

} // namespace yrw::jet
