#include "platform/Failure.h"
#include "simulator/ImageFile.h"
#include "support/TemporaryFolder.h"

#include <fstream>
#include <gtest/gtest.h>

namespace rv52 {
namespace {

namespace fs = std::filesystem;

TEST(ImageFileTest, IsCreatedAndThenKeptWithItsLinksAndPermissions) {
    const test::TemporaryFolder folder;
    const auto path = folder.Path() / "module.bin";
    const auto link = folder.Path() / "link.bin";
    const auto factory = FactoryEeprom(TableType::EX);
    EXPECT_EQ(ImageFile(path).LoadOrCreate(factory), factory);
    EXPECT_EQ(fs::file_size(path), 512U);

    const auto mode = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    fs::permissions(path, mode);
    fs::create_symlink(path, link);
    auto changed = factory;
    changed[300] = 1;
    ImageFile(link).Save(changed);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(fs::status(path).permissions(), mode);
    EXPECT_EQ(ImageFile(path).LoadOrCreate(factory), changed);
    std::ifstream bytes(path, std::ios::binary);
    bytes.seekg(300);
    EXPECT_EQ(bytes.get(), 1);
}

TEST(ImageFileTest, RefusesWhatIsNoImage) {
    const test::TemporaryFolder folder;
    for (const std::size_t size : {0U, 511U, 513U}) {
        const auto path = folder.Path() / "wrong.bin";
        std::ofstream(path) << std::string(size, 'x');
        EXPECT_THROW(ImageFile(path).LoadOrCreate({}), FileFailure) << size;
        EXPECT_EQ(fs::file_size(path), size);
    }
    EXPECT_THROW(ImageFile(folder.Path()).LoadOrCreate({}), FileFailure);
    EXPECT_THROW(ImageFile(folder.Path() / "no" / "folder").LoadOrCreate({}), FileFailure);
}

}  // namespace
}  // namespace rv52
