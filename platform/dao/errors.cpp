#include "platform/dao/errors.h"

#include "platform/jet/errors.h"

namespace dao {

static_assert(ObjectInvalid == jet::ObjectInvalid);

bool IsFileError(const platform::Error& error) {
    switch (error.Number) {
        case jet::DiskSpace:
        case jet::ReadOnlyDatabase:
        case jet::DiskRead:
        case jet::DiskOrNetwork:
        case jet::DamagedDatabase:
            return true;
        default:
            return platform::IsFileFailure(error);
    }
}

}  // namespace dao
