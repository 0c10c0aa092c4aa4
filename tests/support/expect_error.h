// Expectations on the error triple.
#pragma once

#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "platform/error.h"

namespace test {

/// The error that call raises; a failure of the running test, and an error numbered 0, when it raises none.
template <typename Call>
platform::Error ErrorOf(Call call) {
    try {
        call();
    } catch (const platform::Error& error) {
        return error;
    }
    ADD_FAILURE() << "no error was raised";
    return {0, "", ""};
}

/// The number of the error that call raises, 0 when it raises none: for tables where both occur.
template <typename Call>
int NumberRaised(Call call) {
    try {
        call();
    } catch (const platform::Error& error) {
        return error.Number;
    }
    return 0;
}

}  // namespace test
