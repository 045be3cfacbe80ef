// What comes out on paper.
#include "tests/notes_window/WindowFixture.h"

#include <QFileInfo>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace yrw::test {

class Printing : public WindowFixture {
protected:
    void SetUp() override {
        WindowFixture::SetUp();
        note = store.addNote("First", customer);
    }
    QTemporaryDir folder;
    Ref<Note> note;
};

/// What a program of poppler says of a file; empty without the program.
QString told(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput());
}

TEST_F(Printing, PaperHasHeadingPageNumbersAndTheSizesOfTheScreen) {
    for (const char* program : {"pdftotext", "pdfinfo", "pdffonts"}) {
        ASSERT_FALSE(QStandardPaths::findExecutable(program).isEmpty()) << program;
    }
    QString rtf =
        "{\\rtf1{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs48 Large\\par\\fs20 "
        "\\pard{\\*\\pn\\pnlvlbody\\pndec\\pnstart5{\\pntxta .}}\\fi-360\\li720 item\\par "
        "\\pard ";
    for (int i = 0; i < 120; ++i) {
        rtf += QString("Line %1 of the note\\par ").arg(i);
    }
    note->BeginMultipleFieldUpdate();
    note->Field("RTFNote")->setValue(QString(rtf + "}"));
    note->EndMultipleFieldUpdate();
    open(customer);
    const QString pdf = folder.filePath("note.pdf");
    script.chooseFiles({pdf});
    click("tooExportPdf");
    EXPECT_EQ(script.fileRequests.last().name, "First.pdf");

    const QString text = told("pdftotext", {"-layout", pdf, "-"});
    const QStringList pages = text.split('\f', Qt::SkipEmptyParts);
    ASSERT_EQ(pages.size(), 3) << text.toStdString();
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(pages[i].contains(QString("Page %1 of 3").arg(i + 1)));
        EXPECT_TRUE(pages[i].contains("First"));
        EXPECT_TRUE(pages[i].contains("Anna Ash")) << pages[i].toStdString();
        EXPECT_TRUE(pages[i].contains("10/03/2026 09:00"));
    }
    EXPECT_TRUE(QRegularExpression("5\\. +item").match(pages[0]).hasMatch()) << "list number";
    for (int i = 0; i < 120; ++i) {
        EXPECT_EQ(text.count(QString("Line %1 of the note").arg(i)), 1) << i;
    }
    const QString facts = told("pdfinfo", {pdf});
    EXPECT_TRUE(QRegularExpression("Pages: +3\n").match(facts).hasMatch()) << facts.toStdString();
    EXPECT_TRUE(facts.contains("Title:")) << facts.toStdString();
    const QRegularExpressionMatch size =
        QRegularExpression("Page size: +([0-9.]+) x ([0-9.]+) pts").match(facts);
    const QSizeF wanted = QPrinter().pageLayout().fullRect(QPageLayout::Point).size();
    EXPECT_NEAR(size.captured(1).toDouble(), wanted.width(), 1);
    EXPECT_NEAR(size.captured(2).toDouble(), wanted.height(), 1);
    const QStringList fonts = told("pdffonts", {pdf}).split('\n').mid(2);
    EXPECT_TRUE(fonts.join('\n').contains("DejaVuSans"));
    for (const QString& font : fonts) { // embedded, so that it prints the same elsewhere
        EXPECT_TRUE(font.isEmpty() || QRegularExpression("Identity-H +yes ").match(font).hasMatch())
            << font.toStdString();
    }
    // The height of a word's box follows the size of its font: 24 and 10 points.
    const QString boxes = told("pdftotext", {"-bbox", pdf, "-"});
    const auto height = [&](const QString& word) {
        const QRegularExpression box("yMin=\"([0-9.]+)\" xMax=\"[0-9.]+\" yMax=\"([0-9.]+)\">" +
                                     word + "<");
        const QRegularExpressionMatch match = box.match(boxes);
        return match.captured(2).toDouble() - match.captured(1).toDouble();
    };
    EXPECT_NEAR(height("Large") / height("Line"), 2.4, 0.1);
    EXPECT_NEAR(height("Line"), 10 * 1.17, 1.5);
}

TEST_F(Printing, TheStatusTellsOfPrintingUntilItIsOverInAnyWay) {
    open(customer);
    const auto* const status = window->findChild<StatusBar*>();
    ASSERT_NE(status, nullptr);
    for (const bool fails : {false, true}) {
        QString during;
        script.whileOpen = [&] {
            if (during.isEmpty()) {
                during = status->text();
                if (fails) {
                    throw AutomationError(kErrorDiskFull, "test", "no paper");
                }
            }
        };
        if (fails) {
            script.expectReport();
        } else {
            script.choosePrinter(nullptr); // cancels
        }
        click("tooPrint");
        EXPECT_EQ(during, "Printing...");
        EXPECT_EQ(status->text(), "Done");
    }
    script.whileOpen = nullptr;
    script.chooseFiles({"/no/such/folder/note.pdf"});
    script.expectReport();
    click("tooExportPdf");
    EXPECT_EQ(status->text(), "Done");
}

TEST_F(Printing, PrintsAndPreviewsThroughTheDoor) {
    open(customer);
    type("on paper");
    for (const char* key : {"tooPrint", "tooPreview"}) {
        QPrinter printer;
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(folder.filePath(QString(key) + ".pdf"));
        script.choosePrinter(&printer);
        click(key);
        EXPECT_GT(QFileInfo(printer.outputFileName()).size(), 1000) << key;
    }
    EXPECT_EQ(script.asked, QStringList({"print: Print Note", "preview: Print Preview"}));
}

} // namespace yrw::test
