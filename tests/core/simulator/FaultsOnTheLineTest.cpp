#include "simulator/FaultKinds.h"
#include "simulator/FaultText.h"
#include "simulator/SimulatedModule.h"
#include "simulator/VirtualLine.h"

#include <bit>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

namespace rv52 {
namespace {

using namespace std::chrono_literals;

// What a conversation with a module leaves: its bytes, the EEPROM's changes and where the module stands.
struct Outcome {
    std::string wire;
    std::string stored;
    int address = 0;
};

// A module that calls itself "EX", with its own low address byte in every EEPROM byte, on virtual time.
class Conversation {
 public:
    explicit Conversation(Faults faults) : module_(EveryAddressInItsPlace(), std::move(faults)) {
        line_.Open(1);
    }

    // A byte is sent in hexadecimal, and a millisecond passes; "w5" is five more; "|" closes the port and
    // opens it again; "!" pulls the plug and puts it back.
    Outcome Hold(const std::string& script) {
        std::istringstream words(script);
        for (std::string word; words >> word;)
            Say(word);
        std::ostringstream stored;
        for (int address = 0; address < ModuleEeprom::kSize; ++address)
            if (const int byte = module_.Eeprom()[address]; byte != (address & 0xFF))
                stored << std::hex << std::uppercase << address << '=' << byte << ' ';
        return {line_.TraceText(), stored.str(), module_.State().address};
    }

 private:
    static ModuleOptions EveryAddressInItsPlace() {
        ModuleOptions options(TableType::EX);
        options.identification = "EX";
        for (int address = 0; address < ModuleEeprom::kSize; ++address)
            options.eeprom[address] = static_cast<std::uint8_t>(address);
        return options;
    }

    void Say(const std::string& word) {
        if (word == "!") line_.HangUp(), line_.PlugIn();
        if (word == "|") line_.Close();
        if (word == "|" || word == "!") return line_.Open(1);
        if (word.front() == 'w') return line_.WaitFor(std::chrono::milliseconds(std::stoi(word.substr(1))));
        line_.SendByte(static_cast<std::uint8_t>(std::stoi(word, nullptr, 16)));
        line_.WaitFor(1ms);
    }

