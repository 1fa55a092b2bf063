// The operations that tables share, written once.
//
// Each template is the algorithm of one kind of operation: it takes the steps, finds the way out, and concludes with the
// outcome that the table gives for it (outcome.h). It has no switches: where a table's steps differ, and not just what
// follows from them, the table has a short function of its own instead.
//
// What a table gives (Table below):
//     Record                      the caller's record
//     number, logId               row of the error statistics, log id of its messages
//     objects                     its exported pair {create, release}, used for every object but cached ones
//     Row, Primary                its field map and primary key
//     set, get                    its exported conversions
//     accessors                   its generated accessors {create, release, setAllFields}
//     onRead, onWrite, ...        its outcomes
#pragma once

#include "frame/conversions.h"
#include "frame/counts.h"
#include "frame/field_access.h"
#include "frame/iterators.h"
#include "frame/objects.h"
#include "frame/records.h"
#include "frame/ways_out.h"
