#include "platform/dao/MountTest.h"

#include <QFile>

#include <algorithm>
#include <array>

#include <sys/vfs.h>

namespace yrw::dao {

MountTest::~MountTest() = default;

bool MountTest::isNetwork(const QString& path) const {
    // Numbers of file systems as statfs(2) lists them: NFS, SMB, CIFS, SMB2, AFS (two), Coda, Ceph,
    // 9P, GFS2, OCFS2, Lustre, FUSE, VirtualBox's shared folders.
    static constexpr std::array<unsigned long, 14> kNetwork{
        0x6969,     0x517b,     0xff534d42, 0xfe534d42, 0x5346414f, 0x6b414653, 0x73757245,
        0x00c36400, 0x01021997, 0x01161970, 0x7461636f, 0x0bd00bd0, 0x65735546, 0x786f4256};
    struct statfs status {};
    if (::statfs(QFile::encodeName(path).constData(), &status) != 0) {
        return false;
    }
    const auto kind = static_cast<unsigned long>(status.f_type) & 0xffffffffUL;
    return std::find(kNetwork.begin(), kNetwork.end(), kind) != kNetwork.end();
}

} // namespace yrw::dao
