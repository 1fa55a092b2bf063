// The three tables of a layer-3 entry's egress members in a bridge domain: l3mc6_bd_tag_elb, l3mc6_bd_untag_elb and
// l3mc6_bd_tnl_elb. Their steps are the same. The names below are counters and KPIs of each table:
//
// operation          step          fails with   then
// create object      create        any          kpi createFailed; the code
//                    -             -            dfx created; 0
// release object     -             -            released: the object, dfx released
// read               null          -            log; 1
//                    create 3      any          log; the code
//                    read          15005        released; 15005
//                                  other        log; error 0; released; the code
//                    -             -            record filled; released; 0
// write              null          -            log; kpi writeFailed; 1
//                    create 0      any          log; kpi writeFailed; the code
//                    set all       any          released; log; kpi writeFailed; the code
//                    write         13044        released; error 1; kpi written; 0
//                                  other        released; log; error 2; kpi writeFailed; the code
//                    -             -            released; kpi written; 0
// smooth version     null          -            log; 1
//                    create 1      any          log; the code
//                    setters       any          log; released; OR of all codes
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
// fast count         create cache  any          dfx 55; log; 0
//                    reset cache   any          dfx 56; log; 0
//                    count         any          log; 0
//                    -             -            the count; the object stays in the cache
//
// Setters of the smooth version: smoothVersion, mlagRole, isMlagDual, inIfhasMlag, timeStampSmooth; for tunnels only
// the first and the last.
#pragma once

#include <string>
#include <vector>

#include "mcast6_db/l3_bd_egress.h"
#include "tests/l3/member_family.h"

namespace mcast6::tests::l3_bd_egress {

using namespace l3_members;
using Entry = L3BdElb6Entry;

// Parts of keys, with the values of the sample's bytes.
inline const std::string kBridgeDomain = "48494a4b";  // bdElbAttr4
inline const std::string kSrcPid = "e0e1e2e3";
inline const std::string kLowByte19 = "eb";  // of bdElbAttr19

inline const std::string kBySrcPid = keyOf("0409000c", kVrVrf + kSrcPid);
inline const std::string kByMfib = keyOf("05090029", kVrVrf + kGroup + kSource + kLowByte19);

class BdEgress : public MemberFamily<Entry, uint32_t> {
public:
    BdEgress(const Literals<Entry, uint32_t>& values, const char* writeSet)
        : MemberFamily(values), writeSet_(writeSet) {}

    std::vector<Claim> claims() {
        std::vector<Claim> all = MemberFamily::claims();
        all.push_back(absenceClaim("readingAnAbsentRecordAnswers15005AndIsSilent", 15005));
        all.push_back({"getAnswers0", [this] {
                           Entry entry = table.sample();
                           const recording::Bytes row = recording::unhex(table.facts.storedRow);
                           EXPECT_EQ(0u, literals.functions.get(row.data(), &entry));
                       }});
        all.push_back({"ofAttribute19TheLowByteIsKept", [this] {
                           Entry entry = table.sample();
                           entry.bdElbAttr19 = 0x12345678;
                           recording::Bytes row(literals.rowSize);
                           literals.functions.set(&entry, row.data());
                           literals.functions.get(row.data(), &entry);
                           EXPECT_EQ(0x78u, entry.bdElbAttr19);
                       }});
        return all;
    }

protected:
    CallExits exitsOfRead() const override {
        return {
            .null = {egress(literals.messages.readNull), returns(1)},
            .createFailed = {egress(literals.messages.readCreate, code), returns(code)},
            .failed = {egress(literals.messages.readFailed, code), record(literals.number, 0), released, returns(code)},
            .answered = {{15005, {released, returns(15005)}}},
            .done = {released, returns(0)}};
    }
    Effect setterLog() const override { return egress(writeSet_, code); }

private:
    const char* const writeSet_;
};

}  // namespace mcast6::tests::l3_bd_egress
