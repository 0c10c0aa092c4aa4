#include "ui/error_trap.h"

#include <QCoreApplication>

namespace ui {

void ErrorTrap::Run(const std::function<void()>& handler) {
    if (mFirst) return;
    try {
        handler();
    } catch (...) {
        // A nested handler's error passes here a second time when it is thrown again behind its loop.
        if (!mFirst) mFirst = std::current_exception();
        QCoreApplication::exit(1);
    }
}

void ErrorTrap::RethrowIfTripped() const {
    if (mFirst) std::rethrow_exception(mFirst);
}

}  // namespace ui
