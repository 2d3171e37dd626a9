// The distance of two points against the library's, to the last bit.
#include "hostout/HostVector.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <random>

namespace {

TEST(VectorTest, DistancesAreThoseOfHypot) {
    std::mt19937 random(11);
    for (int i = 0; i < 200'000; ++i) {
        // Half of them of any bits, infinities and what is no number among them.
        const auto number = [&] {
            const auto bits = static_cast<std::uint32_t>(random());
            return i % 2 == 0 ? std::bit_cast<float>(bits) : static_cast<float>(bits % 1'000'000) / 1024.0f;
        };
        const point_2d a{number(), number()};
        const point_2d b{number(), number()};
        const float expected = std::hypot(a.x - b.x, a.y - b.y);
        const float distance = a.DistFrom(b);
        if (std::isnan(expected)) {
            ASSERT_TRUE(std::isnan(distance));
        } else {
            ASSERT_EQ(distance, expected) << a.x << ' ' << a.y << ' ' << b.x << ' ' << b.y;
        }
    }
}

}  // namespace
