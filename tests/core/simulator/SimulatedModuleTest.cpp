#include "module/EepromImage.h"
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

// On virtual time with a module that calls itself "EX", with its own low address byte in every EEPROM byte. A
// byte is sent in hexadecimal, and a millisecond passes; "w5" is five more; "|" closes the port and opens it
// again; "!" pulls the plug and puts it back. A line that is gone ends it.
Outcome Hold(const std::string& script, const std::string& faults = {}, std::uint64_t seed = 1) {
    ModuleOptions options(TableType::EX);
    options.identification = "EX";
    for (int address = 0; address < ModuleEeprom::kSize; ++address)
        options.eeprom[address] = static_cast<std::uint8_t>(address);
    std::vector<FaultRequest> requests;
    std::istringstream texts(faults);
    for (std::string text; texts >> text;)
        requests.push_back(ParseFault(text));
    SimulatedModule module(options, Faults(requests, seed));
    VirtualLine line(module);
    line.Open(1);
    std::istringstream words(script);
    for (std::string word; line.IsPresent() && words >> word;) {
        if (word == "|") line.Close();
        if (word == "!") line.HangUp();
        line.PlugIn();
        if (!line.IsOpen()) line.Open(1);
        if (word == "|" || word == "!") continue;
        const bool waits = word.front() == 'w';
        if (!waits) line.SendByte(static_cast<std::uint8_t>(std::stoi(word, nullptr, 16)));
        line.WaitFor(std::chrono::milliseconds(waits ? std::stoi(word.substr(1)) : 1));
    }
    std::ostringstream stored;
    for (int address = 0; address < ModuleEeprom::kSize; ++address)
        if (const int byte = module.Eeprom()[address]; byte != (address & 0xFF))
            stored << std::hex << std::uppercase << address << '=' << byte << ' ';
    return {line.TraceText(), stored.str(), module.State().address};
}

// Identify; from address 20 on write AA, read 21, write BB, read 23.
const std::string kTalk = "10 14 20 00 16 AA 15 16 BB 15";
const std::string kName = ">10 <10 <45 <58 <0D ";
const std::string kAt20 = ">14 <14 >20 <20 >00 <00 <06 ";
const std::string kHead = kName + kAt20 + ">16 <16 ";
const std::string kRest = " >15 <15 <21 >16 <16 >BB <BB <06 >15 <15 <23";
const std::string kOver = ">14 <14 >FF <FF >01 <01 <06 ";