    SimulatedModule module_;
    VirtualLine line_{module_};
};

Outcome Hold(const std::string& script, std::initializer_list<std::string_view> faults,
             std::uint64_t seed = 1) {
    return Conversation(Faults(faults, seed)).Hold(script);
}

// Identify; from address 20 on write AA, read 21, write BB, read 23.
const std::string kTalk = "10 14 20 00 16 AA 15 16 BB 15";
const std::string kHead = ">10 <10 <45 <58 <0D >14 <14 >20 <20 >00 <00 <06 >16 <16 ";
const std::string kRest = " >15 <15 <21 >16 <16 >BB <BB <06 >15 <15 <23";

TEST(FaultsOnTheLineTest, StrikeByteForByteAndLeaveTheModuleWhereTheySay) {
    struct Row {
        std::initializer_list<std::string_view> faults;
        std::string script;
        std::string wire;
        std::string stored;
        int address;
    };
    const Row rows[] = {
        {{}, kTalk, kHead + ">AA <AA <06" + kRest, "20=AA 22=BB ", 0x24},

        // AA is stored and not acknowledged; two bytes find no module, the third one a fresh one at the very
        // end of the time.
        {{"power-cycle=6,for=3"}, kTalk, kHead + ">AA >15 >16 >BB <BB >15 <15 <00", "20=AA ", 1},
        // Gone and back at once in the midst of a write, which it forgets: AA is no command.
        {{"power-cycle=5,for=0,at=48"},
         "10 14 20 00 16 AA 15 16 BB 15",
         ">10 <10 <45 <58 <0D >14 <14 >20 <20 >00 <00 <06 >16 >AA <AA >15 <15 <30 >16 <16 >BB <BB <06 >15 "
         "<15 "
         "<32",
         "31=BB ",
         0x33},
        {{"power-cycle=1"}, "99 w198 15 15", ">99 >15 >15 <15 <00", "", 1},
        // Nor does what it still had to say come, but what it had said is said.
        {{"late-reply=1", "power-cycle=2,for=0"}, "10 99 w2000 15", ">10 <10 >99 >15 <15 <00", "", 1},

        {{"second-talker=2,at=64"},
         "14 20 00 15 | 15 | 15 16 | AA",
         ">14 <14 >20 <20 >00 <00 <06 >15 <15 <20 >15 <15 <21 >15 <15 <40 >16 <16 >AA <AA <06",
         "41=AA ",
         0x42},
        {{"second-talker,at=511"},
         "14 20 00 16 | 15 15 ! 15",
         ">14 <14 >20 <20 >00 <00 <06 >16 <16 >15 <15 <FF >15 <15 <00 >15 <15 <FF",
         "",
         0},

        {{"flipped-identification,character=2,bit=0"}, "10", ">10 <10 <45 <59 <0D", "", 0},
        {{"flipped-identification=2,character=99,bit=7"},
         "10 10 10",
         ">10 <10 <45 <58 <0D >10 <10 <45 <D8 <0D >10 <10 <45 <58 <0D",
         "",
         0},
        {{"no-terminator", "flipped-identification,character=9,bit=0"}, "10", ">10 <10 <45 <59", "", 0},
        {{"flipped-echo=2,bit=0"}, "14 20 00", ">14 <14 >20 <21 >00 <00 <06", "", 0x20},
        {{"flipped-acknowledge=2,bit=7"}, kTalk, kHead + ">AA <AA <86" + kRest, "20=AA 22=BB ", 0x24},
        {{"refused-address", "flipped-acknowledge=1,bit=7"},
         "14 20 00 16 AA",
         ">14 <14 >20 <20 >00 <00 <15 >16 <16 >AA <AA <86",
         "20=AA ",
         0x21},
        {{"flipped-bit=2,bit=1"},
         kTalk,
         kHead + ">AA <AA <06 >15 <15 <21 >16 <16 >BB <BB <06 >15 <15 <21",
         "20=AA 22=BB ",
         0x24},

        {{"lost-data=1"},
         kTalk,
         kHead + ">AA >15 <15 <06 >16 <16 >BB <BB <06 >15 <15 <22",
         "20=15 21=BB ",
         0x23}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.faults.size() == 0 ? "none" : std::string(*row.faults.begin()));
        const auto outcome = Hold(row.script, row.faults);
        EXPECT_EQ(outcome.wire, row.wire);
        EXPECT_EQ(outcome.stored, row.stored);
        EXPECT_EQ(outcome.address, row.address);
    }
}

// A kind with nothing but K asked of it decides the rest itself, from its seed.
TEST(FaultsOnTheLineTest, ChooseWhatIsLeftOpenByTheirSeed) {
    const std::string sound = Hold("10", {}).wire;
    std::set<std::string> texts;
    std::set<int> addresses;
    for (std::uint64_t seed = 1; seed <= 100; ++seed) {
        const auto text = Hold("10", {"flipped-identification=1"}, seed).wire;
        ASSERT_EQ(text.size(), sound.size());
        int flipped = 0;
        for (const std::size_t at : {9U, 13U})
            flipped += std::popcount(static_cast<unsigned>(std::stoi(text.substr(at, 2), nullptr, 16) ^
                                                           std::stoi(sound.substr(at, 2), nullptr, 16)));
        EXPECT_EQ(flipped, 1) << text;
        EXPECT_TRUE(text.starts_with(">10 <10 <") && text.ends_with(" <0D")) << text;
        texts.insert(text);
        const auto address = Hold("|", {"second-talker=1"}, seed).address;
        EXPECT_EQ(Hold("|", {"second-talker=1"}, seed).address, address);
        EXPECT_TRUE(address >= 0 && address < ModuleEeprom::kSize) << address;
        addresses.insert(address);
    }
    EXPECT_EQ(texts.size(), 16U);
    EXPECT_GT(addresses.size(), 80U);
}

TEST(FaultsOnTheLineTest, AreAskedForInTextOrWithoutIt) {
    const auto all = ParseFault("power-cycle=300,for=0,at=511");
    EXPECT_EQ(all.kind, &FaultNamed("power-cycle"));
    EXPECT_EQ(all.k, 300);
    EXPECT_EQ(all.details.duration, 0ms);
    EXPECT_EQ(all.details.address, 511);
    const auto none = ParseFault("flipped-identification,character=3");
    EXPECT_FALSE(none.k || none.details.bit || none.details.address);
    EXPECT_EQ(none.details.character, 3);
    const FaultRequest direct{&FaultNamed("second-talker"), 1, {.address = 7}};
    EXPECT_EQ(Conversation(Faults({direct}, 1)).Hold("|").address, 7);
}

}  // namespace
}  // namespace rv52
