// Tests whose expected texts are the French messages and dates: the French
// message file of the build tree and the day-month-year order, set once for
// the whole test program by including this header.
#pragma once

#include "text/dates.h"
#include "text/messages.h"

#include <gtest/gtest.h>

#include <string>

namespace sylvane::test {

class Francais : public ::testing::Environment {
  public:
    void SetUp() override {
        ASSERT_TRUE(ChoisirLangue("Fran\xE7" "ais", SYLVANE_BINARY_DIR "/src"));
        DefinitFormatDate("dd/mm/yyyy");
    }
};

inline const auto* const kEnvironnementFrancais =
    ::testing::AddGlobalTestEnvironment(new Francais);

} // namespace sylvane::test
