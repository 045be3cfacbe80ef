#include "platform/forms/WidgetPrompt.h"

#include "platform/clock/Clock.h"
#include "platform/forms/BoxText.h"
#include "platform/forms/DrawnIcons.h"
#include "platform/forms/FileFilter.h"
#include "platform/forms/FontColourDialog.h"
#include "platform/forms/Form.h"
#include "platform/forms/KeyboardBack.h"
#include "platform/forms/PageMargins.h"
#include "platform/forms/Readable.h"
#include "platform/forms/ScreenMetrics.h"
#include "platform/prompt/ErrorLog.h"

#include <QApplication>
#include <QColorDialog>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHash>
#include <QLabel>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPushButton>
#include <QScopeGuard>
#include <QStyle>

#include <memory>

namespace yrw {

namespace {

const QString kBoxName = QStringLiteral("promptBox");

QString withLineBreaks(QString text) {
    return text.replace(QLatin1String("\r\n"), QLatin1String("\n"))
        .replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

/// Puts the program's own drawing in the place of the style's icon.
void drawIcon(const QMessageBox& box, PromptIcon icon) {
    static const QHash<PromptIcon, QString> names{
        {PromptIcon::Information, QStringLiteral("dialog-information")},
        {PromptIcon::Question, QStringLiteral("dialog-question")},
        {PromptIcon::Exclamation, QStringLiteral("dialog-warning")},
        {PromptIcon::Critical, QStringLiteral("dialog-error")}};
    auto* const label = box.findChild<QLabel*>(QStringLiteral("qt_msgboxex_icon_label"));
    if (label != nullptr && icon != PromptIcon::None) {
        const int size = box.style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, &box);
        label->setPixmap(
            drawnIcon(names.value(icon)).pixmap(QSize(size, size), box.devicePixelRatioF()));
    }
}

QMessageBox::Icon iconOf(PromptIcon icon) {
    switch (icon) {
    case PromptIcon::Information:
        return QMessageBox::Information;
    case PromptIcon::Question:
        return QMessageBox::Question;
    case PromptIcon::Exclamation:
        return QMessageBox::Warning;
    case PromptIcon::Critical:
        return QMessageBox::Critical;
    case PromptIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons buttonsOf(PromptButtons buttons) {
    switch (buttons) {
    case PromptButtons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case PromptButtons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case PromptButtons::OkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case PromptButtons::Ok:
        break;
    }
    return QMessageBox::Ok;
}

QMessageBox::StandardButton buttonOf(PromptAnswer answer) {
    switch (answer) {
    case PromptAnswer::Yes:
        return QMessageBox::Yes;
    case PromptAnswer::No:
        return QMessageBox::No;
    case PromptAnswer::Cancel:
        return QMessageBox::Cancel;
    case PromptAnswer::Ok:
        break;
    }
    return QMessageBox::Ok;
}

PromptAnswer answerOf(int button) {
    switch (button) {
    case QMessageBox::Yes:
        return PromptAnswer::Yes;
    case QMessageBox::No:
        return PromptAnswer::No;
    case QMessageBox::Cancel:
        return PromptAnswer::Cancel;
    default:
        return PromptAnswer::Ok;
    }
}

/// The button that changes nothing.
QMessageBox::StandardButton escapeOf(PromptButtons buttons) {
    switch (buttons) {
    case PromptButtons::YesNo:
        return QMessageBox::No;
    case PromptButtons::Ok:
        return QMessageBox::Ok;
    default:
        return QMessageBox::Cancel;
    }
}

void nameButtons(const QMessageBox& box) {
    for (QAbstractButton* const button : box.buttons()) {
        button->setAccessibleName(QString(button->text()).remove(u'&'));
    }
}

std::unique_ptr<QMessageBox> makeBox(const QString& text, const QString& title, PromptIcon icon) {
    auto box = std::make_unique<QMessageBox>();
    box->setTextFormat(Qt::PlainText);
    box->setText(withLineBreaks(text));
    box->setWindowTitle(title);
    box->setIcon(iconOf(icon));
    drawIcon(*box, icon);
    return box;
}

QString detailsOf(const ErrorReport& report) {
    QString details = withLineBreaks(report.description);
    if (!report.source.isEmpty()) {
        details +=
            u"\n\n" + QCoreApplication::translate("WidgetPrompt", "Source: %1").arg(report.source);
    }
    if (report.number != 0) {
        details +=
            u'\n' + QCoreApplication::translate("WidgetPrompt", "Number: %1").arg(report.number);
    }
    return details.trimmed();
}

} // namespace

/// One dialog of the prompt while it is open: shows it over its owner, with the usual pointer.
class WidgetPrompt::OpenBox {
public:
    explicit OpenBox(WidgetPrompt& prompt) : m_prompt(prompt), m_pointer(prompt.m_pointer) {
        m_prompt.setMousePointer(MousePointer::Default);
    }
    OpenBox(const OpenBox&) = delete;
    OpenBox& operator=(const OpenBox&) = delete;
    ~OpenBox() { m_prompt.setMousePointer(m_pointer); }

    /// The box's result. It is not deleted with its owner, since the caller holds it.
    int exec(QDialog& box) const {
        const QPointer<QWidget> owner(m_prompt.owner());
        if (owner != nullptr) {
            box.setParent(owner.data(), box.windowFlags());
            box.setWindowIcon(owner->windowIcon());
            QObject::connect(owner.data(), &QObject::destroyed, &box, [&box](QObject* gone) {
                if (box.parent() == gone) {
                    box.setParent(nullptr, box.windowFlags());
                    box.reject();
                }
            });
        }
        keepReadable(box);
        box.setObjectName(kBoxName);
        const int result = box.exec();
        giveKeyboardBack(owner);
        return result;
    }

private:
    WidgetPrompt& m_prompt;
    MousePointer m_pointer;
};

WidgetPrompt::WidgetPrompt(const Clock& clock) : m_clock(clock) {}

WidgetPrompt::~WidgetPrompt() = default;

QWidget* WidgetPrompt::owner() const {
    if (QWidget* const modal = QApplication::activeModalWidget()) {
        return modal;
    }
    QWidget* const active = QApplication::activeWindow();
    if (m_parent.isNull() || qobject_cast<Form*>(active) != nullptr) {
        return active;
    }
    return m_parent->window();
}

void WidgetPrompt::message(const QString& text, const QString& title, PromptIcon icon) {
    question(text, title, PromptButtons::Ok, icon, PromptAnswer::Ok);
}

PromptAnswer WidgetPrompt::question(const QString& text, const QString& title,
                                    PromptButtons buttons, PromptIcon icon,
                                    PromptAnswer defaultAnswer) {
    const auto box = makeBox(text, title, icon);
    box->setStandardButtons(buttonsOf(buttons));
    box->setDefaultButton(buttonOf(defaultAnswer));
    box->setEscapeButton(escapeOf(buttons));
    nameButtons(*box);
    fitToScreen(*box, owner());
    const int pressed = OpenBox(*this).exec(*box);
    return answerOf(pressed == 0 ? int(escapeOf(buttons)) : pressed);
}

int WidgetPrompt::choose(const ChoiceRequest& request) {
    const auto box = makeBox(request.text, request.title, request.icon);
    QList<QAbstractButton*> buttons;
    for (const QString& caption : request.buttons) {
        // One role for all, so that they stand in the order given.
        buttons.append(box->addButton(caption, QMessageBox::ActionRole));
    }
    box->setDefaultButton(qobject_cast<QPushButton*>(buttons.value(request.defaultButton)));
    box->setEscapeButton(buttons.value(request.escapeButton));
    nameButtons(*box);
    if (auto* const column = box->findChild<QDialogButtonBox*>()) {
        column->setOrientation(Qt::Vertical); // names make captions long: side by side they are cut
    }
    fitToScreen(*box, owner());
    OpenBox(*this).exec(*box);
    const auto pressed = buttons.indexOf(box->clickedButton());
    return pressed < 0 ? request.escapeButton : int(pressed);
}

void WidgetPrompt::errorReport(const ErrorReport& report) {
    appendToErrorLog(m_clock.now(), report);
    if (m_reporting) {
        return;
    }
    m_reporting = true;
    const auto done = qScopeGuard([this] { m_reporting = false; });
    const auto box = makeBox(report.message, report.title, PromptIcon::Critical);
    QStringList reasons{withLineBreaks(report.text), withLineBreaks(report.description)};
    reasons.removeAll(QString());
    box->setInformativeText(reasons.join(QStringLiteral("\n\n")));
    box->setStandardButtons(QMessageBox::Ok);
    box->setDetailedText(detailsOf(report));
    nameButtons(*box);
    fitToScreen(*box, owner());
    OpenBox(*this).exec(*box);
}

QStringList WidgetPrompt::openFiles(const FileRequest& request) {
    QFileDialog dialog(nullptr, request.title,
                       request.folder.isEmpty() ? m_folder : request.folder);
    dialog.setNameFilters(nameFilters(request.filter));
    dialog.setFileMode(request.several ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    if (!request.prompt.isEmpty()) {
        dialog.setLabelText(QFileDialog::FileName, request.prompt);
    }
    if (OpenBox(*this).exec(dialog) != QDialog::Accepted) {
        return {};
    }
    m_folder = dialog.directory().path();
    return dialog.selectedFiles();
}

QString WidgetPrompt::saveFile(const FileRequest& request) {
    QFileDialog dialog(nullptr, request.title,
                       request.folder.isEmpty() ? m_folder : request.folder);
    dialog.setNameFilters(nameFilters(request.filter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(firstSuffix(request.filter));
    dialog.selectFile(request.name);
    if (!request.prompt.isEmpty()) {
        dialog.setLabelText(QFileDialog::FileName, request.prompt);
    }
    if (OpenBox(*this).exec(dialog) != QDialog::Accepted) {
        return {};
    }
    m_folder = dialog.directory().path();
    return dialog.selectedFiles().value(0);
}

std::optional<FontChoice> WidgetPrompt::chooseFont(const FontChoice& start) {
    FontColourDialog dialog(start, [this](int colour) { return chooseColour(colour); });
    if (OpenBox(*this).exec(dialog) != QDialog::Accepted) {
        return std::nullopt;
    }
    return dialog.choice();
}

std::optional<int> WidgetPrompt::chooseColour(int start) {
    QColorDialog dialog(QColor(start & 0xFF, (start >> 8) & 0xFF, (start >> 16) & 0xFF));
    if (OpenBox(*this).exec(dialog) != QDialog::Accepted) {
        return std::nullopt;
    }
    const QColor chosen = dialog.selectedColor();
    return chosen.red() | (chosen.green() << 8) | (chosen.blue() << 16);
}

bool WidgetPrompt::print(const QString& title, const std::function<void(QPrinter&)>& paint) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(title);
    printer.setPageMargins(kPageMargins, QPageLayout::Millimeter);
    QPrintDialog dialog(&printer);
    dialog.setWindowTitle(title);
    if (OpenBox(*this).exec(dialog) != QDialog::Accepted) {
        return false;
    }
    paint(printer);
    return true;
}

void WidgetPrompt::preview(const QString& title, const std::function<void(QPrinter&)>& paint) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(title);
    printer.setPageMargins(kPageMargins, QPageLayout::Millimeter);
    QPrintPreviewDialog dialog(&printer);
    dialog.setWindowTitle(title);
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog,
                     [&paint](QPrinter* page) { paint(*page); });
    const OpenBox box(*this);
    if (const QWidget* const over = owner()) {
        dialog.resize(over->size().expandedTo(QSize(700, 600)).boundedTo(roomFor(*over)));
    }
    box.exec(dialog);
}

void WidgetPrompt::setMousePointer(MousePointer pointer) {
    m_pointer = pointer;
    while (QApplication::overrideCursor() != nullptr) {
        QApplication::restoreOverrideCursor();
    }
    if (pointer != MousePointer::Default) {
        QApplication::setOverrideCursor(pointer == MousePointer::Hourglass ? Qt::WaitCursor
                                                                           : Qt::SizeVerCursor);
    }
}

} // namespace yrw
