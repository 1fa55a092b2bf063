// What each counter and each indicator counts, by table. A name is "<table>: <event>".
//
// Four things a reader of the numbers should know: counter 0 is a real one; KPI 3 is shared by two tables; the object
// releases of l2mc6_bd_vxlan_sub_elb have a number far from the table's others; and where the name is "writes" or
// "deletes", the table decides whether a write of a present key or a removal of an absent one counts among them.
#include <cstddef>
#include <span>

#include "mcast6_platform/platform.h"

namespace {

struct Name {
    uint32_t id;
    const char* text;
};

constexpr Name kCounterNames[] = {
    {55, "object cache: creations failed"},
    {56, "object cache: resets failed"},

    {37, "l2mc6_global_enable: objects created"},
    {38, "l2mc6_global_enable: objects released"},

    {43, "l2mc6_vlan_enable: objects created"},
    {44, "l2mc6_vlan_enable: objects released"},

    {21, "l2mc6_vlan_port: objects created"},
    {22, "l2mc6_vlan_port: objects released"},

    {14, "l2mc6_flowstat_sub: objects created"},
    {15, "l2mc6_flowstat_sub: objects released"},

    {390, "l2mc6_bd_flowstat_sub: objects created"},
    {391, "l2mc6_bd_flowstat_sub: object creations failed"},
    {392, "l2mc6_bd_flowstat_sub: objects released"},
    {393, "l2mc6_bd_flowstat_sub: writes refused by a full table"},
    {394, "l2mc6_bd_flowstat_sub: writes"},
    {395, "l2mc6_bd_flowstat_sub: writes failed"},
    {396, "l2mc6_bd_flowstat_sub: deletes"},
    {397, "l2mc6_bd_flowstat_sub: deletes failed"},
    {398, "l2mc6_bd_flowstat_sub: iterator creations failed"},

    {452, "l2mc6_bd_enable: objects created"},
    {453, "l2mc6_bd_enable: object creations failed"},
    {454, "l2mc6_bd_enable: objects released"},
    {455, "l2mc6_bd_enable: writes"},
    {456, "l2mc6_bd_enable: writes failed"},
    {457, "l2mc6_bd_enable: deletes"},
    {458, "l2mc6_bd_enable: deletes failed"},
    {459, "l2mc6_bd_enable: iterator creations failed"},

    {473, "l2mc6_bd_mfib: objects created"},
    {474, "l2mc6_bd_mfib: objects released"},

    {0, "l2mc6_vlan_mfib: objects created"},
    {1, "l2mc6_vlan_mfib: objects released"},

    {7, "l2mc6_elb: objects created"},
    {8, "l2mc6_elb: objects released"},

    {335, "l2mc6_bd_tag_elb: object creations failed"},
    {336, "l2mc6_bd_tag_elb: objects created"},
    {337, "l2mc6_bd_tag_elb: objects released"},
    {338, "l2mc6_bd_tag_elb: writes"},
    {339, "l2mc6_bd_tag_elb: writes failed"},
    {340, "l2mc6_bd_tag_elb: deletes"},
    {341, "l2mc6_bd_tag_elb: deletes failed"},
    {342, "l2mc6_bd_tag_elb: iterator creations failed"},

    {343, "l2mc6_bd_untag_elb: object creations failed"},
    {344, "l2mc6_bd_untag_elb: objects created"},
    {345, "l2mc6_bd_untag_elb: objects released"},
    {346, "l2mc6_bd_untag_elb: writes"},
    {347, "l2mc6_bd_untag_elb: writes failed"},
    {348, "l2mc6_bd_untag_elb: deletes"},
    {349, "l2mc6_bd_untag_elb: deletes failed"},
    {350, "l2mc6_bd_untag_elb: iterator creations failed"},

    {404, "l2mc6_bd_tag_rt: objects created"},
    {405, "l2mc6_bd_tag_rt: object creations failed"},
    {406, "l2mc6_bd_tag_rt: objects released"},
    {407, "l2mc6_bd_tag_rt: writes"},
    {408, "l2mc6_bd_tag_rt: writes failed"},
    {409, "l2mc6_bd_tag_rt: deletes"},
    {410, "l2mc6_bd_tag_rt: deletes failed"},
    {411, "l2mc6_bd_tag_rt: iterator creations failed"},

    {412, "l2mc6_bd_untag_rt: objects created"},
    {413, "l2mc6_bd_untag_rt: object creations failed"},
    {414, "l2mc6_bd_untag_rt: objects released"},
    {415, "l2mc6_bd_untag_rt: writes"},
    {416, "l2mc6_bd_untag_rt: writes failed"},
    {417, "l2mc6_bd_untag_rt: deletes"},
    {418, "l2mc6_bd_untag_rt: deletes failed"},
    {419, "l2mc6_bd_untag_rt: iterator creations failed"},

    {503, "l2mc6_bd_vxlan_elb: objects created"},
    {504, "l2mc6_bd_vxlan_elb: object creations failed"},
    {505, "l2mc6_bd_vxlan_elb: objects released"},
    {506, "l2mc6_bd_vxlan_elb: writes"},
    {507, "l2mc6_bd_vxlan_elb: writes failed"},
    {508, "l2mc6_bd_vxlan_elb: deletes"},
    {509, "l2mc6_bd_vxlan_elb: deletes failed"},
    {510, "l2mc6_bd_vxlan_elb: iterator creations failed"},

    {380, "l2mc6_bd_vxlan_sub_elb: objects released"},
    {511, "l2mc6_bd_vxlan_sub_elb: objects created"},
    {512, "l2mc6_bd_vxlan_sub_elb: object creations failed"},
    {513, "l2mc6_bd_vxlan_sub_elb: writes"},
    {514, "l2mc6_bd_vxlan_sub_elb: writes failed"},
    {515, "l2mc6_bd_vxlan_sub_elb: deletes"},
    {516, "l2mc6_bd_vxlan_sub_elb: deletes failed"},
    {517, "l2mc6_bd_vxlan_sub_elb: iterator creations failed"},

    {518, "l2mc6_bd_rt_vxlan_elb: object creations failed"},
    {519, "l2mc6_bd_rt_vxlan_elb: objects created"},
    {520, "l2mc6_bd_rt_vxlan_elb: objects released"},
    {521, "l2mc6_bd_rt_vxlan_elb: writes failed"},
    {522, "l2mc6_bd_rt_vxlan_elb: writes"},
    {523, "l2mc6_bd_rt_vxlan_elb: deletes failed"},
    {524, "l2mc6_bd_rt_vxlan_elb: deletes"},
    {525, "l2mc6_bd_rt_vxlan_elb: iterator creations failed"},

    {151, "l3mc6_mfib: objects created"},
    {152, "l3mc6_mfib: objects released"},
    {153, "l3mc6_mfib: cache object creations failed"},
    {154, "l3mc6_mfib: cache object resets failed"},

    {33, "l3mc6_glbcfg: objects created"},
    {34, "l3mc6_glbcfg: objects released"},

    {252, "l3mc6_register_elb: objects created"},
    {253, "l3mc6_register_elb: objects released"},

    {239, "l3mc6_elb: objects created"},
    {240, "l3mc6_elb: objects released"},
    {241, "l3mc6_elb: cached objects not ready"},

    {246, "l3mc6_sub_elb: objects created"},
    {247, "l3mc6_sub_elb: objects released"},
    {248, "l3mc6_sub_elb: cache object creations failed"},
    {249, "l3mc6_sub_elb: cache object resets failed"},

    {281, "l3mc6_vlan_elb: objects created"},
    {282, "l3mc6_vlan_elb: objects released"},
    {283, "l3mc6_vlan_elb: cache object creations failed"},
    {284, "l3mc6_vlan_elb: cache object resets failed"},
    {285, "l3mc6_vlan_elb: cached iterator creations failed"},
    {286, "l3mc6_vlan_elb: cached iterator resets failed"},

    {322, "l3mc6_bd_tag_elb: objects created"},
    {323, "l3mc6_bd_tag_elb: objects released"},

    {324, "l3mc6_bd_untag_elb: objects created"},
    {325, "l3mc6_bd_untag_elb: objects released"},

    {326, "l3mc6_bd_tnl_elb: objects created"},
    {327, "l3mc6_bd_tnl_elb: objects released"},

    {476, "l3mc6_mvpn_tnl_elb: objects created"},
    {477, "l3mc6_mvpn_tnl_elb: objects released"},

    {478, "l3mc6_mvpn_tnl_subelb: objects created"},
    {479, "l3mc6_mvpn_tnl_subelb: objects released"},
};

constexpr Name kKpiNames[] = {
    {49, "l2mc6_global_enable: writes and updates"},
    {50, "l2mc6_global_enable: writes and updates failed"},
    {51, "l2mc6_global_enable: deletes"},
    {52, "l2mc6_global_enable: deletes failed"},

    {65, "l2mc6_vlan_enable: writes"},
    {66, "l2mc6_vlan_enable: writes failed"},
    {67, "l2mc6_vlan_enable: deletes"},
    {68, "l2mc6_vlan_enable: deletes failed"},

    {3, "l2mc6_bd_mfib and l2mc6_vlan_mfib: writes"},

    {4, "l2mc6_vlan_mfib: writes failed"},
    {5, "l2mc6_vlan_mfib: deletes"},
    {6, "l2mc6_vlan_mfib: deletes failed"},

    {208, "l2mc6_bd_mfib: writes failed"},
    {209, "l2mc6_bd_mfib: deletes"},
    {210, "l2mc6_bd_mfib: deletes failed"},

    {27, "l2mc6_elb: writes"},
    {28, "l2mc6_elb: writes failed"},
    {29, "l2mc6_elb: deletes"},
    {30, "l2mc6_elb: deletes failed"},

    {93, "l3mc6_mfib: writes attempted"},
    {94, "l3mc6_mfib: writes failed"},
    {95, "l3mc6_mfib: deletes"},
    {96, "l3mc6_mfib: deletes failed"},
    {114, "l3mc6_mfib: object creations failed"},
    {115, "l3mc6_mfib: iterator creations failed"},

    {145, "l3mc6_glbcfg: writes"},
    {146, "l3mc6_glbcfg: writes failed"},
    {147, "l3mc6_glbcfg: deletes"},
    {148, "l3mc6_glbcfg: deletes failed"},
    {159, "l3mc6_glbcfg: object creations failed"},
    {160, "l3mc6_glbcfg: iterator creations failed"},

    {137, "l3mc6_register_elb: writes"},
    {138, "l3mc6_register_elb: writes failed"},
    {139, "l3mc6_register_elb: deletes"},
    {140, "l3mc6_register_elb: deletes failed"},
    {141, "l3mc6_register_elb: object creations failed"},
    {142, "l3mc6_register_elb: iterator creations failed"},

    {128, "l3mc6_elb: object creations failed"},
    {129, "l3mc6_elb: iterator creations failed"},

    {135, "l3mc6_sub_elb: object creations failed"},
    {136, "l3mc6_sub_elb: iterator creations failed"},

    {162, "l3mc6_vlan_elb: object creations failed"},
    {163, "l3mc6_vlan_elb: iterator creations failed"},

    {188, "l3mc6_bd_tag_elb: writes"},
    {189, "l3mc6_bd_tag_elb: writes failed"},
    {190, "l3mc6_bd_tag_elb: deletes"},
    {191, "l3mc6_bd_tag_elb: deletes failed"},
    {192, "l3mc6_bd_tag_elb: object creations failed"},
    {193, "l3mc6_bd_tag_elb: iterator creations failed"},

    {194, "l3mc6_bd_untag_elb: writes"},
    {195, "l3mc6_bd_untag_elb: writes failed"},
    {196, "l3mc6_bd_untag_elb: deletes"},
    {197, "l3mc6_bd_untag_elb: deletes failed"},
    {198, "l3mc6_bd_untag_elb: object creations failed"},
    {199, "l3mc6_bd_untag_elb: iterator creations failed"},

    {200, "l3mc6_bd_tnl_elb: writes"},
    {201, "l3mc6_bd_tnl_elb: writes failed"},
    {202, "l3mc6_bd_tnl_elb: deletes"},
    {203, "l3mc6_bd_tnl_elb: deletes failed"},
    {204, "l3mc6_bd_tnl_elb: object creations failed"},
    {205, "l3mc6_bd_tnl_elb: iterator creations failed"},

    {212, "l3mc6_mvpn_tnl_elb: writes"},
    {213, "l3mc6_mvpn_tnl_elb: writes failed"},
    {214, "l3mc6_mvpn_tnl_elb: deletes"},
    {215, "l3mc6_mvpn_tnl_elb: deletes failed"},
    {216, "l3mc6_mvpn_tnl_elb: object creations failed"},
    {217, "l3mc6_mvpn_tnl_elb: iterator creations failed"},

    {218, "l3mc6_mvpn_tnl_subelb: writes"},
    {219, "l3mc6_mvpn_tnl_subelb: writes failed"},
    {220, "l3mc6_mvpn_tnl_subelb: deletes"},
    {221, "l3mc6_mvpn_tnl_subelb: deletes failed"},
    {222, "l3mc6_mvpn_tnl_subelb: object creations failed"},
    {223, "l3mc6_mvpn_tnl_subelb: iterator creations failed"},
};

const char* find(std::span<const Name> names, uint32_t id) {
    for (const Name& name : names) {
        if (name.id == id) return name.text;
    }
    return nullptr;
}

constexpr bool eachIdOnce(std::span<const Name> names) {
    for (size_t first = 0; first < names.size(); ++first) {
        for (size_t second = first + 1; second < names.size(); ++second) {
            if (names[first].id == names[second].id) return false;
        }
    }
    return true;
}
static_assert(eachIdOnce(kCounterNames) && eachIdOnce(kKpiNames));

}  // namespace

const char* mcast6_platform_counter_name(uint32_t counterId) { return find(kCounterNames, counterId); }

const char* mcast6_platform_kpi_name(uint32_t kpiId) { return find(kKpiNames, kpiId); }
