#include "core/soak/SoakRun.h"
#include "fuzz/Target.h"

namespace rv52::fuzz {

// A few transfers against a simulated module with a witness at its plug: the input decides on faults, on when
// the line shows its conditions, breaks and is plugged in again, on Escape and closing, and on what the user
// answers. Nothing may be claimed that is not so.
void Target(std::string_view input) {
    test::SoakCount count;
    test::SoakRun(test::Dice(input), count).Run();
    Require(!testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed(),
            "every judgement of the witness");
}

}  // namespace rv52::fuzz
