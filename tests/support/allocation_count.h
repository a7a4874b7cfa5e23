// Counts the C++ heap allocations of the process.
#pragma once

long allocationCount();
