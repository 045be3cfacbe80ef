#include "platform/forms/FontColourDialog.h"

#include "platform/forms/Contrast.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGroupBox>
#include <QLineEdit>
#include <QListView>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>

namespace yrw {

namespace {

constexpr int kSwatch = 14; ///< pixels

/// The plainest style of a family with that weight and slope; empty when it has none.
QString styleOf(const QString& family, bool bold, bool italic) {
    QString found;
    for (const QString& style : QFontDatabase::styles(family)) {
        const int weight = QFontDatabase::weight(family, style);
        const bool fits = weight == (bold ? QFont::Bold : QFont::Normal) &&
                          QFontDatabase::italic(family, style) == italic;
        if (fits && (found.isEmpty() || style.size() < found.size())) {
            found = style;
        }
    }
    return found;
}

QFont fontOf(const FontChoice& choice) {
    QFont font(choice.name);
    font.setPointSizeF(choice.points > 0 ? choice.points : 10);
    font.setBold(choice.bold);
    font.setItalic(choice.italic);
    font.setUnderline(choice.underline);
    font.setStrikeOut(choice.strikethru);
    // A font that the screen lacks would lose its style in the dialog; its substitute keeps it.
    const QString family = QFontInfo(font).family();
    font.setFamilies({family});
    // Families name their upright style in many ways, and the dialog knows few of them.
    font.setStyleName(styleOf(family, choice.bold, choice.italic));
    return font;
}

template <class Part>
Part* partOf(const QWidget& of, int index) {
    return of.findChildren<Part*>(QString(), Qt::FindDirectChildrenOnly).value(index);
}

/// Shows nothing in a list and its field, without a word to the dialog.
void showNone(QAbstractItemView& list, QLineEdit& field) {
    const QSignalBlocker quiet(field);
    list.clearSelection(); // it still stands somewhere, else it would go to its first row
    field.clear();
    field.setPlaceholderText(FontColourDialog::tr("several"));
}

} // namespace

FontColourDialog::FontColourDialog(const FontChoice& start, ColourQuestion askColour)
    : m_start(start), m_askColour(std::move(askColour)), m_colour(start.colour) {
    setOption(QFontDialog::DontUseNativeDialog); // which has no colour
    setCurrentFont(fontOf(start));
    m_begun = currentFont().family();
    addColourButton();
    watchList(0, FontPart::Name);
    watchList(1, FontPart::Bold | FontPart::Italic);
    watchList(2, FontPart::Points);
    if (const auto* effects = partOf<QGroupBox>(*this, 0)) {
        watchBox(partOf<QCheckBox>(*effects, 0), FontPart::Strikethru);
        watchBox(partOf<QCheckBox>(*effects, 1), FontPart::Underline);
    }
}

void FontColourDialog::addColourButton() {
    m_cmdColour = new QPushButton(tr("&Colour..."));
    m_cmdColour->setObjectName(QStringLiteral("cmdColour"));
    m_cmdColour->setAccessibleName(tr("Colour"));
    m_cmdColour->setAutoDefault(false);
    connect(m_cmdColour, &QPushButton::clicked, this, &FontColourDialog::askForColour);
    const auto* effects = partOf<QGroupBox>(*this, 0);
    auto* const room = qobject_cast<QBoxLayout*>(effects == nullptr ? layout() : effects->layout());
    if (room != nullptr) {
        room->addWidget(m_cmdColour);
    } else {
        m_cmdColour->setParent(this);
    }
    showColour();
}

/// A list of the dialog and its field: what the user picks there is chosen, also what stood there
/// at first.
void FontColourDialog::watchList(int index, FontParts parts) {
    auto* const list = partOf<QListView>(*this, index);
    auto* const field = partOf<QLineEdit>(*this, index);
    if (list == nullptr || field == nullptr) {
        return;
    }
    if (m_start.mixed & parts) {
        showNone(*list, *field);
    }
    const auto choose = [this, parts] { m_chosen |= parts; };
    connect(list, &QListView::clicked, this, choose);
    connect(field, &QLineEdit::textEdited, this, choose);
    connect(list->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [choose, list, field] {
                // The dialog moves the other lists after the one that the user is in.
                if (list->hasFocus() || field->hasFocus()) {
                    choose();
                }
            });
}

void FontColourDialog::watchBox(QCheckBox* box, FontPart part) {
    if (box == nullptr) {
        return;
    }
    if (m_start.mixed & part) {
        const QSignalBlocker quiet(box);
        box->setCheckState(Qt::PartiallyChecked);
    }
    connect(box, &QCheckBox::clicked, this, [this, box, part] {
        box->setTristate(false);
        m_chosen |= part;
    });
}

void FontColourDialog::askForColour() {
    if (const std::optional<int> colour = m_askColour(m_colour)) {
        m_colour = *colour;
        m_chosen |= FontPart::Colour;
        showColour();
    }
}

void FontColourDialog::showColour() {
    const bool several =
        m_start.mixed.testFlag(FontPart::Colour) && !m_chosen.testFlag(FontPart::Colour);
    const bool automatic = m_colour == 0;
    const QColor colour = automatic ? palette().color(QPalette::Text) : colourOfBgr(m_colour);
    m_cmdColour->setAccessibleDescription(several     ? tr("several")
                                          : automatic ? tr("automatic")
                                                      : colour.name());
    m_cmdColour->setIconSize(QSize(kSwatch, kSwatch));
    QPixmap swatch(QSize(kSwatch, kSwatch) * devicePixelRatioF());
    swatch.setDevicePixelRatio(devicePixelRatioF());
    swatch.fill(several ? Qt::transparent : colour);
    QPainter painter(&swatch);
    painter.setPen(palette().color(QPalette::ButtonText));
    painter.drawRect(0, 0, kSwatch - 1, kSwatch - 1);
    painter.end();
    m_cmdColour->setIcon(swatch);
    const auto* sampleBox = partOf<QGroupBox>(*this, 1);
    if (auto* sample = sampleBox == nullptr ? nullptr : sampleBox->findChild<QLineEdit*>()) {
        QPalette shown = sample->palette();
        shown.setColor(QPalette::Text, several ? palette().color(QPalette::Text) : colour);
        sample->setPalette(shown);
    }
}

FontChoice FontColourDialog::choice() const {
    const QFont now = currentFont();
    const bool otherName = now.family() != m_begun;
    const bool hadName = !m_start.name.isEmpty() && !m_start.mixed.testFlag(FontPart::Name);
    FontChoice result = m_start;
    // The dialog rounds sizes and changes styles by itself: only what the user acted on counts.
    const auto take = [&](FontPart part, auto& value, const auto& chosen) {
        if (m_chosen.testFlag(part)) {
            value = chosen;
            result.mixed.setFlag(part, false);
        }
    };
    if (otherName || (m_chosen.testFlag(FontPart::Name) && !hadName)) {
        result.name = now.family();
        result.mixed.setFlag(FontPart::Name, false);
    }
    take(FontPart::Bold, result.bold, now.bold());
    take(FontPart::Italic, result.italic, now.italic());
    take(FontPart::Points, result.points, now.pointSizeF());
    take(FontPart::Underline, result.underline, now.underline());
    take(FontPart::Strikethru, result.strikethru, now.strikeOut());
    take(FontPart::Colour, result.colour, m_colour);
    return result;
}

} // namespace yrw
