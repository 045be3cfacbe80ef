#pragma once

#include <QDesktopServices>
#include <QObject>
#include <QStringList>
#include <QUrl>

namespace yrw::test {

/// Stands where the desktop opens addresses of a scheme, files at first.
class Desktop : public QObject {
    Q_OBJECT

public:
    explicit Desktop(const QString& scheme = QStringLiteral("file")) : m_scheme(scheme) {
        QDesktopServices::setUrlHandler(scheme, this, "take");
    }
    ~Desktop() override { QDesktopServices::unsetUrlHandler(m_scheme); }

    QStringList opened; ///< paths of files, other addresses whole

public Q_SLOTS:
    void take(const QUrl& url) {
        opened.append(url.isLocalFile() ? url.toLocalFile() : url.toString());
    }

private:
    QString m_scheme;
};

} // namespace yrw::test
