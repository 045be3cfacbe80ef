#include "tour/Script.h"

#include <QDir>
#include <QGuiApplication>
#include <QScreen>
#include <QTextStream>
#include <QTimer>

#include <utility>

namespace yrw::tour {

namespace {

constexpr int kPollMs = 25;
/// Time for a window to settle before its picture is taken.
constexpr int kSettleMs = 250;
/// How long a step may take to show what it should.
constexpr qint64 kPatienceMs = 20000;

void say(const QString& line) {
    QTextStream(stdout) << line << '\n' << Qt::flush;
}

QString fileNameOf(const QString& title) {
    QString name;
    for (const QChar sign : title.toLower()) {
        name += sign.isLetterOrNumber() ? sign : QChar(u'-');
    }
    while (name.contains(u"--")) {
        name.replace(QStringLiteral("--"), QStringLiteral("-"));
    }
    return name;
}

} // namespace

Script::Script(QString folder, int firstNumber)
    : m_folder(std::move(folder)), m_number(firstNumber) {}

void Script::step(const QString& title, Expectation expect, std::function<void()> act) {
    m_steps.push_back({title, std::move(expect), std::move(act)});
}

void Script::start() {
    m_waiting.start();
    QTimer::singleShot(kPollMs, this, &Script::poll);
}

void Script::poll() {
    if (m_next == m_steps.size()) {
        Q_EMIT finished();
        return;
    }
    const QString missing = m_steps[m_next].expect();
    if (missing.isEmpty()) {
        QTimer::singleShot(kSettleMs, this, [this] { perform(m_steps[m_next]); });
    } else if (m_waiting.elapsed() > kPatienceMs) {
        giveUp(missing);
    } else {
        QTimer::singleShot(kPollMs, this, &Script::poll);
    }
}

void Script::perform(const Step& current) {
    const QString missing = current.expect();
    if (!missing.isEmpty()) {
        giveUp(missing);
        return;
    }
    keepPicture(current.title);
    ++m_next;
    m_waiting.restart();
    // Before acting: the action may not return until a window that it opens is closed again.
    QTimer::singleShot(kPollMs, this, &Script::poll);
    current.act();
}

void Script::keepPicture(const QString& title) {
    const QString number = QStringLiteral("%1").arg(m_number++, 2, 10, QLatin1Char('0'));
    const QString file = QStringLiteral("%1-%2.png").arg(number, fileNameOf(title));
    const QPixmap picture = QGuiApplication::primaryScreen()->grabWindow(0);
    if (picture.isNull() || !picture.save(QDir(m_folder).filePath(file))) {
        giveUp(QStringLiteral("the picture %1 could not be written").arg(file));
        return;
    }
    say(number + u' ' + title);
}

void Script::giveUp(const QString& reason) {
    const bool inStep = m_next < m_steps.size();
    const QString title = inStep ? m_steps[m_next].title : QStringLiteral("end");
    m_failed = true;
    QGuiApplication::primaryScreen()->grabWindow(0).save(
        QDir(m_folder).filePath(QStringLiteral("99-failed.png")));
    say(QStringLiteral("FAILED: %1: %2").arg(title, reason));
    Q_EMIT failed();
}

} // namespace yrw::tour