TEST(SimulatedModuleTest, AnswersEveryCommandAndEachFaultStrikesAtItsOpportunity) {
    struct Row {
        std::string faults;
        std::string script;
        int address;
        std::string stored;
        std::string wire;
    };
    const Row rows[] = {
        {"", kTalk, 0x24, "20=AA 22=BB ", kHead + ">AA <AA <06" + kRest},
        // A command's byte is an argument where one is expected, behind the last address comes the first, and
        // what is no command is echoed.
        {"", "14 FF 01 16 10 16 66 14 FF 01 15 15 99", 1, "0=66 1FF=10 ",
         kOver + ">16 <16 >10 <10 <06 >16 <16 >66 <66 <06 " + kOver + ">15 <15 <10 >15 <15 <66 >99 <99"},

        {"silent=5", kTalk, 0x24, "", kName + kAt20 + ">16 >AA >15 >16 >BB >15"},
        {"no-terminator=2", "10 10 10", 0, "", kName + ">10 <10 <45 <58 >10 <10 <45 <58 <0D"},
        {"lost-reply=3", kTalk, 0x24, "20=AA 22=BB ", kHead + ">AA <AA" + kRest},
        {"late-reply=2", "10 15 w1005 99 w9", 1, "", kName + ">15 <15 >99 <00 <99"},
        {"slow-reply=2", "10 15 w985 99 w9", 1, "", kName + ">15 <15 >99 <00 <99"},
        {"slow-reply=2", "10 15 w995 99 w9", 1, "", kName + ">15 <15 <00 >99 <99"},
        {"refused-write=1", kTalk, 0x24, "22=BB ", kHead + ">AA <AA <15" + kRest},
        {"not-stored=2", kTalk, 0x24, "20=AA ", kHead + ">AA <AA <06" + kRest},
        {"hang-up=1", kTalk, 0, "", ">10"},
        {"hang-up=3", kTalk, 0, "", ">10 <10"},
        {"hang-up=15", kTalk, 0x21, "", kHead + ">AA"},
        {"hang-up=17", kTalk, 0x21, "20=AA ", kHead + ">AA <AA"},

        // AA is stored and not acknowledged; two bytes find no module, the third one a fresh one at the very
        // end of the time.
        {"power-cycle=6,for=3", kTalk, 1, "20=AA ", kHead + ">AA >15 >16 >BB <BB >15 <15 <00"},
        // Gone and back at once in the midst of a write, which it forgets: AA is no command.
        {"power-cycle=5,for=0,at=48", kTalk, 0x33, "31=BB ",
         kName + kAt20 + ">16 >AA <AA >15 <15 <30 >16 <16 >BB <BB <06 >15 <15 <32"},
        {"power-cycle=1", "99 w198 15 15", 1, "", ">99 >15 >15 <15 <00"},
        // Nor does what it still had to say come, but what it had said is said.
        {"late-reply=1 power-cycle=2,for=0", "10 99 w2000 15", 1, "", ">10 <10 >99 >15 <15 <00"},

        {"second-talker=2,at=64", "14 20 00 15 | 15 | 15 16 | AA", 0x42, "41=AA ",
         kAt20 + ">15 <15 <20 >15 <15 <21 >15 <15 <40 >16 <16 >AA <AA <06"},
        {"second-talker,at=511", "14 20 00 16 | 15 15 ! 15", 0, "",
         kAt20 + ">16 <16 >15 <15 <FF >15 <15 <00 >15 <15 <FF"},

        {"flipped-identification,character=2,bit=0", "10", 0, "", ">10 <10 <45 <59 <0D"},
        {"flipped-identification=2,character=99,bit=7", "10 10", 0, "", kName + ">10 <10 <45 <D8 <0D"},
        {"no-terminator flipped-identification,character=9,bit=0", "10", 0, "", ">10 <10 <45 <59"},
        {"flipped-echo=2,bit=0", "14 20 00", 0x20, "", ">14 <14 >20 <21 >00 <00 <06"},
        {"flipped-acknowledge=2,bit=7", kTalk, 0x24, "20=AA 22=BB ", kHead + ">AA <AA <86" + kRest},
        {"refused-address flipped-acknowledge=1,bit=7", "14 20 00 16 AA", 0x21, "20=AA ",
         ">14 <14 >20 <20 >00 <00 <15 >16 <16 >AA <AA <86"},
        {"flipped-bit=1,bit=1", "15 15", 2, "", ">15 <15 <02 >15 <15 <01"},
        {"lost-data=1", kTalk, 0x23, "20=15 21=BB ",
         kHead + ">AA >15 <15 <06 >16 <16 >BB <BB <06 >15 <15 <22"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.faults);
        const auto outcome = Hold(row.script, row.faults);
        EXPECT_EQ(outcome.wire, row.wire);
        EXPECT_EQ(outcome.stored, row.stored);
        EXPECT_EQ(outcome.address, row.address);
    }
}

// A kind with nothing but K asked of it decides the rest itself, from its seed.
TEST(SimulatedModuleTest, FaultsChooseWhatIsLeftOpenByTheirSeed) {
    const std::string sound = Hold("10").wire;
    std::set<std::string> texts;
    std::set<int> addresses;
    std::set<std::size_t> garbage;
    for (std::uint64_t seed = 1; seed <= 100; ++seed) {
        const auto text = Hold("10", "flipped-identification=1", seed).wire;
        ASSERT_EQ(text.size(), sound.size());
        int flipped = 0;
        for (const std::size_t at : {9U, 13U})
            flipped += std::popcount(static_cast<unsigned>(std::stoi(text.substr(at, 2), nullptr, 16) ^
                                                           std::stoi(sound.substr(at, 2), nullptr, 16)));
        EXPECT_EQ(flipped, 1) << text;
        texts.insert(text);
        const auto address = Hold("|", "second-talker=1", seed).address;
        EXPECT_EQ(Hold("|", "second-talker=1", seed).address, address);
        addresses.insert(address);
        const auto garbled = Hold("10 w9", "garbage-before-reply=1", seed).wire;
        EXPECT_TRUE(garbled.ends_with(sound.substr(4))) << garbled;
        garbage.insert((garbled.size() - sound.size()) / 4);
    }
    EXPECT_EQ(texts.size(), 16U);
    EXPECT_GT(addresses.size(), 80U);
    EXPECT_EQ(garbage, (std::set<std::size_t>{1, 2, 3}));
}

TEST(SimulatedModuleTest, LeavesTheWorksWithATableThatAnEngineRunsOn) {
    for (const auto type : {TableType::RACE, TableType::EX}) {
        SCOPED_TRACE(ToText(type));
        const ModuleOptions options(type);
        EXPECT_EQ(TypeNamedIn(options.identification), type);
        EepromBuffer buffer{};
        for (int index = 0; index <= EepromMap::kExTableLast; ++index)
            buffer[static_cast<std::size_t>(index)] = options.eeprom[AddressOf(index).value];
        ModuleParameters parameters;
        const auto table = DecodeEepromImage(buffer, type, parameters);
        for (const double degrees : table.GetValues())
            EXPECT_TRUE(degrees >= 5 && degrees <= 42) << degrees;
        EXPECT_EQ(parameters.RPMLimit, 6200);
    }
}

}  // namespace
}  // namespace rv52
