// What the makers of one row's fields share.
#pragma once

#include <cstdint>
#include <string>

#include "tools/sample_site/random.h"
#include "tools/sample_site/site_plan.h"
#include "tools/sample_site/words.h"

namespace sample {

struct RowContext {
    Random& Numbers;
    const SitePlan& Plan;
    std::int64_t Ordinal = 0;  // of the row, from 1
    std::int64_t Key = 0;      // key value; the ordinal in a table without one
    Address LastAddress;       // what the state and the postal code of an address are taken from
    std::string LastCode;      // what the single characters of a code are taken from
};

}  // namespace sample
