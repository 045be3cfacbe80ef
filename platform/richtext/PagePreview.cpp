#include "platform/richtext/PagePreview.h"

#include "platform/richtext/LocalFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <QTemporaryDir>
#include <QUrl>

#include <algorithm>

namespace yrw::richtext {

namespace {

constexpr int kPdfMs = 5000;
constexpr int kOfficeMs = 20000;  ///< the office starts up for this
constexpr int kLongestSide = 600; ///< pixels

/// Runs a program to its end; what it wrote to standard output, empty on failure.
QByteArray outputOf(const QString& program, const QStringList& arguments, int milliseconds) {
    const QString path = QStandardPaths::findExecutable(program);
    if (path.isEmpty()) {
        return {};
    }
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(path, arguments, QIODevice::ReadOnly);
    if (!process.waitForFinished(milliseconds)) {
        process.kill();
        process.waitForFinished(1000);
        return {};
    }
    const bool done = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    return done ? process.readAllStandardOutput() : QByteArray();
}

QImage pageOfPdf(const QString& path) {
    const QByteArray png = outputOf(QStringLiteral("pdftoppm"),
                                    {QStringLiteral("-png"), QStringLiteral("-singlefile"),
                                     QStringLiteral("-scale-to"), QString::number(kLongestSide),
                                     QFileInfo(path).absoluteFilePath()},
                                    kPdfMs);
    return QImage::fromData(png, "PNG");
}

QImage pageOfOffice(const QString& path) {
    // A profile of its own: a running office would take the work over and answer nothing.
    const QString place = makePrivateFolder();
    if (place.isEmpty()) {
        return {};
    }
    const QTemporaryDir folder(place + QStringLiteral("/XXXXXX"));
    const QString profile =
        QUrl::fromLocalFile(folder.filePath(QStringLiteral("profile"))).toString();
    outputOf(QStringLiteral("soffice"),
             {QStringLiteral("--headless"), QStringLiteral("--norestore"),
              QStringLiteral("-env:UserInstallation=") + profile, QStringLiteral("--convert-to"),
              QStringLiteral("pdf"), QStringLiteral("--outdir"), folder.path(),
              QFileInfo(path).absoluteFilePath()},
             kOfficeMs);
    const QStringList pages = QDir(folder.path()).entryList({QStringLiteral("*.pdf")});
    return pages.isEmpty() ? QImage() : pageOfPdf(folder.filePath(pages.first()));
}

bool isOffice(const QMimeType& type) {
    static const QStringList beginnings{
        QStringLiteral("application/msword"), QStringLiteral("application/vnd.ms-"),
        QStringLiteral("application/vnd.openxmlformats-officedocument."),
        QStringLiteral("application/vnd.oasis.opendocument.")};
    return std::any_of(beginnings.begin(), beginnings.end(),
                       [&](const QString& beginning) { return type.name().startsWith(beginning); });
}

} // namespace

QImage firstPage(const QString& path, const QMimeType& type) {
    if (type.inherits(QStringLiteral("application/pdf"))) {
        return pageOfPdf(path);
    }
    return isOffice(type) ? pageOfOffice(path) : QImage();
}

} // namespace yrw::richtext
