#include "platform/forms/WidgetPrompt.h"

#include "platform/clock/Clock.h"
#include "platform/forms/BoxText.h"
#include "platform/forms/Contrast.h"
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
#include <QLabel>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPushButton>
#include <QScopeGuard>
#include <QStyle>

#include <algorithm>
#include <iterator>
#include <memory>

namespace yrw {

namespace {

const QString kBoxName = QStringLiteral("promptBox");

QString withLineBreaks(QString text) {
    return text.replace(QLatin1String("\r\n"), QLatin1String("\n"))
        .replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

/// An icon for the toolkit, and the program's own drawing of it.
struct BoxIcon {
    QMessageBox::Icon icon;
    const char* drawing;
};

constexpr BoxIcon kIcons[] = {
    // by PromptIcon
    {QMessageBox::NoIcon, ""},
    {QMessageBox::Information, "dialog-information"},
    {QMessageBox::Question, "dialog-question"},
    {QMessageBox::Warning, "dialog-warning"},
    {QMessageBox::Critical, "dialog-error"},
};

constexpr QMessageBox::StandardButton kAnswers[] = {
    // by PromptAnswer
    QMessageBox::Ok,
    QMessageBox::Yes,
    QMessageBox::No,
    QMessageBox::Cancel,
};

/// The buttons of a question, and the one that changes nothing.
struct BoxButtons {
    QMessageBox::StandardButtons shown;
    QMessageBox::StandardButton escape;
};

const BoxButtons kButtons[] = {
    // by PromptButtons
    {QMessageBox::Ok, QMessageBox::Ok},
    {QMessageBox::Yes | QMessageBox::No, QMessageBox::No},
    {QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Cancel},
    {QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel},
};

template <class Value, size_t N, class Key>
const Value& at(const Value (&table)[N], Key key) {
    return table[static_cast<size_t>(key)];
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
    box->setIcon(at(kIcons, icon).icon);
    auto* const label = box->findChild<QLabel*>(QStringLiteral("qt_msgboxex_icon_label"));
    if (label != nullptr && icon != PromptIcon::None) {
        const int size =
            box->style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, box.get());
        label->setPixmap(drawnIcon(QLatin1String(at(kIcons, icon).drawing))
                             .pixmap(QSize(size, size), box->devicePixelRatioF()));
    }
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
    box->setStandardButtons(at(kButtons, buttons).shown);
    box->setDefaultButton(at(kAnswers, defaultAnswer));
    box->setEscapeButton(at(kButtons, buttons).escape);
    nameButtons(*box);
    fitToScreen(*box, owner());
    const int pressed = OpenBox(*this).exec(*box);
    const int button = pressed == 0 ? int(at(kButtons, buttons).escape) : pressed;
    const auto* const found = std::find(std::begin(kAnswers), std::end(kAnswers), button);
    return PromptAnswer(found - std::begin(kAnswers));
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

QStringList WidgetPrompt::askForFiles(QFileDialog& dialog, const FileRequest& request) {
    dialog.setNameFilters(nameFilters(request.filter));
    dialog.selectFile(request.name);
    if (!request.prompt.isEmpty()) {
        dialog.setLabelText(QFileDialog::FileName, request.prompt);
    }
    if (OpenBox(*this).exec(dialog) != QDialog::Accepted) {
        return {};
    }
    m_folder = dialog.directory().path();
    return dialog.selectedFiles();
}

QStringList WidgetPrompt::openFiles(const FileRequest& request) {
    QFileDialog dialog(nullptr, request.title,
                       request.folder.isEmpty() ? m_folder : request.folder);
    dialog.setFileMode(request.several ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    return askForFiles(dialog, request);
}

QString WidgetPrompt::saveFile(const FileRequest& request) {
    QFileDialog dialog(nullptr, request.title,
                       request.folder.isEmpty() ? m_folder : request.folder);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(firstSuffix(request.filter));
    return askForFiles(dialog, request).value(0);
}

std::optional<FontChoice> WidgetPrompt::chooseFont(const FontChoice& start) {
    FontColourDialog dialog(start, [this](int colour) { return chooseColour(colour); });
    if (OpenBox(*this).exec(dialog) != QDialog::Accepted) {
        return std::nullopt;
    }
    return dialog.choice();
}

std::optional<int> WidgetPrompt::chooseColour(int start) {
    QColorDialog dialog(colourOfBgr(start));
    if (OpenBox(*this).exec(dialog) != QDialog::Accepted) {
        return std::nullopt;
    }
    return bgrOfColour(dialog.selectedColor());
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
