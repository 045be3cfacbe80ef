#include "platform/jet/ReaderProcess.h"

#include "platform/component/AutomationError.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <vector>

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace yrw::jet {

namespace {

constexpr qsizetype kPiece = 256 << 10;

/// Where the three standard descriptors of the process lead.
class Leads {
public:
    Leads(int file, int output) {
        ::posix_spawn_file_actions_init(&m_actions);
        ::posix_spawn_file_actions_adddup2(&m_actions, file, STDIN_FILENO);
        ::posix_spawn_file_actions_adddup2(&m_actions, output, STDOUT_FILENO);
        ::posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    }
    Leads(const Leads&) = delete;
    Leads& operator=(const Leads&) = delete;
    ~Leads() { ::posix_spawn_file_actions_destroy(&m_actions); }
    [[nodiscard]] const posix_spawn_file_actions_t* actions() const { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions{};
};

} // namespace

ReaderProcess::ReaderProcess(const QString& program, const QStringList& arguments, int file) {
    int ends[2]{-1, -1};
    int failure = ::pipe2(ends, O_CLOEXEC) == 0 ? 0 : errno;
    if (failure == 0) {
        std::vector<QByteArray> words{QFile::encodeName(program)};
        for (const QString& argument : arguments) {
            words.push_back(argument.toUtf8());
        }
        std::vector<char*> pointers;
        pointers.reserve(words.size() + 1);
        for (QByteArray& word : words) {
            pointers.push_back(word.data());
        }
        pointers.push_back(nullptr);
        char* environment[] = {nullptr}; // what the user set for the host is nothing to go by
        const Leads leads(file, ends[1]);
        failure = ::posix_spawn(&m_process, words.front().constData(), leads.actions(), nullptr,
                                pointers.data(), environment);
        ::close(ends[1]);
        m_output = ends[0];
    }
    if (failure != 0) {
        if (m_output >= 0) {
            ::close(m_output);
        }
        throw AutomationError(kErrorCannotOpenDatabase, QStringLiteral("YRWNOTES.ReaderProcess"),
                              QStringLiteral("%1 could not be started: %2")
                                  .arg(program, QString::fromLocal8Bit(std::strerror(failure))));
    }
}

ReaderProcess::~ReaderProcess() {
    ::close(m_output);
    ::kill(m_process, SIGKILL);
    while (::waitpid(m_process, nullptr, 0) < 0 && errno == EINTR) {
    }
}

QByteArray ReaderProcess::read(int milliseconds) {
    pollfd waited{m_output, POLLIN, 0};
    if (::poll(&waited, 1, milliseconds) <= 0) {
        return {};
    }
    QByteArray bytes(kPiece, Qt::Uninitialized);
    const ssize_t count = ::read(m_output, bytes.data(), size_t(bytes.size()));
    m_isAtEnd = count == 0 || (count < 0 && errno != EINTR);
    bytes.truncate(count > 0 ? count : 0);
    return bytes;
}

} // namespace yrw::jet
