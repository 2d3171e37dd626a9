// Loading texts into buffers that may be too short for them.
#include "platform/Resources.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

constexpr CStringResource STRINGS[] = {{1, "警告!"}, {2, ""}};

TEST(ResourcesTest, TextsAreCutBetweenCharacters) {
    CResourceModule module(STRINGS, {});
    struct Case {
        int limit;
        const char* text;
    };
    for (const Case& c : {Case{200, "警告!"}, {8, "警告!"}, {7, "警告"}, {6, "警"}, {4, "警"}, {3, ""}, {1, ""}}) {
        SCOPED_TRACE(c.limit);
        char buffer[200];
        std::memset(buffer, '#', sizeof buffer);
        EXPECT_EQ(LoadStringA(&module, 1, buffer, c.limit), static_cast<int>(std::strlen(c.text)));
        EXPECT_STREQ(buffer, c.text);
        EXPECT_EQ(buffer[std::min<size_t>(static_cast<size_t>(c.limit), sizeof buffer - 1)], '#');
    }
}

TEST(ResourcesTest, MissingTextsAreEmpty) {
    CResourceModule module(STRINGS, {});
    for (const HINSTANCE handle : {static_cast<HINSTANCE>(nullptr), &module}) {
        char buffer[] = "##";
        EXPECT_EQ(LoadStringA(handle, 99, buffer, 2), 0);
        EXPECT_STREQ(buffer, "");
    }
    char untouched = '#';
    EXPECT_EQ(LoadStringA(&module, 1, &untouched, 0), 0);
    EXPECT_EQ(untouched, '#');
}

}  // namespace
