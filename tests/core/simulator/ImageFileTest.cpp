#include "platform/Failure.h"
#include "simulator/ImageFile.h"
#include "support/TemporaryFolder.h"

#include <fstream>
#include <gtest/gtest.h>

namespace rv52 {
namespace {

namespace fs = std::filesystem;

TEST(ImageFileTest, IsCreatedAndThenKept) {
    const test::TemporaryFolder folder;
    const auto path = folder.Path() / "module.bin";
    const auto factory = FactoryEeprom(TableType::EX);
    EXPECT_EQ(ImageFile(path).LoadOrCreate(factory), factory);
    EXPECT_EQ(fs::file_size(path), 512U);

    auto changed = factory;
    changed[300] = 1;
    ImageFile(path).Save(changed);
    EXPECT_EQ(ImageFile(path).LoadOrCreate(factory), changed);
    std::ifstream bytes(path, std::ios::binary);
    bytes.seekg(300);
    EXPECT_EQ(bytes.get(), 1);
}

TEST(ImageFileTest, LeavesLinksAndPermissionsAsTheyAre) {
    const test::TemporaryFolder folder;
    const auto target = folder.Path() / "target.bin";
    const auto link = folder.Path() / "link.bin";
    ImageFile(target).Save(FactoryEeprom(TableType::RACE));
    const auto mode = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    fs::permissions(target, mode);
    fs::create_symlink(target, link);

    ImageFile(link).Save(FactoryEeprom(TableType::EX));
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(fs::status(target).permissions(), mode);
    EXPECT_EQ(ImageFile(target).LoadOrCreate({}), FactoryEeprom(TableType::EX));
}

TEST(ImageFileTest, RefusesWhatIsNoImage) {
    const test::TemporaryFolder folder;
    for (const int size : {0, 511, 513}) {
        const auto path = folder.Path() / "wrong.bin";
        std::ofstream(path) << std::string(static_cast<std::size_t>(size), 'x');
        EXPECT_THROW(ImageFile(path).LoadOrCreate({}), FileFailure) << size;
        EXPECT_EQ(fs::file_size(path), static_cast<std::uintmax_t>(size));
    }
    EXPECT_THROW(ImageFile(folder.Path()).LoadOrCreate({}), FileFailure);
    EXPECT_THROW(ImageFile(folder.Path() / "no" / "folder").LoadOrCreate({}), FileFailure);
}

}  // namespace
}  // namespace rv52
