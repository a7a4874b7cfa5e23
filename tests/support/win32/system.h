// What the system offers to tests.
#pragma once

constexpr bool kDecodesWebP = false; // GDI+ knows no such files
