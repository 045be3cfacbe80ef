#include "platform/controls/TextOrder.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

namespace yrw {

namespace {

constexpr qint64 kComparisonsPerStep = 1 << 14;
constexpr size_t kHead = sizeof(quint64);

struct Stopped {};

/// One text to be ordered: the bytes of its folded letters, and their first ones as a number.
struct Key {
    quint64 head = 0; ///< the first bytes behind those that all texts share
    size_t start = 0;
    size_t length = 0;
    size_t written = 0; ///< bytes of the letters as written, behind the folded ones
    int place = 0;
};

/// Appends a unit of a text that is no ASCII letter: behind all of those.
void appendUnit(std::string& bytes, char16_t unit) {
    bytes += char(0x80);
    bytes += char(unit >> 8);
    bytes += char(unit & 0xff);
}

/// Appends a text so that comparing the bytes compares the folded letters.
void appendFolded(std::string& bytes, QStringView text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        char32_t letter = text[i].unicode();
        if (letter < 0x80) {
            bytes += char(letter >= 'A' && letter <= 'Z' ? letter + 0x20 : letter);
            continue;
        }
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            letter = QChar::surrogateToUcs4(text[i], text[i + 1]);
            ++i;
        }
        letter = QChar::toCaseFolded(letter);
        if (letter < 0x80) {
            bytes += char(letter);
        } else if (!QChar::requiresSurrogates(letter)) {
            appendUnit(bytes, char16_t(letter));
        } else {
            appendUnit(bytes, QChar::highSurrogate(letter));
            appendUnit(bytes, QChar::lowSurrogate(letter));
        }
    }
}

/// Appends a text so that comparing the bytes compares its letters as they are written.
void appendWritten(std::string& bytes, QStringView text) {
    for (const QChar letter : text) {
        bytes += char(letter.unicode() >> 8);
        bytes += char(letter.unicode() & 0xff);
    }
}

/// Sorts keys made once, since a comparison of folded texts costs many times one of bytes.
class Sorter {
public:
    Sorter(const std::vector<QStringView>& texts, Qt::SortOrder order, const WorkStep& goesOn)
        : m_ascending(order == Qt::AscendingOrder), m_goesOn(goesOn) {
        m_keys.reserve(texts.size());
        for (size_t place = 0; place < texts.size(); ++place) {
            const size_t start = m_bytes.size();
            appendFolded(m_bytes, texts[place]);
            const size_t folded = m_bytes.size() - start;
            appendWritten(m_bytes, texts[place]);
            m_keys.push_back({0, start, folded, m_bytes.size() - start - folded, int(place)});
        }
        const size_t same = commonStart();
        for (Key& key : m_keys) {
            key.head = headOf(key, same);
        }
    }

    [[nodiscard]] std::optional<std::vector<int>> sort() {
        const double count = double(m_keys.size());
        m_expected = count * std::log2(count + 2);
        try {
            std::sort(m_keys.begin(), m_keys.end(),
                      [this](const Key& a, const Key& b) { return isBefore(a, b); });
        } catch (const Stopped&) {
            return std::nullopt;
        }
        std::vector<int> places;
        places.reserve(m_keys.size());
        for (const Key& key : m_keys) {
            places.push_back(key.place);
        }
        return places;
    }

private:
    /// Bytes with which all texts begin: they tell none apart.
    [[nodiscard]] size_t commonStart() const {
        size_t same = m_keys.empty() ? 0 : m_keys.front().length;
        for (const Key& key : m_keys) {
            const char* first = m_bytes.data() + m_keys.front().start;
            const char* own = m_bytes.data() + key.start;
            same = std::min(same, key.length);
            same = size_t(std::mismatch(first, first + same, own).first - first);
        }
        return same;
    }
    [[nodiscard]] quint64 headOf(const Key& key, size_t from) const {
        quint64 head = 0;
        for (size_t i = from; i < from + kHead; ++i) {
            head = head << 8 | (i < key.length ? quint8(m_bytes[key.start + i]) : 0);
        }
        return head;
    }
    [[nodiscard]] int compared(const Key& a, const Key& b) const {
        if (a.head != b.head) {
            return a.head < b.head ? -1 : 1;
        }
        const char* bytes = m_bytes.data();
        const int folded =
            std::memcmp(bytes + a.start, bytes + b.start, std::min(a.length, b.length));
        if (folded != 0 || a.length != b.length) {
            return folded != 0 ? folded : a.length < b.length ? -1 : 1;
        }
        const int written = std::memcmp(bytes + a.start + a.length, bytes + b.start + b.length,
                                        std::min(a.written, b.written));
        return written != 0 ? written : int(a.written > b.written) - int(a.written < b.written);
    }
    [[nodiscard]] bool isBefore(const Key& a, const Key& b) {
        if (++m_comparisons % kComparisonsPerStep == 0 && m_goesOn &&
            !m_goesOn(std::min(99, int(100.0 * double(m_comparisons) / m_expected)))) {
            throw Stopped();
        }
        const int difference = compared(a, b);
        if (difference == 0) {
            return a.place < b.place;
        }
        return (difference < 0) == m_ascending;
    }

    bool m_ascending;
    const WorkStep& m_goesOn;
    std::string m_bytes;
    std::vector<Key> m_keys;
    qint64 m_comparisons = 0;
    double m_expected = 1;
};

} // namespace

int compareTexts(QStringView a, QStringView b) {
    // Texts of one column often begin alike; what is the same needs no folding.
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    qsizetype same = inA - a.begin();
    if (same > 0 && a[same - 1].isHighSurrogate()) {
        --same;
    }
    const QStringView restA = a.mid(same);
    const QStringView restB = b.mid(same);
    const int folded = restA.compare(restB, Qt::CaseInsensitive);
    return folded != 0 ? folded : restA.compare(restB, Qt::CaseSensitive);
}

std::optional<std::vector<int>> orderOf(const std::vector<QStringView>& texts, Qt::SortOrder order,
                                        const WorkStep& goesOn) {
    return Sorter(texts, order, goesOn).sort();
}

} // namespace yrw
