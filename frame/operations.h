// The operations that tables share, written once.
//
// Each template is the algorithm of one kind of operation: it performs the steps, determines the exit, and applies the
// outcome that the table gives for that exit (outcome.h). A template has no options: a table whose steps differ, rather
// than just their outcomes, has a short function of its own.
//
// What a table provides (Table below):
//     Record                      the caller's record
//     number, logId               row of the error statistics, log id of its messages
//     counters, indicators        what it counts in: numbers and names
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
#include "frame/operation_outcomes.h"
#include "frame/records.h"
