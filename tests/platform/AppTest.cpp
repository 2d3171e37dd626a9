// The wait cursor, which the application object shows through the host's main window.
#include "platform/App.h"

#include <gtest/gtest.h>

#include "lib/HostSetup.h"
#include "support/TestFrame.h"

namespace {

TEST(AppTest, WaitCursorsNest) {
    TestFrame frame;
    {
        const CWaitCursor outer;
        { const CWaitCursor inner; }
        EXPECT_EQ(frame.m_WaitCursor, "on ");
    }
    EXPECT_EQ(frame.m_WaitCursor, "on off ");
    SetHostMainFrame(nullptr);
    { const CWaitCursor unseen; }
    SetHostMainFrame(&frame);
    EXPECT_EQ(frame.m_WaitCursor, "on off ");
}

}  // namespace
