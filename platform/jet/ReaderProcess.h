#pragma once

#include <QByteArray>
#include <QStringList>

#include <sys/types.h>

namespace yrw::jet {

/// A process whose standard input is a file and whose output is read.
/// Lifetime: killed at its end. Thread: any, one at a time.
class ReaderProcess {
public:
    /// Raises `kErrorCannotOpenDatabase` naming the program when it cannot be started. The
    /// descriptor stays the caller's.
    ReaderProcess(const QString& program, const QStringList& arguments, int file);
    ReaderProcess(const ReaderProcess&) = delete;
    ReaderProcess& operator=(const ReaderProcess&) = delete;
    ~ReaderProcess();

    /// Waits so many milliseconds for output and takes what is there; empty when nothing came.
    [[nodiscard]] QByteArray read(int milliseconds);
    /// True once the output has come to its end.
    [[nodiscard]] bool isAtEnd() const noexcept { return m_isAtEnd; }

private:
    pid_t m_process = -1;
    int m_output = -1;
    bool m_isAtEnd = false;
};

} // namespace yrw::jet
