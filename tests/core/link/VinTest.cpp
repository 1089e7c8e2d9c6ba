#include "app/Leaving.h"
#include "app/RunCommand.h"
#include "app/WindowKeys.h"
#include "link/commands/LinkProcedures.h"
#include "link/commands/Vin.h"
#include "support/ConnectedSession.h"
#include "support/WireStory.h"

#include <gtest/gtest.h>
#include <tuple>

namespace rv52::test {
namespace {

constexpr const char* kTitle = "Edit RV52A VIN";
constexpr const char* kVinTimeout = "RS-232 timeout during Write VIN routine. Check cable and click Abort.";
constexpr const char* kDone = "Upload completed.\r\n";
const std::string kOld = "1CVRV52A0SM000081";
const std::string kNew = "9XYRV52A7SM123456";

ModuleOptions Named(const std::string& name) {
    auto options = Options(TableType::RACE, true);
    options.identification = name;
    return options;
}

// The command's dialogue with a module.
struct Workbench : ConnectedModule {
    explicit Workbench(std::string name = "RV52A", Faults faults = {})
        : ConnectedModule(Named(name), std::move(faults)), id(std::move(name)) {}

    void ExpectBox(const std::string& text, Icon icon = Icon::Warning) {
        prompts.ExpectNotice(text, kTitle, icon);
    }
    // From the identification on, with these answers to the question; the last of them is then confirmed.
    void ExpectQuestions(const std::string& offered, const std::vector<std::string>& answers,
                         Answer confirmation = Answer::Ok) {
        ExpectBox("Firmware ID: " + id);
        for (const auto& answer : answers)
            prompts.ExpectText({"Enter new RV52A VIN (17 characters)", kTitle, offered}, answer);
        if (answers.empty() || answers.back().empty()) return;
        prompts.Expect({"Verify new VIN is: " + answers.back(), kTitle, Icon::None, Buttons::OkCancel},
                       confirmation);
    }
    void EditVin() {
        RunCommand(session, mnuEditVIN_Click);
        EXPECT_TRUE(prompts.Done());
        EXPECT_FALSE(line.IsOpen());
    }

