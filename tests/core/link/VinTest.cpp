#include "app/Commands.h"
#include "link/EditVin.h"
#include "link/Vin.h"
#include "support/ConnectedSession.h"
#include "support/WireStory.h"

#include <gtest/gtest.h>
#include <tuple>

namespace rv52::test {
namespace {

constexpr const char* kTitle = "Edit RV52A VIN";
constexpr const char* kId = "RV52A SIM 8.1";
const std::string kOld = "1CVRV52A0SM000081";
const std::string kNew = "9XYRV52A7SM123456";
const char* const kDone = "Upload completed.\r\n";
const char* const kUnverified = "Upload aborted - EEPROM verification failed.";
const char* const kUnprogrammed = "Upload aborted - EEPROM programming failed.";

void Expect(ConnectedModule& at, const std::string& text, Icon icon = Icon::Warning) {
    at.prompts.Expect({text, kTitle, icon, Buttons::Ok}, Answer::Ok);
}
void ExpectQuestion(ConnectedModule& at, const std::string& offered, const std::string& answer) {
    at.prompts.ExpectText({"Enter new RV52A VIN (17 characters)", kTitle, offered}, answer);
}
void ExpectConfirmation(ConnectedModule& at, const std::string& vin, Answer answer) {
    at.prompts.Expect({"Verify new VIN is: " + vin, kTitle, Icon::None, Buttons::OkCancel}, answer);
}

std::string VinOf(const SimulatedModule& module) {
    std::string vin;
    for (int k = 0; k < 17; ++k)
        vin += static_cast<char>(module.Eeprom()[432 + k]);
    return vin;
}

void TellReads(WireStory& story, const std::string& vin) {
    story.Address(0xB0, 0x01);
    for (std::size_t k = 0; k < vin.size(); ++k)
        story.Read(static_cast<unsigned char>(vin[k]), k + 1 < vin.size() ? 2 : 102);
}

TEST(VinTest, ReadsAsksProgramsAndVerifies) {
    auto options = Options(TableType::EX, true);
    options.identification = "V8 ex rv52a";
    ConnectedModule at(options);
    at.state.TableType = TableType::RACE;
    Expect(at, "Firmware ID: V8 ex rv52a");
    ExpectQuestion(at, kOld, kNew);
    ExpectConfirmation(at, kNew, Answer::Ok);
    Expect(at, kDone);
    RunCommand(at.session, mnuEditVIN_Click);

    WireStory story(true);
    story.Identification("V8 ex rv52a");
    TellReads(story, kOld);
    story.Address(0xB0, 0x01);
    for (const char code : kNew)
        story.Write(code);
    TellReads(story, kNew);
    EXPECT_EQ(Told(at.line.Trace()), story.Text());

    auto expected = options.eeprom;
    std::ranges::copy(kNew, expected.bytes.begin() + 432);
    EXPECT_EQ(at.module.Eeprom(), expected);
    EXPECT_EQ(at.state.Vin, kNew);
    EXPECT_EQ(at.state.TableType, TableType::RACE);
    EXPECT_FALSE(at.line.IsOpen());
    EXPECT_TRUE(at.shell.progress.empty());
    EXPECT_EQ(at.state.EepromBuffer[431], 0);
    EXPECT_EQ(at.state.EepromBuffer[432], '9');
    EXPECT_EQ(at.state.EepromBuffer[448], '6');
    EXPECT_EQ(at.state.EepromBuffer[449], 0);
}

TEST(VinTest, IsOnlyForAnIdentifiedRV52A) {
    using Case = std::tuple<const char*, const char*, std::vector<std::string>, bool>;
    const Case cases[] = {
        {"RV51 EX",
         "",
         {"Firmware ID: RV51 EX", "VIN feature only valid on RV52A Rev 8.1 or higher unit."},
         false},
        {"", "", {"Firmware ID read failed - cannot edit VIN."}, false},
        {"RV52A", "silent", {"Firmware ID read failed - cannot edit VIN."}, true}};
    for (const auto& [id, fault, boxes, timesOut] : cases) {
        auto options = Options(TableType::RACE, true);
        options.identification = id;
        ConnectedModule at(options, *fault ? Faults({fault}, 1) : Faults());
        if (timesOut) at.prompts.ExpectError(kTimeoutText, Answer::Abort);
        for (const auto& box : boxes)
            Expect(at, box);
        mnuEditVIN_Click(at.session);
        EXPECT_EQ(at.line.Opens().size(), 1u);
        EXPECT_EQ(at.state.TableType, TableType::RACE);
    }
}

TEST(VinTest, AsksUntilTheAnswerIsAVinOrNothing) {
    const std::string sixteen(16, 'A');
    const std::string eighteen(18, 'A');
    const std::string omega = sixteen + "\xCE\xA9";  // no code of the module's
    const std::string broken = sixteen + "\xE9";     // no UTF-8
    const std::string tooManyBytes = sixteen + "\xE2\x82\xAC";
    ConnectedModule at(Options(TableType::RACE, true));
    Expect(at, std::string("Firmware ID: ") + kId);
    for (const auto& refused : {sixteen, eighteen, omega, broken})
        ExpectQuestion(at, kOld, refused);
    ExpectQuestion(at, kOld, tooManyBytes);  // 17 characters all the same
    ExpectConfirmation(at, tooManyBytes, Answer::Cancel);
    mnuEditVIN_Click(at.session);
    EXPECT_EQ(at.state.Vin, kOld);
    EXPECT_EQ(at.module.Stored(), 0);

    Expect(at, std::string("Firmware ID: ") + kId);
    ExpectQuestion(at, kOld, "");
    mnuEditVIN_Click(at.session);

    const std::string blanks(17, ' ');
    for (const auto& [vin, last] : {std::pair(tooManyBytes, 0x80), std::pair(blanks, 0x20)}) {
        Expect(at, std::string("Firmware ID: ") + kId);
        ExpectQuestion(at, at.state.Vin, vin);
        ExpectConfirmation(at, vin, Answer::Ok);
        Expect(at, kDone);
        mnuEditVIN_Click(at.session);
        EXPECT_EQ(at.module.Eeprom()[448], last);
    }
}

TEST(VinTest, TellsEveryFailingWrite) {
    constexpr const char* kVinTimeout =
        "RS-232 timeout during Write VIN routine. Check cable and click Abort.";
    using Case = std::tuple<const char*, const char*, const char*>;
    // Reply 1 is the name, 2 to 19 read the VIN, 20 acknowledges the address, 21 to 37 are writes.
    const Case cases[] = {
        {"refused-address=2", nullptr, kUnprogrammed}, {"lost-reply=20", kTimeoutText, kUnprogrammed},
        {"refused-write=1", nullptr, kUnprogrammed},   {"refused-write=17", nullptr, kUnprogrammed},
        {"lost-reply=21", kVinTimeout, kUnprogrammed}, {"late-reply=37", kVinTimeout, kUnprogrammed},
        {"refused-address=3", nullptr, kUnverified},   {"not-stored=1", nullptr, kUnverified},
        {"flipped-bit=34", nullptr, kUnverified},      {"lost-reply=38", kTimeoutText, kUnverified},
        {"lost-reply=55", kTimeoutText, kUnverified}};
    for (const auto& [fault, timeout, outcome] : cases) {
        for (const auto answer : {Answer::Abort, Answer::Ignore}) {
            SCOPED_TRACE(fault);
            ConnectedModule at(Options(TableType::RACE, true), Faults({fault}, 1));
            at.state.TableType = TableType::EX;
            Expect(at, std::string("Firmware ID: ") + kId);
            ExpectQuestion(at, kOld, kNew);
            ExpectConfirmation(at, kNew, Answer::Ok);
            if (timeout != nullptr) {
                at.prompts.ExpectError(timeout, Answer::Retry);
                at.prompts.ExpectError(timeout, answer);
            }
            Expect(at, outcome, Icon::Information);
            mnuEditVIN_Click(at.session);
            EXPECT_TRUE(at.prompts.Done());
            EXPECT_EQ(at.state.Vin, kNew);
            EXPECT_EQ(at.state.TableType, TableType::EX);
            EXPECT_FALSE(at.line.IsOpen());
        }
    }
}

TEST(VinTest, AModuleThatDoesNotEchoTakesNoVin) {
    ConnectedModule at(Options(TableType::RACE, false));
    at.state.Vin = kNew;
    at.prompts.ExpectError("RS-232 timeout during Write VIN routine. Check cable and click Abort.",
                           Answer::Ignore);
    WriteVINData(at.session);
    EXPECT_FALSE(at.state.CommOK);
    EXPECT_EQ(at.module.Stored(), 1);
}

TEST(VinTest, AFailedReadOffersTheLastVinKnown) {
    for (const bool escape : {false, true}) {
        ConnectedModule at(Options(TableType::RACE, true),
                           escape ? Faults() : Faults({"refused-address=1"}, 1));
        at.state.Vin = kNew;
        Expect(at, std::string("Firmware ID: ") + kId);
        if (escape)
            at.line.OnYield([&] {
                if (at.state.EepromBuffer[440] != 0) EscapePressed(at.session);
            });
        ExpectQuestion(at, kNew, "");
        RunCommand(at.session, mnuEditVIN_Click);
        EXPECT_EQ(at.state.EepromBuffer[441], 0);
        EXPECT_EQ(at.state.Vin, kNew);
    }
}

TEST(VinTest, ClosingEndsAReadAndItsQuestionButNoProgramming) {
    ConnectedModule reading(Options(TableType::RACE, true));
    Expect(reading, std::string("Firmware ID: ") + kId);
    reading.line.OnYield([&] {
        if (reading.state.EepromBuffer[440] != 0) RequestExit(reading.session);
    });
    RunCommand(reading.session, mnuEditVIN_Click);
    EXPECT_EQ(reading.state.EepromBuffer[441], 0);
    EXPECT_TRUE(reading.shell.closed);

    ConnectedModule writing(Options(TableType::RACE, true));
    Expect(writing, std::string("Firmware ID: ") + kId);
    ExpectQuestion(writing, kOld, kNew);
    ExpectConfirmation(writing, kNew, Answer::Ok);
    Expect(writing, kDone);
    writing.line.OnYield([&] {
        if (writing.module.Stored() > 0) RequestExit(writing.session);
    });
    RunCommand(writing.session, mnuEditVIN_Click);
    EXPECT_EQ(VinOf(writing.module), kNew);
    EXPECT_TRUE(writing.shell.closed);
}

TEST(VinTest, EscapeDuringTheVerifyFailsIt) {
    ConnectedModule at(Options(TableType::RACE, true));
    at.state.Vin = kNew;
    bool pressed = false;
    at.line.OnYield([&] {
        if (at.module.Stored() == 17 && at.line.Trace().back().byte == 'A' && !std::exchange(pressed, true))
            EscapePressed(at.session);
    });
    WriteVINData(at.session);
    EXPECT_TRUE(at.state.CommOK);
    EXPECT_EQ(at.state.VerifyErrors, 1);
    EXPECT_FALSE(at.state.AbortRequested);
}

}  // namespace
}  // namespace rv52::test
