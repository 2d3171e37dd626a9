// Who owns entities, and what the host's line geometry answers where there is no good answer.
#include "hostout/HostModel.h"

#include <gtest/gtest.h>

#include <memory>
#include <numbers>
#include <string>

#include "hostout/HostCore.h"
#include "lib/HostSetup.h"

namespace {

/// Tells its name when it is released, and when it is deleted.
class Witness : public CEntity {
public:
    Witness(std::string& log, char name) : CEntity(ENT_TEXT), m_Log(log), m_Name(name) {}
    ~Witness() override { m_Log += {'-', m_Name}; }
    void Release() noexcept override { m_Log += {'~', m_Name}; }

private:
    std::string& m_Log;
    char m_Name;
};

TEST(Group, ReleasesThenDeletesNestedChildren) {
    std::string log;
    CEntGroup group;
    auto* inner = new CEntGroup;
    auto* empty = new CEntGroup(static_cast<EntityKind>(ENT_HOST_GROUP_FIRST));
    (new Witness(log, 'a'))->InsertToChildTail(&group);
    inner->InsertToChildTail(&group);
    (new Witness(log, 'b'))->InsertToChildTail(inner);
    empty->InsertToChildTail(inner);
    (new Witness(log, 'c'))->InsertToChildTail(inner);
    (new Witness(log, 'd'))->InsertToChildTail(&group);
    EXPECT_EQ(group.GetChildCount(), 3);
    group.DeleteChildren();
    EXPECT_EQ(log, "~a-a~b-b~c-c~d-d");
    EXPECT_EQ(group.GetChildCount(), 0);
    EXPECT_EQ(group.GetFirstChild(), nullptr);
    (new Witness(log, 'e'))->InsertToChildTail(&group);
    EXPECT_EQ(group.GetChildCount(), 1) << "usable again";
    group.DeleteChildren();
}

TEST(Group, DeletesAnyDepthWithoutRecursion) {
    CEntGroup top;
    CEntGroup* group = &top;
    for (int i = 0; i < 200000; ++i) {
        auto* inner = new CEntGroup;
        inner->InsertToChildTail(group);
        (new CEntPoint)->InsertToChildTail(group);
        group = inner;
    }
    top.DeleteChildren();
    EXPECT_EQ(top.GetFirstChild(), nullptr);
}

TEST(Group, LeavesItsChildrenAliveWhenItGoes) {
    std::string log;
    auto group = std::make_unique<CEntGroup>();
    const std::unique_ptr<CEntity> first(new Witness(log, 'a'));
    const std::unique_ptr<CEntity> second(new Witness(log, 'b'));
    first->InsertToChildTail(group.get());
    second->InsertToChildTail(group.get());
    group.reset();
    EXPECT_EQ(log, "");
    EXPECT_EQ(first->m_pNext, second.get()) << "the chain stays, for whoever took its head";
}

TEST(Host, LendsWhatItsProgramHasSet) {
    SetHostDefaultFont(std::string(200, 'x').c_str());
    tagFontParam font{};
    glbf_GetDataManager()->GetDefFontParam(&font);
    EXPECT_EQ(std::string(font.szFont), std::string(sizeof font.szFont - 1, 'x'));
    SetHostDefaultFont("SimSun");

    EXPECT_EQ(glbf_LoadLocalResHandle("Another"), nullptr);
    EXPECT_EQ(glbf_LoadLocalResHandle(nullptr), nullptr);
    STD_FrePoolMem(STD_AlcPoolMem(0));
    STD_FrePoolMem(nullptr);
}

TEST(LineGeometry, AnswersForLinesThatDegenerate) {
    double out[2] = {-1, -1};
    const double origin[] = {0, 0};
    const double east[] = {10, 0};
    const double north[] = {0, 10};
    const double p[] = {3, 4};
    mathPrjPntLin2DEx(p, origin, east, out);
    EXPECT_EQ(out[0], 3);
    EXPECT_EQ(out[1], 0);
    mathPrjPntLin2DEx(p, east, east, out);
    EXPECT_EQ(out[0], 10) << "a line without length has one foot";

    const double far[] = {10, 10};
    EXPECT_EQ(mathIntLin2DEx(p, far, origin, east, 0.001, 0.001, out), 1);
    EXPECT_NEAR(out[0], 3 - 4 * 7.0 / 6.0, 1e-12);
    EXPECT_NEAR(out[1], 0, 1e-12);
    const double eastAbove[] = {0, 1};
    const double eastFar[] = {10, 1};
    const double nearlyEast[] = {10, 0.005};
    EXPECT_EQ(mathIntLin2DEx(origin, east, eastAbove, eastFar, 0.001, 0.001, out), 0) << "parallel";
    EXPECT_EQ(mathIntLin2DEx(origin, east, origin, nearlyEast, 0.001, 0.001, out), 2) << "one line";
    EXPECT_EQ(mathIntLin2DEx(origin, origin, east, north, 0.001, 0.001, out), 0) << "no line";
    const double nearOrigin[] = {1e-5, 0};
    EXPECT_EQ(mathIntLin2DEx(origin, nearOrigin, p, far, 0.001, 0.001, out), 1) << "short, but a line";

    double v[] = {3, -4};
    EXPECT_EQ(mathUniVec2D(v, 0.001), 1);
    EXPECT_NEAR(v[0], 0.6, 1e-15);
    EXPECT_NEAR(v[1], -0.8, 1e-15);
    double brief[] = {0, 1e-6};
    EXPECT_EQ(mathUniVec2D(brief, 0.001), 0);
    EXPECT_EQ(brief[1], 1) << "short, but with a direction";
    double null[] = {0, 0};
    EXPECT_EQ(mathUniVec2D(null, 0.001), 0);
    EXPECT_EQ(null[0], 0);
}

TEST(LineGeometry, RotatesAboutAPoint) {
    MATRIX_2D matrix;
    InitMatrix2D(matrix);
    const point_2d same = TRANSF_2D(matrix).Map({7, 8});
    EXPECT_EQ(same.x, 7);
    EXPECT_EQ(same.y, 8);
    MakeRotateMatrix(10, 20, static_cast<float>(std::numbers::pi / 2), matrix);
    const point_2d turned = TRANSF_2D(matrix).Map({13, 20});
    EXPECT_NEAR(turned.x, 10, 1e-5);
    EXPECT_NEAR(turned.y, 23, 1e-5);
    EXPECT_NEAR(TRANSF_2D(matrix).GetRotation(), std::numbers::pi / 2, 1e-6);
}

}  // namespace
