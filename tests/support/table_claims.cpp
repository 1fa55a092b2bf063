#include "tests/support/table_claims.h"

#include <algorithm>

#include "mcast6_db/context.h"

namespace mcast6::tests {

namespace {

recording::Recorder& platform() { return recording::Recorder::instance(); }

}  // namespace

void expectSilence() {
    EXPECT_THAT(platform().logFormats(), testing::IsEmpty());
    EXPECT_THAT(g_mcast6DbErrStat, testing::Each(testing::Each(0u)));
}

void startClock() { platform().setTime(0x0102030405060708, 1); }

std::string stampedRow(const TableFacts& table, const std::string& createTime, const std::string& smoothTime) {
    const std::string stamps = createTime + smoothTime;
    std::string row = recording::hex(recording::Bytes(table.rowSize, 0x5A));
    return row.replace(2 * table.createStamp, stamps.size(), stamps);
}

void expectArgumentsOfCreation(const TableFacts& table, const std::string& counted) {
    Mcast6DbHandle object = 0;
    EXPECT_EQ(0u, table.createObject(9, 7, &object));
    EXPECT_EQ(platform().trace(), (Trace{"create " + table.name + " 9 7 -> obj1", counted}));
}

void expectReported(const Tolerance& tolerance) {
    Trace lines = platform().takeTrace();
    EXPECT_EQ(1, std::count(lines.begin(), lines.end(), tolerance.counted));
    EXPECT_EQ(0, std::count(lines.begin(), lines.end(), tolerance.notCounted));
    std::erase_if(lines, [](const std::string& text) { return !text.starts_with("record "); });
    EXPECT_EQ(lines, Trace{tolerance.error});
    EXPECT_THAT(platform().logFormats(), testing::IsEmpty());
}

}  // namespace mcast6::tests
