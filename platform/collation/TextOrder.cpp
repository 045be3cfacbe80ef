#include "platform/collation/TextOrder.h"

#include <QCollator>

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

namespace yrw {

namespace {

constexpr qint64 kComparisonsPerStep = 1 << 14;
constexpr size_t kHead = sizeof(quint64);

struct Stopped {};

/// The collator of the user's language; made anew when that changes.
const QCollator& collator() {
    const auto wanted = [] {
        const QLocale users = QLocale().collation();
        return users.language() == QLocale::C ? QLocale(QLocale::English) : users;
    };
    thread_local QCollator made(wanted());
    if (const QLocale locale = wanted(); made.locale() != locale) {
        made.setLocale(locale);
    }
    return made;
}

bool isLetterless(QStringView text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) {
        return c < u'A' || (c > u'Z' && c < u'a') || (c > u'z' && c < QChar(0x7f));
    });
}

/// Texts without letters: their characters as bytes, the first ones behind those that all texts
/// share also as a number.
class PlainKeys {
public:
    explicit PlainKeys(const std::vector<QStringView>& texts) {
        m_texts.reserve(texts.size());
        for (const QStringView text : texts) {
            m_texts.push_back(text.toLatin1().toStdString());
        }
        for (const std::string& text : m_texts) {
            const std::string& first = m_texts.front();
            const size_t most = std::min({m_same, first.size(), text.size()});
            m_same = size_t(
                std::mismatch(first.begin(), first.begin() + long(most), text.begin()).first -
                first.begin());
        }
    }
    [[nodiscard]] quint64 head(size_t place) const {
        const std::string_view text = m_texts[place];
        quint64 head = 0;
        for (size_t i = m_same; i < m_same + kHead; ++i) {
            head = head << 8 | (i < text.size() ? quint8(text[i]) : 0);
        }
        return head;
    }
    [[nodiscard]] int compared(int a, int b) const {
        return m_texts[size_t(a)].compare(m_texts[size_t(b)]);
    }

private:
    std::vector<std::string> m_texts;
    size_t m_same = std::string::npos;
};

/// Texts of a language: keys made once, since comparing two texts costs many times as much.
class LanguageKeys {
public:
    explicit LanguageKeys(const std::vector<QStringView>& texts) {
        const QCollator& language = collator();
        m_keys.reserve(texts.size());
        for (const QStringView text : texts) {
            m_keys.push_back(language.sortKey(QString::fromRawData(text.data(), text.size())));
        }
    }
    [[nodiscard]] static quint64 head(size_t /*place*/) { return 0; }
    [[nodiscard]] int compared(int a, int b) const {
        return m_keys[size_t(a)].compare(m_keys[size_t(b)]);
    }

private:
    std::vector<QCollatorSortKey> m_keys;
};

template <class Keys>
std::optional<std::vector<int>> sorted(const Keys& keys, size_t count, Qt::SortOrder order,
                                       const WorkStep& goesOn) {
    struct Item {
        quint64 head;
        int place;
    };
    std::vector<Item> items;
    items.reserve(count);
    for (size_t place = 0; place < count; ++place) {
        items.push_back({keys.head(place), int(place)});
    }
    const double expected = double(count) * std::log2(double(count) + 2);
    qint64 comparisons = 0;
    const auto isBefore = [&](const Item& a, const Item& b) {
        if (++comparisons % kComparisonsPerStep == 0 && goesOn &&
            !goesOn(std::min(99, int(100.0 * double(comparisons) / expected)))) {
            throw Stopped();
        }
        const int difference =
            a.head != b.head ? (a.head < b.head ? -1 : 1) : keys.compared(a.place, b.place);
        return difference == 0 ? a.place < b.place
                               : (difference < 0) == (order == Qt::AscendingOrder);
    };
    try {
        std::sort(items.begin(), items.end(), isBefore);
    } catch (const Stopped&) {
        return std::nullopt;
    }
    std::vector<int> places;
    places.reserve(count);
    for (const Item& item : items) {
        places.push_back(item.place);
    }
    return places;
}

} // namespace

int compareTexts(QStringView a, QStringView b) {
    return collator().compare(a, b);
}

std::optional<std::vector<int>> orderOf(const std::vector<QStringView>& texts, Qt::SortOrder order,
                                        const WorkStep& goesOn) {
    if (std::all_of(texts.begin(), texts.end(), isLetterless)) {
        return sorted(PlainKeys(texts), texts.size(), order, goesOn);
    }
    return sorted(LanguageKeys(texts), texts.size(), order, goesOn);
}

} // namespace yrw
