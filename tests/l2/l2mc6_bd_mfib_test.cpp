// l2mc6_bd_mfib. What each operation does, one row for each step:
//
// operation          step          fails with   then
// create object      create        any          log; 1
//                    -             -            counts 473; 0
// release object     -             -            released; counts 474
// read with object   read          15005        60
//                                  other        log; error 0; 1
//                    -             -            record filled; 0
// read               null          -            log; 1
//                    create 3      any          log; 1
//                    read          15005        released; 60
//                                  other        log; error 0; released; 1
//                    -             -            record filled; released; 0
// keep an object     create 3      any          log; 1             (the first time)
//                    reset 3       any          log; 1             (from then on)
// fast read          keep          any          both logs; 1
//                    read          as the read with an object
// write              null          -            log; KPI 208; 1
//                    create 0      any          log; KPI 208; 1
//                    set all       any          released; log; KPI 208; 1
//                    write         13044        released; error 1; KPI 3; 0
//                                  other        released; KPI 208; log; error 2; 1
//                    -             -            released; KPI 3; 0
// smooth version     null          -            log; 1
//                    create 1      any          log; 1
//                    2 setters     any          log; released; 1
//                    update        13044        released; error 1; 0
//                                  other        released; log; error 6; 1
//                    -             -            released; 0
// delete             null          -            log; KPI 210; 1
//                    create 4      any          log; KPI 210; 1
//                    remove        13044        released; error 1; KPI 209; 0
//                                  other        released; KPI 210; error 4; log; 1
//                    -             -            released; KPI 209; 0
// get contexts       2 getters     any          OR of both codes
// get addresses      group         any          0
//                    source        any          the code
// get item           null          -            nothing
//                    contexts      any          nothing
//                    group         any          nothing
//                    16 others     any          log with the OR of the codes
// get next           null iterator -            1
//                    null record   -            the step; 0
//                    next          110012       60
//                                  other        log; 1
//                    getters       any          as get item; 0
// get entry          null          -            1
//                    next          110012       60
//                                  other        log; error 9; 1
//                    read          15005        60
//                                  other        log; error 0; 1
//                    -             -            record filled; 0
// create iterator    create 5      any          log; null
//   over all         root iterator any          log; error 7; released; null
//                    property      any          released; log; null
//                    allocation    -            released; log; error 8; null
//   by group, by bridge domain, by source pid
//                    create 5      any          error 0; null
//                    root iterator any          released; null
//                    property      any          released; log; null
//                    allocation    -            log; error 8; released; null
//   sorted           create 5      any          statement and condition all the same; released; null
//                    statement     any          condition all the same; released; null
//                    condition     any          released; null
//                    root iterator any          released; null
//                    property      any          released; log; null
//                    allocation    -            released; log; error 8 of table 8; null
//   by error code    create 5      any          error 0; 1           (no allocation)
//                    root iterator any          released; 1
//                    property      any          released; log; 1
//                    -             -            the caller's handle filled; 0
// release iterator   null          -            nothing
//                    -             -            released; block freed
// count              create 9      any          1
//                    count         any          released; 1
//                    -             -            released; count filled; 0
// count by domain    create 9      any          error 0; 1           (nothing counted or logged)
//                    count         15005        released; 0
//                                  other        log; error 0; released; 0
//                    -             -            released; the count
// count conflicts    create 9      any          error 0 of table 8; 1
//                    count         any          log, 15005 as 0; error 0; released; count is 0; 1
//                    -             -            released; count filled; 0
//
// A failed create is logged with its code, in addition to the effects above. Errors are recorded under table 27 unless
// said otherwise.
#include <gtest/gtest.h>

#include "tests/l2/l2mc6_bd_mfib_facts.h"
#include "tests/support/operation_test.h"

namespace mcast6::tests::l2_mfib {

namespace {

MfibFamily bdMfib(kBdMfib, [](Entry& entry) { readStored(kBdMfib, entry); });

std::vector<Operation> operations() {
    std::vector<Operation> all = bdMfib.operations();
    all.push_back(bdMfib.keyedIterator(
        "CreateL2BdMfib6IterBySrcPid", [] { return MCAST6_DB_CreateL2BdMfib6IterBySrcPid(0x81828384); },
        "key=0509000c:000000000000000084838281",
        forwarding("[MCAST6 DB] set SrcPid root iterator property fail, ret:%d.", code),
        forwarding("[MCAST6 DB] CreateL2vlanmfib6Iter By SrcPid malloc db res failed.")));
    return all;
}

INSTANTIATE_TEST_SUITE_P(l2mc6_bd_mfib, EveryExit, testing::ValuesIn(operations()), nameOfOperation);

}  // namespace

}  // namespace mcast6::tests::l2_mfib
