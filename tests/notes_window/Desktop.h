#pragma once

#include <QDesktopServices>
#include <QObject>
#include <QStringList>
#include <QUrl>

namespace yrw::test {

/// Stands where the desktop opens files.
class Desktop : public QObject {
    Q_OBJECT

public:
    Desktop() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "take"); }
    ~Desktop() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    QStringList opened;

public Q_SLOTS:
    void take(const QUrl& url) { opened.append(url.toLocalFile()); }
};

} // namespace yrw::test