    std::string id;
};

void TellReads(WireStory& story, const std::string& vin) {
    story.Address(0xB0, 0x01);
    for (std::size_t k = 0; k < vin.size(); ++k)
        story.Read(static_cast<unsigned char>(vin[k]), k + 1 < vin.size() ? 2 : 102);
}

TEST(VinTest, ReadsAsksProgramsAndVerifiesAlsoWhenTheWindowIsClosedMeanwhile) {
    for (const bool closing : {false, true}) {
        SCOPED_TRACE(closing);
        Workbench at("V8 ex rv52a");
        auto expected = at.module.Eeprom();
        at.line.OnYield([&] {
            if (closing && at.module.Stored() > 0) RequestExit(at.session);
        });
        at.ExpectQuestions(kOld, {kNew});
        at.ExpectBox(kDone);
        at.EditVin();

        WireStory story(true);
        story.Identification(at.id);
        TellReads(story, kOld);
        story.Address(0xB0, 0x01);
        for (const char code : kNew)
            story.Write(code);
        TellReads(story, kNew);
        EXPECT_EQ(Told(at.line.Trace()), story.Text());
        std::ranges::copy(kNew, expected.bytes.begin() + 432);
        EXPECT_EQ(at.module.Eeprom(), expected);
        EXPECT_EQ(at.state.Vin, kNew);
        EXPECT_EQ(at.state.TableType, TableType::RACE);
        EXPECT_EQ(at.shell.closed, closing);
    }
}

TEST(VinTest, IsOnlyForAnIdentifiedRV52A) {
    using Case = std::tuple<const char*, bool, std::vector<std::string>>;
    const std::string unread = "Firmware ID read failed - cannot edit VIN.";
    const std::string wrong = "VIN feature only valid on RV52A Rev 8.1 or higher unit.";
    for (const auto& [id, silent, boxes] : {Case{"RV51 EX", false, {"Firmware ID: RV51 EX", wrong}},
                                            Case{"", false, {unread}}, Case{"RV52A", true, {unread}}}) {
        SCOPED_TRACE(id);
        Workbench at(id, silent ? Faults({"silent"}, 1) : Faults());
        if (silent) at.prompts.ExpectError(kTimeoutText, Answer::Abort);
        for (const auto& box : boxes)
            at.ExpectBox(box);
        at.EditVin();
        EXPECT_EQ(at.line.Opens().size(), 1u);
    }
}

TEST(VinTest, AsksUntilTheAnswerIsAVinOrNothing) {
    const std::string sixteen(16, 'A');
    const auto euro = sixteen + "\xE2\x82\xAC";  // 17 characters all the same
    const auto omega = sixteen + "\xCE\xA9";     // no code of the module's
    const auto broken = sixteen + "\xE9";        // no UTF-8
    Workbench at;
    at.ExpectQuestions(kOld, {sixteen, sixteen + "AA", omega, broken, euro}, Answer::Cancel);
    at.EditVin();
    at.ExpectQuestions(kOld, {""});
    at.EditVin();
    EXPECT_EQ(at.state.Vin, kOld);
    EXPECT_EQ(at.module.Stored(), 0);

    for (const auto& [vin, last] : {std::pair(euro, 0x80), std::pair(std::string(17, ' '), 0x20)}) {
        SCOPED_TRACE(vin);
        at.ExpectQuestions(at.state.Vin, {vin});
        at.ExpectBox(kDone);
        at.EditVin();
        EXPECT_EQ(at.module.Eeprom()[448], last);
    }
}

TEST(VinTest, TellsEveryFailingWrite) {
    using Case = std::tuple<const char*, const char*, const char*>;
    // Reply 1 is the name, 2 to 19 read the VIN, 20 acknowledges the address, 21 to 37 are writes.
    const Case cases[] = {
        {"refused-address=2", nullptr, kUnprogrammed}, {"lost-reply=20", kTimeoutText, kUnprogrammed},
        {"refused-write=17", nullptr, kUnprogrammed},  {"lost-reply=21", kVinTimeout, kUnprogrammed},
        {"late-reply=37", kVinTimeout, kUnprogrammed}, {"refused-address=3", nullptr, kUnverified},
        {"not-stored=1", nullptr, kUnverified},        {"flipped-bit=34", nullptr, kUnverified},
        {"lost-reply=38", kTimeoutText, kUnverified},  {"lost-reply=55", kTimeoutText, kUnverified}};
    for (const auto& [fault, timeout, outcome] : cases) {
        SCOPED_TRACE(fault);
        Workbench at("RV52A", Faults({fault}, 1));
        at.ExpectQuestions(kOld, {kNew});
        for (const auto answer : {Answer::Retry, Answer::Abort})
            if (timeout != nullptr) at.prompts.ExpectError(timeout, answer);
        at.ExpectBox(outcome, Icon::Information);
        at.EditVin();
        EXPECT_EQ(at.state.Vin, kNew);
    }
}

TEST(VinTest, NoVinAndAModuleThatDoesNotEchoAreNoSuccess) {
    ConnectedModule at(Options(TableType::RACE, false));
    at.prompts.ExpectError(kVinTimeout, Answer::Ignore);
    for (const auto& [vin, stored] : {std::pair("too short", 0), {kNew.c_str(), 1}}) {
        SCOPED_TRACE(vin);
        at.state.Vin = vin;
        at.state.CommOK = true;
        WriteVINData(at.session);
        EXPECT_FALSE(at.state.CommOK);
        EXPECT_EQ(at.module.Stored(), stored);
        EXPECT_EQ(at.line.Opens().empty(), stored == 0);
    }
}

// Escape, closing the window and a refused address end the reading; closing ends the command too.
TEST(VinTest, AnEndedReadOffersTheLastVinKnown) {
    for (const std::string deed : {"refused", "escape", "closing"}) {
        SCOPED_TRACE(deed);
        Workbench at("RV52A", deed == "refused" ? Faults({"refused-address=1"}, 1) : Faults());
        at.state.Vin = kNew;
        at.line.OnYield([&] {
            if (at.state.EepromBuffer[440] == 0) return;
            deed == "closing" ? RequestExit(at.session) : EscapePressed(at.session);
        });
        at.ExpectQuestions(kNew, std::vector<std::string>(deed == "closing" ? 0 : 1));
        at.EditVin();
        EXPECT_EQ(at.state.EepromBuffer[441], 0);
        EXPECT_EQ(at.state.Vin, kNew);
        EXPECT_EQ(at.shell.closed, deed == "closing");
    }
}

}  // namespace
}  // namespace rv52::test
