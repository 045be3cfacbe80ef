#include "dialogs/frmAutoNotes.h"

#include "platform/forms/Announcement.h"
#include "platform/forms/FontSubstitutes.h"
#include "platform/forms/ScreenMetrics.h"
#include "platform/forms/Twips.h"

#include <QEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScreen>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QTextLayout>

#include <cmath>

namespace yrw {

namespace {

/// The rows' backgrounds, the same in every theme; what is written on them is dark.
constexpr QRgb kHeadingColour = qRgb(0xFF, 0xC0, 0x80);
constexpr QRgb kSubjectColour = qRgb(0xFF, 0xFF, 0x80);

constexpr int kHeadingPoints = 12;
constexpr int kFormPoints = 11;
constexpr QSize kDesignedSize(360, 280);
constexpr QSize kLeastSize(160, 100);
constexpr int kSettleMs = 150;
/// A row's height has that much more than its lines.
constexpr int kRowGap = 5;
constexpr int kCellMargin = 4;
/// What is longer is cut: the list has to be there at once. The notes window shows the whole.
constexpr qsizetype kLongestText = 10'000;

/// Breaks a paragraph into lines of a width, one below the other at a distance; the lines' number.
int breakLines(QTextLayout& paragraph, double width, double distance) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere); // long words too
    paragraph.setTextOption(option);
    paragraph.beginLayout();
    int lines = 0;
    for (QTextLine line = paragraph.createLine(); line.isValid(); line = paragraph.createLine()) {
        line.setLineWidth(qMax(1.0, width));
        line.setPosition(QPointF(0, distance * lines++));
    }
    paragraph.endLayout();
    return qMax(1, lines);
}

/// Paints a cell's text just as its height is measured.
class CellPainter final : public QStyledItemDelegate {
public:
    CellPainter(const Form& form, QObject* parent) : QStyledItemDelegate(parent), m_form(form) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyleOptionViewItem cell = option;
        initStyleOption(&cell, index);
        const bool selected = cell.state.testFlag(QStyle::State_Selected);
        const bool coloured = cell.backgroundBrush.style() != Qt::NoBrush;
        const QPalette::ColorRole text = selected ? QPalette::HighlightedText : QPalette::Text;
        painter->save();
        painter->setClipRect(cell.rect);
        painter->fillRect(cell.rect, selected   ? cell.palette.highlight()
                                     : coloured ? cell.backgroundBrush
                                                : cell.palette.base());
        painter->setPen(coloured && !selected ? QColor(Qt::black) : cell.palette.color(text));
        paintText(*painter, cell);
        painter->restore();
    }

private:
    void paintText(QPainter& painter, const QStyleOptionViewItem& cell) const {
        const int above = kRowGap / 2;
        const QRectF room = QRectF(cell.rect.adjusted(kCellMargin, above, -kCellMargin, 0));
        const int distance = m_form.fontMetrics().height();
        double y = room.top();
        for (const QString& text : cell.text.split(QChar::LineSeparator)) {
            QTextLayout paragraph(text, cell.font);
            const int lines = breakLines(paragraph, room.width(), distance);
            paragraph.draw(&painter, QPointF(room.left(), y));
            y += lines * distance;
        }
    }

    const Form& m_form;
};

QScreen* screenOf(const QPoint& place, const QWidget* host) {
    QScreen* screen = QGuiApplication::screenAt(place);
    if (screen == nullptr && host != nullptr) {
        screen = host->screen();
    }
    return screen != nullptr ? screen : QGuiApplication::primaryScreen();
}

/// What the window system draws around a window; nothing while it is not known.
QMargins frameOf(const QWidget& window) {
    const QRect outside = window.frameGeometry();
    const QRect inside = window.geometry();
    return {inside.left() - outside.left(), inside.top() - outside.top(),
            outside.right() - inside.right(), outside.bottom() - inside.bottom()};
}

} // namespace

frmAutoNotes::Placement frmAutoNotes::possiblePlacement() {
    return QGuiApplication::platformName().startsWith(QStringLiteral("wayland"))
               ? Placement::InsideHost
               : Placement::OwnWindow;
}

