#include "platform/rtf/Fields.h"
#include "platform/rtf/Parser.h"
#include "platform/rtf/WordValues.h"

// Words that open a group of another kind than text.

namespace yrw::rtf {

void Parser::skipHere() {
    if (m_state.fresh && !m_stack.empty()) {
        const bool closed = m_tokens.skipGroup();
        m_document.incomplete = m_document.incomplete || !closed;
        m_state = m_stack.back();
        m_stack.pop_back();
    } else if (m_stack.size() > 1) {
        m_state.destination = Destination::Skip;
    }
}

void Parser::destination(const Token&, int value) {
    const auto wanted = static_cast<Destination>(value);
    if (wanted == Destination::Skip) {
        skipHere();
        return;
    }
    if (wanted == Destination::Body || m_stack.size() < 2) {
        return; // text goes where the group around it sends it
    }
    if (wanted == Destination::NestedRow && !inBody()) {
        skipHere();
        return;
    }
    if (wanted == Destination::Pn) {
        m_pn = ParFormat{};
    } else if (wanted == Destination::ColourTable) {
        m_document.colours.clear();
    } else if (wanted == Destination::ListLevelText && m_levels.empty()) {
        skipHere();
        return;
    }
    m_state.destination = wanted;
}

void Parser::keepHere(const Token& token, int) {
    if (!m_state.fresh || m_stack.size() < 2 || !inBody()) {
        skipHere();
        return;
    }
    if (m_builder.isEmpty() && m_stack.size() == 2) {
        keepInHeader(token, 0);
        return;
    }
    const QByteArray group = takeGroup();
    addInline(InlineKind::Kept, group);
}

void Parser::keepInHeader(const Token&, int) {
    if (!m_state.fresh || m_stack.size() < 2 || !inBody()) {
        skipHere();
        return;
    }
    m_document.kept.push_back(takeGroup());
}

void Parser::picture(const Token&, int value) {
    const bool second = value == kPlainerPicture && m_pictureEnd == m_document.text.size();
    if (!m_state.fresh || m_stack.size() < 2 || !inBody() || second) {
        skipHere();
        return;
    }
    const InlineKind kind =
        value == static_cast<int>(InlineKind::Object) ? InlineKind::Object : InlineKind::Picture;
    const QByteArray group = takeGroup();
    addInline(kind, group);
    m_pictureEnd = value == kBetterPicture ? m_document.text.size() : -1;
}

void Parser::field(const Token&, int) {
    m_state.isField = m_state.fresh;
    m_state.fieldStart = m_document.text.size();
    m_state.fieldParagraph = m_document.paragraphs.size();
}

void Parser::instruction(const Token&, int) {
    if (!m_state.fresh || m_stack.size() < 3 || !inBody()) {
        skipHere();
        return;
    }
    const QByteArray group = takeGroup();
    m_state.field = m_builder.field(fieldOf(group));
    m_state.ownsField = m_state.isField && m_state.fieldStart == m_document.text.size();
}

} // namespace yrw::rtf
