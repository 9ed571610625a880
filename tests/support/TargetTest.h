// A test of vector forms, run once on every instruction set that this machine has.
#pragma once

#include <hwy/targets.h>

#include <gtest/gtest.h>

class CTargetTest : public testing::TestWithParam<int64_t> {
protected:
    CTargetTest() { hwy::SetSupportedTargetsForTest(GetParam()), hwy::GetChosenTarget().DeInit(); }
    ~CTargetTest() override { hwy::SetSupportedTargetsForTest(0), hwy::GetChosenTarget().DeInit(); }
};

#define ON_EVERY_TARGET(Suite)                                                                               \
    INSTANTIATE_TEST_SUITE_P(Targets, Suite, testing::ValuesIn(hwy::SupportedAndGeneratedTargets()),         \
                             [](const auto& info) { return std::string(hwy::TargetName(info.param)); })