frmAutoNotes::frmAutoNotes(Services& services, QWidget* host, Placement placement)
    : Form(QStringLiteral("frmAutoNotes"), host), m_settings(services.settings),
      m_placement(host == nullptr ? Placement::OwnWindow : placement) {
    if (m_placement == Placement::OwnWindow) {
        setWindowFlags(Qt::Tool | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
        // Both windows get their frames from the same hand.
        m_frame = host != nullptr ? frameOf(*host->window()) : QMargins();
    } else {
        setWindowFlags(Qt::SubWindow);
        setSizeGripEnabled(true);
    }
    createControls();
    connectEvents();
    resize(kDesignedSize);
}

frmAutoNotes::~frmAutoNotes() = default;

void frmAutoNotes::AddNote(const QString& Category, qint64 NoteID, const QString& Subject,
                           const QString& NoteText, bool ClearNotes) {
    const QScopedValueRollback<bool> quiet(m_quiet, true);
    if (ClearNotes) {
        flxThis->setRowCount(0);
        m_category.clear();
        m_words.clear();
    }
    QFont bold = font();
    bold.setBold(true);
    if (Category != m_category) {
        QFont heading = bold;
        heading.setPointSize(kHeadingPoints);
        appendRow(Category, 0, heading, kHeadingColour);
        m_category = Category;
        m_words += Category;
    }
    m_words += Subject;
    appendRow(Subject, NoteID, bold, kSubjectColour);
    const bool cut = NoteText.size() > kLongestText;
    appendRow(cut ? QString(NoteText.left(kLongestText) + u'…') : NoteText, NoteID, font(),
              std::nullopt);
}

void frmAutoNotes::SetPosition(int ParentWindowX, int ParentWindowY, int ParentWindowH,
                               int ParentWindowW) {
    m_parentHeight = ParentWindowH;
    m_parentWidth = ParentWindowW;
    const QSize now = frameSizeNow();
    const double height =
        storedSize(setting::kPopupHeight, ParentWindowH, pixelsToTwips(now.height()));
    const double width =
        storedSize(setting::kPopupWidth, ParentWindowW, pixelsToTwips(now.width()));

    const QRect parent(twipsToPixels(ParentWindowX), twipsToPixels(ParentWindowY),
                       twipsToPixels(ParentWindowW), twipsToPixels(ParentWindowH));
    const bool inside = m_placement == Placement::InsideHost;
    const QRect room =
        inside ? parentWidget()->rect() : screenOf(parent.center(), parentWidget())->geometry();
    const int caption = systemMetric(SystemMetric::CaptionHeight);
    const int border = systemMetric(SystemMetric::SizingFrameWidth);
    // A fraction kept from a larger screen must not reach beyond this one.
    const QSize size(
        static_cast<int>(std::lround(qMin<double>(width / kTwipsPerPixel, room.width()))),
        static_cast<int>(
            std::lround(qMin<double>(height / kTwipsPerPixel, room.height() - caption))));
    const int edge = inside ? room.width() : parent.x() + parent.width();
    const int left = qBound(room.left(), edge - size.width() - border,
                            qMax(room.left(), room.left() + room.width() - size.width()));
    moveTo(QRect(QPoint(left, room.top() + caption), size));
    Form_Resize();
}

void frmAutoNotes::ReSizeCellHeight(int MyRow, int MyCol) {
    const QTableWidgetItem* cell = flxThis->item(MyRow, MyCol);
    if (cell == nullptr) {
        return;
    }
    const int lines = wrappedLines(cell->text(), cell->font());
    flxThis->setRowHeight(MyRow, lines * fontMetrics().height() + kRowGap);
}

void frmAutoNotes::ResizeForm() {
    layOutAgain();
}

void frmAutoNotes::present() {
    m_presented = true;
    m_settling.start();
    showModeless(parentWidget(), false);
    constexpr int kMostWords = 8; // nobody listens to more
    QStringList words{windowTitle()};
    words += m_words.mid(0, kMostWords);
    if (const auto more = m_words.size() - kMostWords; more > 0) {
        words += QStringLiteral("%1 more").arg(more);
    }
    setAccessibleDescription(words.join(QStringLiteral(". ")));
    announce(*this, accessibleDescription());
    if (m_placement == Placement::InsideHost) {
        raise();
    }
}

// Event handlers.

void frmAutoNotes::Form_Activate() {
    if (m_settling.isActive()) {
        // Not the user's doing: the keyboard goes back to where it was.
        if (parentWidget() != nullptr && m_placement == Placement::OwnWindow) {
            parentWidget()->activateWindow();
        }
        return;
    }
    if (m_placement == Placement::OwnWindow) {
        activity();
    }
}

void frmAutoNotes::Form_Resize() {
    Q_EMIT CancelFocusCheck();
    if (m_settling.isActive()) {
        m_settling.start();
    } else if (m_presented) {
        m_touched = true;
    }
    layOutAgain();
}

void frmAutoNotes::Form_KeyDown(FormKey& key) {
    if (key.is(Qt::Key_Return) || key.is(Qt::Key_Enter)) {
        key.consumed = true;
        flxThis_DblClick();
    }
}

void frmAutoNotes::Form_KeyUp(FormKey& key) {
    if (key.is(Qt::Key_Escape)) {
        key.consumed = true;
        Q_EMIT UnloadForm();
        unload();
    }
}

void frmAutoNotes::Form_QueryUnload(bool& /*cancel*/) {
    if (isVisible()) {
        Q_EMIT UnloadForm();
        saveSize();
    }
}

void frmAutoNotes::Form_Unload() {
    m_settling.stop();
    if (parentWidget() != nullptr && isWindow() && isActiveWindow()) {
        parentWidget()->activateWindow();
    }
}

void frmAutoNotes::flxThis_DblClick() {
    const QTableWidgetItem* cell = flxThis->currentItem();
    const qint64 noteID = cell != nullptr ? cell->data(Qt::UserRole).toLongLong() : 0;
    if (noteID != 0) {
        Q_EMIT ShowNote(noteID);
    }
}

/// As a part of the host's window the popup is not asked before its controls.
void frmAutoNotes::keyReleaseEvent(QKeyEvent* event) {
    FormKey key{event->key(), event->modifiers()};
    if (!isWindow()) {
        Form_KeyUp(key);
    }
    if (!key.consumed) {
        Form::keyReleaseEvent(event);
    }
}

bool frmAutoNotes::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove:
    case QEvent::Wheel:
        if (watched->isWidgetType() &&
            (watched == this || isAncestorOf(static_cast<QWidget*>(watched)))) {
            activity();
        }
        break;
    default:
        break;
    }
    return Form::eventFilter(watched, event);
}

