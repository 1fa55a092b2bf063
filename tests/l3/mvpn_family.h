// The two tables of a layer-3 entry's egress members behind MVPN tunnels: l3mc6_mvpn_tnl_elb and l3mc6_mvpn_tnl_subelb.
// Their steps are the same. The names below are counters and KPIs of each table:
//
// operation          step          fails with   then
// create object      create        any          kpi createFailed; the code
//                    -             -            dfx created; 0
// release object     -             -            released: the object, dfx released
// read               null          -            log; 1
//                    create 3      any          log; the code
//                    read          15005        released; 60
//                                  other        released; log; error 0; the code
//                    -             -            record filled; released; 0
// write              null          -            log; kpi writeFailed; 1
//                    create 0      any          log; kpi writeFailed; the code
//                    set all       any          released; kpi writeFailed; the code; not logged
//                    write         13044        released; error 1; kpi written; 0
//                                  other        released; log; error 2; kpi writeFailed; the code
//                    -             -            released; kpi written; 0
// smooth version     null          -            log; 1
//                    create 1      any          log; the code
//                    2 setters     any          log; released; OR of both codes
//                    update        13044        released; error 1; 0
//                                  other        released; log; error 6; the code
//                    -             -            released; 0
// delete             null          -            log; kpi removeFailed; 1
//                    create 4      any          log; kpi removeFailed; the code
//                    remove        13044        released; error 1; kpi removed; 0
//                                  other        released; error 4; log; kpi removeFailed; the code
//                    -             -            released; kpi removed; 0
// create iterator    any           any          released if created; kpi iteratorFailed; null
//                    -             -            handle
// get entry          null          -            1
//                    next          110012       60
//                                  other        log; error 9; 1
//                    read          15005        60
//                                  other        log; error 0; 1
//                    -             -            record filled; 0
// release iterator   null          -            nothing
//                    -             -            released; block freed
//
// Only l3mc6_mvpn_tnl_elb counts:
// count by key       create 9      any          log; 1
//                    count         any          released; log; 1
//                    -             -            released; count; 0
// fast count         create cache  any          dfx 55; log; 0
//                    reset cache   any          dfx 56; log; 0
//                    count         any          log; 0
//                    -             -            the count; the object stays in the cache
#pragma once

#include <string>
#include <vector>

#include "mcast6_db/l3_mvpn_egress.h"
#include "tests/l3/member_family.h"

namespace mcast6::tests::l3_mvpn {

using namespace l3_members;
using Entry = L3McMvpnTnlElbEntry;

class Mvpn : public MemberFamily<Entry, void> {
public:
    using MemberFamily::MemberFamily;

    std::vector<Claim> claims() {
        std::vector<Claim> all = MemberFamily::claims();
        all.push_back(absenceClaim("readingAnAbsentRecordAnswers60AndIsSilent", 60));
        return all;
    }

protected:
    CallExits exitsOfRead() const override {
        return {
            .null = {egress(literals.messages.readNull), returns(1)},
            .createFailed = {egress(literals.messages.readCreate, code), returns(code)},
            .failed = {released, egress(literals.messages.readFailed, code), record(literals.number, 0), returns(code)},
            .answered = {{15005, {released, returns(60)}}},
            .done = {released, returns(0)}};
    }
    Effect setterLog() const override { return allOf({}); }
};

}  // namespace mcast6::tests::l3_mvpn
