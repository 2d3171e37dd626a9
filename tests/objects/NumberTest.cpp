// Numbers: the pool, and that a dropped number is out of reach.
#include "objects/Number.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/FreeCells.h"

namespace {

class NumberTest : public ::testing::Test {
protected:
    NumberTest() { CreateNumberPool(); }
    ~NumberTest() override { DestroyNumberPool(); }
};

TEST_F(NumberTest, PoolGrowsByItsStepAndReusesCells) {
    std::vector<ElementPtr> numbers;
    for (int i = 0; i < NUMBER_POOL_STEP; ++i) numbers.push_back(NewInt(i));
    EXPECT_EQ(g_nNumberPoolSize, NUMBER_POOL_STEP);
    numbers.push_back(NewReal(0.5));
    EXPECT_EQ(g_nNumberPoolSize, 2 * NUMBER_POOL_STEP);
    for (int i = 0; i < NUMBER_POOL_STEP; ++i) {
        EXPECT_EQ(static_cast<CNumberElement&>(*numbers[static_cast<size_t>(i)]).GetInt(), i);
    }
    numbers.clear();
    for (int i = 0; i < 2 * NUMBER_POOL_STEP; ++i) numbers.push_back(NewInt(i));
    EXPECT_EQ(g_nNumberPoolSize, 2 * NUMBER_POOL_STEP);
}

TEST_F(NumberTest, AnElementIsOfferedUntilItIsTaken) {
    CNumberElement* offered = AllocNumberElement();
    EXPECT_EQ(AllocNumberElement(), offered);
    offered->SetInt(7);
    offered->MarkInUse();
    const TypedPtr<CNumberElement> taken(offered);
    EXPECT_NE(AllocNumberElement(), offered);
    EXPECT_EQ(taken->GetInt(), 7);
}

#ifdef EPS_ADDRESS_SANITIZER
TEST_F(NumberTest, ReadingADroppedNumberIsReported) {
    const CNumberElement* volatile dropped = NewInt(5).get();
    volatile std::int32_t read = 0;
    EXPECT_DEATH(read = dropped->GetInt(), "use-after-poison");
    EXPECT_EQ(read, 0);
}
#endif

}  // namespace
