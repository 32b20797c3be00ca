// The environment record: the program's name and the platform flag.

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "platform/base/env.h"

namespace {

class EnvName : public testing::Test {
protected:
    void TearDown() override { SetEnvName("Parallaxotron"); }
};

TEST_F(EnvName, StartsAsTheProgramsName)
{
    EXPECT_STREQ(gEnv.name, "Parallaxotron");
    EXPECT_FALSE(gWin32);
}

TEST_F(EnvName, IsCopiedWhole)
{
    SetEnvName("Slatewhirl");
    EXPECT_STREQ(gEnv.name, "Slatewhirl");
}

TEST_F(EnvName, LongNameIsCutToSixtyThreeCharactersAndTerminated)
{
    std::string longName(100, 'x');
    SetEnvName(longName.c_str());
    EXPECT_EQ(std::strlen(gEnv.name), static_cast<size_t>(kEnvNameSize - 1));
    EXPECT_EQ(std::string(gEnv.name), std::string(kEnvNameSize - 1, 'x'));
}

TEST_F(EnvName, NullNameLeavesAnEmptyName)
{
    SetEnvName(nullptr);
    EXPECT_STREQ(gEnv.name, "");
}

}  // namespace
