#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include "mcast6_platform/host.h"
#include "mcast6_platform/platform.h"

namespace {

class CountersTest : public testing::Test {
protected:
    void SetUp() override { mcast6_platform_reset_counters(); }
    void TearDown() override { mcast6_platform_reset_counters(); }
};

TEST_F(CountersTest, countersAndIndicatorsCountApart) {
    MCAST6_DfxCounterInc(151);
    MCAST6_DfxCounterInc(151);
    MCAST6_KPI_AddKpiData(151);
    MCAST6_DfxCounterInc(0);
    EXPECT_EQ(2u, mcast6_platform_counter(151));
    EXPECT_EQ(1u, mcast6_platform_kpi(151));
    EXPECT_EQ(1u, mcast6_platform_counter(0));
    EXPECT_EQ(0u, mcast6_platform_kpi(0));
    EXPECT_EQ(0u, mcast6_platform_counter(152));
}

TEST_F(CountersTest, idsBeyondTheLastShareOnePlace) {
    MCAST6_DfxCounterInc(1023);
    MCAST6_DfxCounterInc(1024);
    MCAST6_DfxCounterInc(4294967295u);
    MCAST6_KPI_AddKpiData(1025);
    EXPECT_EQ(1u, mcast6_platform_counter(1023));
    EXPECT_EQ(2u, mcast6_platform_counter(1024));
    EXPECT_EQ(2u, mcast6_platform_counter(70000));
    EXPECT_EQ(0u, mcast6_platform_kpi(1023));
    EXPECT_EQ(1u, mcast6_platform_kpi(4294967295u));
}

TEST_F(CountersTest, resetClearsAll) {
    MCAST6_DfxCounterInc(5);
    MCAST6_DfxCounterInc(2000);
    MCAST6_KPI_AddKpiData(5);
    MCAST6_TRAP_DecreaseMfib6DbCnt();
    EXPECT_EQ(1u, mcast6_platform_trap_count());
    mcast6_platform_reset_counters();
    EXPECT_EQ(0u, mcast6_platform_counter(5));
    EXPECT_EQ(0u, mcast6_platform_counter(2000));
    EXPECT_EQ(0u, mcast6_platform_kpi(5));
    EXPECT_EQ(0u, mcast6_platform_trap_count());
}

TEST_F(CountersTest, noIncrementIsLostAmongThreads) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 20'000;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([] {
            for (int round = 0; round < kRounds; ++round) {
                MCAST6_DfxCounterInc(7);
                MCAST6_KPI_AddKpiData(8);
                MCAST6_TRAP_DecreaseMfib6DbCnt();
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(80'000u, mcast6_platform_counter(7));
    EXPECT_EQ(80'000u, mcast6_platform_kpi(8));
    EXPECT_EQ(80'000u, mcast6_platform_trap_count());
}

TEST(CounterNamesTest, nameTheTableAndTheEvent) {
    EXPECT_STREQ("l2mc6_vlan_mfib: objects created", mcast6_platform_counter_name(0));
    EXPECT_STREQ("l2mc6_vlan_mfib: objects released", mcast6_platform_counter_name(1));
    EXPECT_STREQ("object cache: creations failed", mcast6_platform_counter_name(55));
    EXPECT_STREQ("object cache: resets failed", mcast6_platform_counter_name(56));
    EXPECT_STREQ("l3mc6_mfib: objects created", mcast6_platform_counter_name(151));
    EXPECT_STREQ("l3mc6_mfib: objects released", mcast6_platform_counter_name(152));
    EXPECT_STREQ("l3mc6_mfib: cache object creations failed", mcast6_platform_counter_name(153));
    EXPECT_STREQ("l3mc6_mfib: cache object resets failed", mcast6_platform_counter_name(154));
    EXPECT_STREQ("l3mc6_vlan_elb: cached iterator resets failed", mcast6_platform_counter_name(286));
    EXPECT_STREQ("l2mc6_bd_vxlan_sub_elb: objects released", mcast6_platform_counter_name(380));
    EXPECT_STREQ("l2mc6_bd_flowstat_sub: writes refused by a full table", mcast6_platform_counter_name(393));
    EXPECT_STREQ("l2mc6_bd_enable: objects created", mcast6_platform_counter_name(452));
    EXPECT_STREQ("l2mc6_bd_enable: object creations failed", mcast6_platform_counter_name(453));
    EXPECT_STREQ("l2mc6_bd_enable: objects released", mcast6_platform_counter_name(454));
    EXPECT_STREQ("l2mc6_bd_enable: writes", mcast6_platform_counter_name(455));
    EXPECT_STREQ("l2mc6_bd_enable: writes failed", mcast6_platform_counter_name(456));
    EXPECT_STREQ("l2mc6_bd_enable: deletes", mcast6_platform_counter_name(457));
    EXPECT_STREQ("l2mc6_bd_enable: deletes failed", mcast6_platform_counter_name(458));
    EXPECT_STREQ("l2mc6_bd_enable: iterator creations failed", mcast6_platform_counter_name(459));
    EXPECT_STREQ("l2mc6_bd_rt_vxlan_elb: iterator creations failed", mcast6_platform_counter_name(525));
}

TEST(CounterNamesTest, nameTheIndicators) {
    EXPECT_STREQ("l2mc6_bd_mfib and l2mc6_vlan_mfib: writes", mcast6_platform_kpi_name(3));
    EXPECT_STREQ("l2mc6_vlan_mfib: writes failed", mcast6_platform_kpi_name(4));
    EXPECT_STREQ("l3mc6_mfib: writes attempted", mcast6_platform_kpi_name(93));
    EXPECT_STREQ("l3mc6_mfib: writes failed", mcast6_platform_kpi_name(94));
    EXPECT_STREQ("l3mc6_mfib: deletes", mcast6_platform_kpi_name(95));
    EXPECT_STREQ("l3mc6_mfib: deletes failed", mcast6_platform_kpi_name(96));
    EXPECT_STREQ("l3mc6_mfib: object creations failed", mcast6_platform_kpi_name(114));
    EXPECT_STREQ("l3mc6_mfib: iterator creations failed", mcast6_platform_kpi_name(115));
    EXPECT_STREQ("l2mc6_bd_mfib: writes failed", mcast6_platform_kpi_name(208));
    EXPECT_STREQ("l3mc6_mvpn_tnl_subelb: iterator creations failed", mcast6_platform_kpi_name(223));
}

TEST(CounterNamesTest, idsThatNobodyUsesHaveNoName) {
    EXPECT_EQ(nullptr, mcast6_platform_counter_name(2));
    EXPECT_EQ(nullptr, mcast6_platform_counter_name(526));
    EXPECT_EQ(nullptr, mcast6_platform_counter_name(1024));
    EXPECT_EQ(nullptr, mcast6_platform_counter_name(4294967295u));
    EXPECT_EQ(nullptr, mcast6_platform_kpi_name(0));
    EXPECT_EQ(nullptr, mcast6_platform_kpi_name(224));
}

TEST(CounterNamesTest, everyNameIsATableAndAnEventOnceEach) {
    std::vector<std::string> counters;
    std::vector<std::string> indicators;
    for (uint32_t id = 0; id < MCAST6_PLATFORM_COUNTERS; ++id) {
        if (const char* name = mcast6_platform_counter_name(id); name != nullptr) counters.emplace_back(name);
        if (const char* name = mcast6_platform_kpi_name(id); name != nullptr) indicators.emplace_back(name);
    }
    EXPECT_LE(120u, counters.size());
    EXPECT_LE(73u, indicators.size());
    for (auto* names : {&counters, &indicators}) {
        for (const std::string& name : *names) EXPECT_NE(std::string::npos, name.find(": ")) << name;
        std::sort(names->begin(), names->end());
        EXPECT_EQ(names->end(), std::adjacent_find(names->begin(), names->end()));
    }
}

}  // namespace
