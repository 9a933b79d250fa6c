#ifndef FABSCAN_RECORDS_ALL_RECORDS_H
#define FABSCAN_RECORDS_ALL_RECORDS_H

// The tables of all records.
#include "records/architecture_records.h"
#include "records/reduction_records.h"
#include "records/vendor_records.h"

#endif
