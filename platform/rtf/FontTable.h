#pragma once

#include "platform/rtf/Builder.h"
#include "platform/rtf/Tokenizer.h"

#include <functional>
#include <unordered_map>
#include <utility>

namespace yrw::rtf {

/// The font table of a document that is read. `useDefault` is called, each time that the default
/// font becomes known, with what is read in it from then on.
/// Thread: one at a time.
class FontTable {
public:
    /// A font as an index into `Document::fonts`, and its code page; 0: the document's.
    struct Choice {
        int font = 0;
        int codePage = 0;
    };

    FontTable(Document& document, Builder& builder, std::function<void(const Choice&)> useDefault)
        : m_document(document), m_builder(builder), m_useDefault(std::move(useDefault)) {}

    /// What stands in the table: the number that begins a font, the words about it and its name,
    /// up to the semicolon or the end of its group.
    void begin(int number);
    void word(const Token& token, int value);
    void name(QStringView text);
    void end();
    /// The code page of that name.
    [[nodiscard]] int namePage(int documentPage) const;

    void setDefault(int number);
    /// Makes a default font up where the table has none.
    void ensureDefault();
    [[nodiscard]] Choice defaultFont() const;
    /// The font of a number, else the default one.
    [[nodiscard]] Choice font(int number) const;

private:
    [[nodiscard]] int pageOf(int number) const;

    Document& m_document;
    Builder& m_builder;
    std::function<void(const Choice&)> m_useDefault;
    int m_default = 0; ///< its number
    Font m_font;       ///< that is read
    int m_page = 0;    ///< its code page
    bool m_open = false;
    std::unordered_map<int, int> m_pages; ///< code page by font number
};

} // namespace yrw::rtf
