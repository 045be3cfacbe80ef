// yrwnotes-jetreader SECONDS MIB TABLE...: reads the old database that lies behind standard input
// and writes it to standard output (see JetProtocol.h).
//
// It reads hostile files with a library that was not written for them. So it begins by giving up
// what it does not need: descriptors, time, memory, files of its own, new privileges. Once the
// library holds the file's bytes, it can open nothing more.
#include "platform/jet/reader/JetReader.h"

#include <cstdlib>

#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

void limit(__rlimit_resource what, rlim_t most) {
    const rlimit both{most, most};
    if (::setrlimit(what, &both) != 0) {
        ::_exit(1);
    }
}

void giveUp(rlim_t seconds, [[maybe_unused]] rlim_t bytes) {
    ::close_range(3, ~0U, 0);
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    limit(RLIMIT_CPU, seconds);
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, 0);
#ifndef __SANITIZE_ADDRESS__ // a sanitizer maps more than any limit allows
    limit(RLIMIT_AS, bytes);
#endif
}

} // namespace

int main(int argc, char** argv) {
    constexpr int firstTable = 3;
    constexpr rlim_t mib = 1U << 20U;
    if (argc < firstTable) {
        return 2;
    }
    giveUp(std::strtoul(argv[1], nullptr, 10), std::strtoul(argv[2], nullptr, 10) * mib);
    yrw::jet::RowPipe pipe(STDOUT_FILENO);
    struct stat status {};
    char empty = 0;
    std::span<char> bytes(&empty, 0);
    if (::fstat(STDIN_FILENO, &status) == 0 && status.st_size > 0) {
        const auto size = std::size_t(status.st_size);
        void* const file =
            ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE, STDIN_FILENO, 0);
        if (file == MAP_FAILED) {
            return 1;
        }
        bytes = {static_cast<char*>(file), size};
    }
    yrw::jet::JetReader reader(bytes, pipe);
    const bool isOpen = reader.open();
    limit(RLIMIT_NOFILE, 0);
    if (isOpen) {
        reader.read({argv + firstTable, argv + argc});
    }
    pipe.flush();
    ::_exit(0);
}
