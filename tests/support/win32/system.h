// What the system offers to tests.
#pragma once

constexpr bool kDecodesWebP = false;    // GDI+ knows no such files
constexpr bool kRootIsAbsolute = false; // "/a" stands on its own; on which drive it would be is open