// Named operations.

void frmAutoNotes::appendRow(const QString& text, qint64 noteID, const QFont& font,
                             std::optional<QRgb> colour) {
    const int row = flxThis->rowCount();
    flxThis->insertRow(row);
    auto* cell = new QTableWidgetItem(
        QString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\r', u'\n'));
    cell->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    cell->setData(Qt::UserRole, noteID);
    cell->setFont(font);
    if (colour) {
        cell->setBackground(QColor::fromRgb(*colour));
        cell->setForeground(QColor(Qt::black));
    }
    flxThis->setItem(row, 0, cell);
    ReSizeCellHeight(row, 0);
}

/// The user does something in the popup.
void frmAutoNotes::activity() {
    if (m_presented && !m_quiet && !isUnloaded()) {
        m_touched = true;
        Q_EMIT CancelFocusCheck();
    }
}

void frmAutoNotes::layOutAgain() {
    const QScopedValueRollback<bool> quiet(m_quiet, true);
    flxThis->setUpdatesEnabled(false);
    flxThis->setGeometry(rect());
    flxThis->setColumnWidth(0, flxThis->width() - systemMetric(SystemMetric::VerticalScrollArrow) -
                                   2 * flxThis->frameWidth());
    refitRows();
    flxThis->setUpdatesEnabled(true);
}

void frmAutoNotes::refitRows() {
    for (int row = 0; row < flxThis->rowCount(); ++row) {
        ReSizeCellHeight(row, 0);
    }
}

int frmAutoNotes::wrappedLines(const QString& text, const QFont& font) const {
    const double width = flxThis->columnWidth(0) - 2 * kCellMargin;
    int lines = 0;
    for (const QString& each : text.split(u'\n')) {
        QTextLayout paragraph(each, font);
        lines += breakLines(paragraph, width, 0);
    }
    return lines;
}

/// Twips of a stored fraction of the parent's size; the size of now where there is no good one.
double frmAutoNotes::storedSize(const setting::MaybeReal& which, int parentSize, int current) {
    if (parentSize <= 0) {
        return current;
    }
    const double size = m_settings.get(which).value_or(0) * parentSize;
    if (!std::isfinite(size) || size <= 0) {
        m_settings.remove(which);
        return current;
    }
    return size;
}

QSize frmAutoNotes::frameSizeNow() const {
    return size().grownBy(m_frame);
}

void frmAutoNotes::moveTo(const QRect& place) {
    resize(place.size().shrunkBy(m_frame).expandedTo(minimumSize()));
    // Where the least size is the larger one, the right edge stays where it belongs.
    move(place.right() + 1 - frameSizeNow().width(), place.top());
}

void frmAutoNotes::saveSize() {
    const QSize now = frameSizeNow();
    const auto save = [this](const setting::MaybeReal& which, int size, int parentSize) {
        if (parentSize > 0) {
            const double fraction = static_cast<double>(pixelsToTwips(size)) / parentSize;
            m_settings.set(which, fraction);
        }
    };
    save(setting::kPopupHeight, now.height(), m_parentHeight);
    save(setting::kPopupWidth, now.width(), m_parentWidth);
}

// Controls.

void frmAutoNotes::createControls() {
    setWindowTitle(QStringLiteral("Automatic Notes"));
    setAccessibleName(windowTitle());
    installFontSubstitutes();
    setFont(QFont(QStringLiteral("Comic Sans MS"), kFormPoints));
    setMinimumSize(kLeastSize);
    setAutoFillBackground(true);
    flxThis = new QTableWidget(0, 1, this);
    flxThis->setObjectName(QStringLiteral("flxThis"));
    flxThis->setAccessibleName(QStringLiteral("Automatic notes"));
    flxThis->setAccessibleDescription(QStringLiteral("Enter opens the note"));
    flxThis->setFont(font());
    flxThis->setItemDelegate(new CellPainter(*this, flxThis));
    flxThis->horizontalHeader()->hide();
    flxThis->verticalHeader()->hide();
    flxThis->verticalHeader()->setMinimumSectionSize(1);
    flxThis->setShowGrid(false);
    flxThis->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // the column leaves its place
    flxThis->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    flxThis->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    flxThis->setSelectionMode(QAbstractItemView::SingleSelection);
    flxThis->setEditTriggers(QAbstractItemView::NoEditTriggers);
    flxThis->setTabKeyNavigation(false);
    flxThis->setFocusPolicy(Qt::ClickFocus);
    flxThis->viewport()->setMouseTracking(true);
    if (!isWindow()) {
        flxThis->viewport()->installEventFilter(this); // a form sees only its own window's events
    }
}

void frmAutoNotes::connectEvents() {
    m_settling.setSingleShot(true);
    m_settling.setInterval(kSettleMs);
    connect(&m_settling, &QTimer::timeout, this, [this] {
        if (!m_touched) {
            Q_EMIT settled();
        }
    });
    connect(flxThis, &QTableWidget::cellDoubleClicked, this, [this] { flxThis_DblClick(); });
    connect(flxThis, &QTableWidget::itemSelectionChanged, this, [this] { activity(); });
    connect(flxThis->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { activity(); });
}

} // namespace yrw
