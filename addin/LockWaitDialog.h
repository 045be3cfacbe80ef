#pragma once

#include "platform/dao/Database.h"

#include <memory>

class QProgressDialog;

namespace yrw {

/// Shows that a write waits for another program, once it has waited for half a second, and lets
/// the user cancel it. The host goes on painting meanwhile.
///
/// Lifetime: outlives the database that it watches. Thread: the user-interface thread.
class LockWaitDialog final : public dao::LockWatch {
public:
    LockWaitDialog();
    ~LockWaitDialog() override;
    bool goOn(qint64 waitedMs) override;
    void ended() noexcept override;

private:
    std::unique_ptr<QProgressDialog> m_dialog;
    int m_tries = 0;
};

} // namespace yrw
